// Runs the real Corvelle.xpl in xpsim with real Python scripts in a fresh simulator folder, and
// reads back what the plugin and the simulator wrote.
#pragma once

#include <string>
#include <vector>

struct SimRun {
    int exitCode = -1;       // xpsim's exit status; 128 + signal number when it died of a signal
    std::string stdoutText;  // what xpsim wrote to standard output
    std::string stderrText;
};

class SimFolder {
public:
    // A new simulator folder with Resources/plugins/DataRefs.txt and, unless told otherwise, an
    // empty Resources/plugins/PythonScripts folder.
    explicit SimFolder(bool withScriptsFolder = true);
    ~SimFolder();
    SimFolder(const SimFolder&) = delete;
    SimFolder& operator=(const SimFolder&) = delete;

    const std::string& root() const { return root_; }
    std::string scriptsDir() const { return root_ + "/Resources/plugins/PythonScripts"; }

    // Writes a file in the scripts folder.
    void writeScript(const std::string& fileName, const std::string& source) const;
    // Writes a file at a path relative to the simulator folder, making folders as needed.
    void writeFile(const std::string& relativePath, const std::string& content) const;
    // Writes the events file and returns its path.
    std::string writeEvents(const std::string& events) const;

    // Runs xpsim on this folder with Corvelle.xpl and the given further options
    // (for example {"--sdk", "2.00", "--seconds", "2"}).
    SimRun run(const std::vector<std::string>& options = {}) const;

    std::string log() const;     // CorvelleLog.txt
    std::string output() const;  // CorvelleOutput.txt
    std::string simLog() const;  // the simulator's Log.txt
    std::string read(const std::string& relativePath) const;

private:
    std::string root_;
};

// Text helpers for assertions.
std::string ReadFile(const std::string& path);
bool FileExists(const std::string& path);
size_t CountOf(const std::string& text, const std::string& needle);
// True when every needle occurs in text, each after the previous one.
bool InOrder(const std::string& text, const std::vector<std::string>& needles);
std::vector<std::string> Lines(const std::string& text);
// The text between `before` and the next `after`, searching from `from`; "" when there is none.
std::string Between(const std::string& text, const std::string& before, const std::string& after, size_t from = 0);

// The source of a script: `header` (imports and helpers), then a class Corvelle whose XPluginStart
// runs `start` and returns the name `name`, whose XPluginEnable runs `enable` and XPluginStop runs
// `stop` (each indented by eight spaces), followed by `methods` (further class-level code).
std::string EntryPointScript(const std::string& header, const std::string& name, const std::string& start,
                             const std::string& enable, const std::string& stop, const std::string& methods = "");

// The source of a test script. It imports every module named (from M import *) and XPLMProcessing,
// and defines a class Corvelle whose XPluginStart runs `start`, whose first flight loop (the first
// frame, when every plugin has been started and enabled) runs `later` once, and whose XPluginStop
// runs `stop`; XPluginReceiveMessage prints "received FROM MESSAGE PARAM" (except the sim's load
// messages 102 to 104, which every run sends at the start). `methods` is further
// class-level code. Every piece is written without indentation; the helper indents it.
std::string TestScript(const std::string& name, const std::vector<std::string>& modules, const std::string& start,
                       const std::string& later, const std::string& stop = "", const std::string& methods = "");

// The line a binding's report writes to the log: "Module - M, Function - F, Error = MESSAGE\n".
std::string Report(const std::string& module, const std::string& function, const std::string& message);

// Writes TestScript(name, modules, "", later, stop, methods) as CV_<name>.py, runs xpsim for two
// frames with the further options, expects it to end normally, and returns the scripts' output.
std::string RunLater(const SimFolder& sim, const std::string& name, const std::vector<std::string>& modules,
                     const std::string& later, std::vector<std::string> options = {}, const std::string& stop = "",
                     const std::string& methods = "");
