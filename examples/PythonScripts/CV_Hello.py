# The smallest Corvelle script: a class named Corvelle with the five entry points.
#
# Corvelle imports every file in the PythonScripts folder whose name contains "CV_" (or "cv_") and
# ends in ".py", creates one instance of its Corvelle class, and calls these methods when the
# simulator starts, enables, disables and stops the plugin, and when a message arrives.
# What a script prints goes to CorvelleOutput.txt; errors and tracebacks go to CorvelleLog.txt.


class Corvelle:
    def XPluginStart(self):
        self.Name = "Hello"
        self.Sig = "corvelle.examples.hello"
        self.Desc = "Says hello at every step of its life."
        print("Hello: started")
        # Name, signature and description: three texts.
        return self.Name, self.Sig, self.Desc

    def XPluginEnable(self):
        print("Hello: enabled")
        return 1

    def XPluginReceiveMessage(self, inFromWho, inMessage, inParam):
        print("Hello: message %d from plugin %d, parameter %d" % (inMessage, inFromWho, inParam))

    def XPluginDisable(self):
        print("Hello: disabled")

    def XPluginStop(self):
        print("Hello: stopped")
