// A plugin that draws its window with OpenGL, as plugins draw their own widgets. It links libGL like
// any such plugin; in xpsim its GL references must bind to the simulator's library, which is loaded
// globally before it. It says where glBegin came from with XPLMDebugString ("gl: glBegin from
// <file>"), and draws, in a window from (100, 300) to (300, 100):
//   - an opaque red quad from (110, 110) to (190, 190) (GL_QUADS, glColor3ub);
//   - with blending on (GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA), a half-transparent blue rectangle from
//     (150, 150) to (250, 250) (glRectf, glColor4f) moved there by glTranslatef inside
//     glPushMatrix/glPopMatrix;
//   - with blending off again, a green triangle fan (200, 110), (290, 110), (290, 140);
//   - a white line from (110, 280) to (290, 280) (GL_LINES) and the text "GL plugin" at (110, 260).
// GL calls in a flight loop (outside drawing) do nothing.
#include <GL/gl.h>
#include <dlfcn.h>

#include <cstring>
#include <string>

#include "XPLMDefs.h"
#include "XPLMDisplay.h"
#include "XPLMGraphics.h"
#include "XPLMProcessing.h"
#include "XPLMUtilities.h"

namespace {

XPLMWindowID gWindow = nullptr;

void Draw(XPLMWindowID, void*) {
    glDisable(GL_BLEND);
    glColor3ub(255, 0, 0);
    glBegin(GL_QUADS);
    glVertex2i(110, 110);
    glVertex2i(190, 110);
    glVertex2i(190, 190);
    glVertex2i(110, 190);
    glEnd();

    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glPushMatrix();
    glTranslatef(150.0f, 150.0f, 0.0f);
    glColor4f(0.0f, 0.0f, 1.0f, 0.5f);
    glRectf(0.0f, 0.0f, 100.0f, 100.0f);
    glPopMatrix();
    glDisable(GL_BLEND);

    glColor3f(0.0f, 1.0f, 0.0f);
    glBegin(GL_TRIANGLE_FAN);
    glVertex2f(200.0f, 110.0f);
    glVertex2f(290.0f, 110.0f);
    glVertex2f(290.0f, 140.0f);
    glEnd();

    glColor4ub(255, 255, 255, 255);
    glLineWidth(1.0f);
    glBegin(GL_LINES);
    glVertex2i(110, 280);
    glVertex2i(290, 280);
    glEnd();

    float white[] = {1.0f, 1.0f, 1.0f};
    char text[] = "GL plugin";
    XPLMDrawString(white, 110, 260, text, nullptr, xplmFont_Basic);
}

void Key(XPLMWindowID, char, XPLMKeyFlags, char, void*, int) {}
int Click(XPLMWindowID, int, int, XPLMMouseStatus, void*) { return 1; }

float Loop(float, float, int, void*) {
    glBegin(GL_LINES);  // outside drawing: nothing happens
    glVertex2i(0, 0);
    glVertex2i(10, 10);
    glEnd();
    return 0.0f;
}

}  // namespace

PLUGIN_API int XPluginStart(char* outName, char* outSignature, char* outDescription) {
    std::strcpy(outName, "GL");
    std::strcpy(outSignature, "xpsim.tests.gl");
    std::strcpy(outDescription, "Draws its window with OpenGL.");
    Dl_info info;
    const bool found = dladdr(reinterpret_cast<void*>(&glBegin), &info) != 0 && info.dli_fname != nullptr;
    XPLMDebugString(("gl: glBegin from " + std::string(found ? info.dli_fname : "nowhere") + "\n").c_str());
    gWindow = XPLMCreateWindow(100, 300, 300, 100, 1, Draw, Key, Click, nullptr);
    XPLMRegisterFlightLoopCallback(Loop, -1.0f, nullptr);
    return 1;
}

PLUGIN_API void XPluginStop(void) {
    XPLMUnregisterFlightLoopCallback(Loop, nullptr);
    XPLMDestroyWindow(gWindow);
}

PLUGIN_API int XPluginEnable(void) { return 1; }

PLUGIN_API void XPluginDisable(void) {}

PLUGIN_API void XPluginReceiveMessage(XPLMPluginID, int, void*) {}
