// The script module XPLMGraphics: graphics state, textures, world and local coordinates, text,
// numbers and dark boxes drawn on the screen, font metrics; and its constants.
#include "XPLMGraphics.h"

#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "BindingModules.h"
#include "BindingSupport.h"
#include "SdkDetect.h"

namespace {

const char* const kModule = "XPLMGraphics";
// The most texture numbers one XPLMGenerateTextureNumbers call may ask for.
constexpr int kMostTextureNumbers = 65536;

// Installed in this order, each under its SDK name.
const CV_IntConstant XPLMGraphicsConstants[] = {
    // Texture ids.
    {"xplm_Tex_GeneralInterface", 0},
    {"xplm_Tex_AircraftPaint", 1},
    {"xplm_Tex_AircraftLiteMap", 2},
    // Fonts.
    {"xplmFont_Basic", 0},
    {"xplmFont_Menus", 1},
    {"xplmFont_Metal", 2},
    {"xplmFont_Led", 3},
    {"xplmFont_LedWide", 4},
    {"xplmFont_PanelHUD", 5},
    {"xplmFont_PanelEFIS", 6},
    {"xplmFont_PanelGPS", 7},
    {"xplmFont_RadiosGA", 8},
    {"xplmFont_RadiosBC", 9},
    {"xplmFont_RadiosHM", 10},
    {"xplmFont_RadiosGANarrow", 11},
    {"xplmFont_RadiosBCNarrow", 12},
    {"xplmFont_RadiosHMNarrow", 13},
    {"xplmFont_Timer", 14},
    {"xplmFont_FullRound", 15},
    {"xplmFont_SmallRound", 16},
    {"xplmFont_Menus_Localized", 17},
    {"xplmFont_Proportional", 18},
};

// The drawing functions and the graphics state run every frame: they take their arguments as
// vectors and convert them directly.

// Answers 0, and is not guarded: the graphics state is set for the drawing that follows.
PyObject* PY_XPLMSetGraphicsState(PyObject*, PyObject* const* args, Py_ssize_t count) {
    int fog = 0, textureUnits = 0, lighting = 0, alphaTesting = 0, alphaBlending = 0, depthTesting = 0,
        depthWriting = 0;
    if (!CV_ParseArgs(args, count, &fog, &textureUnits, &lighting, &alphaTesting, &alphaBlending, &depthTesting,
                      &depthWriting))
        return nullptr;
    CV_SDK_GUARD(
        kModule, "XPLMSetGraphicsState", CV_IntResult(0),
        XPLMSetGraphicsState(fog, textureUnits, lighting, alphaTesting, alphaBlending, depthTesting, depthWriting));
    return CV_IntResult(0);
}

PyObject* PY_XPLMBindTexture2d(PyObject*, PyObject* const* args, Py_ssize_t count) {
    int texture = 0, unit = 0;
    if (!CV_ParseArgs(args, count, &texture, &unit)) return nullptr;
    CV_SDK_GUARD(kModule, "XPLMBindTexture2d", CV_IntResult(0), XPLMBindTexture2d(texture, unit));
    return CV_IntResult(1);
}

// Appends the count numbers the simulator generated to the script's list (None drops them). A
// count outside 0 to 65536 is the script's mistake, reported before anything is allocated.
PyObject* PY_XPLMGenerateTextureNumbers(PyObject* self, PyObject* args) {
    PyObject* list = nullptr;
    int count = 0;
    if (!PyArg_ParseTuple(args, "Oi", &list, &count) || !CV_CheckOutputList(list)) return nullptr;
    if (count < 0 || count > kMostTextureNumbers) {
        PrintException(kModule, "XPLMGenerateTextureNumbers", CV_PARAMETER_ERROR);
        return CV_IntResult(0);
    }
    std::vector<int> numbers(static_cast<size_t>(count) + 1, 0);
    CV_SDK_GUARD(kModule, "XPLMGenerateTextureNumbers", CV_IntResult(0),
                 XPLMGenerateTextureNumbers(numbers.data(), count));
    for (int i = 0; list != Py_None && i < count; ++i)
        if (!CV_AppendOutput(list, CV_IntResult(numbers[static_cast<size_t>(i)]))) return nullptr;
    return CV_IntResult(1);
}

CV_PLAIN_BINDING(kModule, XPLMGetTexture)

// XPLMWorldToLocal and XPLMLocalToWorld: three doubles in, the tuple of three converted out.
template <void (*Sdk)(double, double, double, double*, double*, double*)>
PyObject* Convert(PyObject* const* args, Py_ssize_t count, const char* function) {
    double in[3] = {}, out[3] = {};
    if (!CV_ParseArgs(args, count, &in[0], &in[1], &in[2])) return nullptr;
    CV_SDK_GUARD(kModule, function, CV_IntResult(0), Sdk(in[0], in[1], in[2], &out[0], &out[1], &out[2]));
    CV_PyRef x(PyFloat_FromDouble(out[0])), y(PyFloat_FromDouble(out[1])), z(PyFloat_FromDouble(out[2]));
    if (!x || !y || !z) return nullptr;
    return PyTuple_Pack(3, x.get(), y.get(), z.get());
}

PyObject* PY_XPLMWorldToLocal(PyObject*, PyObject* const* args, Py_ssize_t count) {
    return Convert<XPLMWorldToLocal>(args, count, "XPLMWorldToLocal");
}
PyObject* PY_XPLMLocalToWorld(PyObject*, PyObject* const* args, Py_ssize_t count) {
    return Convert<XPLMLocalToWorld>(args, count, "XPLMLocalToWorld");
}

PyObject* PY_XPLMDrawTranslucentDarkBox(PyObject*, PyObject* const* args, Py_ssize_t count) {
    int left = 0, top = 0, right = 0, bottom = 0;
    if (!CV_ParseArgs(args, count, &left, &top, &right, &bottom)) return nullptr;
    CV_SDK_GUARD(kModule, "XPLMDrawTranslucentDarkBox", CV_IntResult(0),
                 XPLMDrawTranslucentDarkBox(left, top, right, bottom));
    return CV_IntResult(1);
}

// The colour is a tuple of three floats; the text is copied, since the SDK takes it writable. A
// word-wrap width of 0 draws on one line (the SDK gets no width).
PyObject* PY_XPLMDrawString(PyObject*, PyObject* const* args, Py_ssize_t count) {
    float colour[3] = {1.0f, 1.0f, 1.0f};
    int x = 0, y = 0, wrapWidth = 0, font = 0;
    const char* text = nullptr;
    size_t length = 0;
    if (!CV_ParseArgs(args, count, CV_Floats(colour), &x, &y, CV_Text(&text, &length), &wrapWidth, &font))
        return nullptr;
    CV_Buffer<char> copy(length + 1);
    if (!copy) return PyErr_NoMemory();
    std::memcpy(copy.get(), text, length + 1);
    CV_SDK_GUARD(kModule, "XPLMDrawString", CV_IntResult(0),
                 XPLMDrawString(colour, x, y, copy.get(), wrapWidth != 0 ? &wrapWidth : nullptr, font));
    return CV_IntResult(1);
}

PyObject* PY_XPLMDrawNumber(PyObject*, PyObject* const* args, Py_ssize_t count) {
    float colour[3] = {1.0f, 1.0f, 1.0f};
    int x = 0, y = 0, digits = 0, decimals = 0, showSign = 0, font = 0;
    double value = 0.0;
    if (!CV_ParseArgs(args, count, CV_Floats(colour), &x, &y, &value, &digits, &decimals, &showSign, &font))
        return nullptr;
    CV_SDK_GUARD(kModule, "XPLMDrawNumber", CV_IntResult(0),
                 XPLMDrawNumber(colour, x, y, value, digits, decimals, showSign, font));
    return CV_IntResult(1);
}

PyObject* PY_XPLMGetFontDimensions(PyObject* self, PyObject* args) {
    int font = 0;
    PyObject *outWidth = nullptr, *outHeight = nullptr, *outDigitsOnly = nullptr;
    if (!PyArg_ParseTuple(args, "iOOO", &font, &outWidth, &outHeight, &outDigitsOnly)) return nullptr;
    for (PyObject* out : {outWidth, outHeight, outDigitsOnly})
        if (!CV_CheckOutputList(out)) return nullptr;
    int width = 0, height = 0, digitsOnly = 0;
    CV_SDK_GUARD(kModule, "XPLMGetFontDimensions", CV_IntResult(0),
                 XPLMGetFontDimensions(font, CV_OutPointer(outWidth, &width), CV_OutPointer(outHeight, &height),
                                       CV_OutPointer(outDigitsOnly, &digitsOnly)));
    if (!CV_StoreOutput(outWidth, CV_IntResult(width)) || !CV_StoreOutput(outHeight, CV_IntResult(height)) ||
        !CV_StoreOutput(outDigitsOnly, CV_IntResult(digitsOnly)))
        return nullptr;
    return CV_IntResult(1);
}

// The width in pixels, truncated toward zero. The character count is bounded by the text, so the
// simulator never reads past it.
PyObject* PY_XPLMMeasureString(PyObject*, PyObject* const* args, Py_ssize_t argCount) {
    CV_REQUIRE_SDK(kModule, Sdk200, XPLMMeasureString);
    int font = 0, count = 0;
    const char* text = nullptr;
    if (!CV_ParseArgs(args, argCount, &font, &text, &count)) return nullptr;
    const int length = static_cast<int>(strnlen(text, 1u << 20));
    if (count < 0 || count > length) count = count < 0 ? 0 : length;
    float width = 0.0f;
    CV_SDK_GUARD(kModule, "XPLMMeasureString", CV_IntResult(0), width = XPLMMeasureString_ptr(font, text, count));
    return CV_IntResult(std::isfinite(width) ? static_cast<long>(std::trunc(width)) : 0);
}

PyMethodDef XPLMGraphicsMethods[] = {
    {"XPLMSetGraphicsState", CV_FASTCALL(PY_XPLMSetGraphicsState), METH_FASTCALL, "Set Graphics State."},
    {"XPLMBindTexture2d", CV_FASTCALL(PY_XPLMBindTexture2d), METH_FASTCALL, "Bind Texture."},
    {"XPLMGenerateTextureNumbers", PY_XPLMGenerateTextureNumbers, METH_VARARGS, "Generate Texture Numbers."},
    {"XPLMGetTexture", PY_XPLMGetTexture, METH_VARARGS, "Get Texture."},
    {"XPLMWorldToLocal", CV_FASTCALL(PY_XPLMWorldToLocal), METH_FASTCALL, "Convert World to Local Coordinates."},
    {"XPLMLocalToWorld", CV_FASTCALL(PY_XPLMLocalToWorld), METH_FASTCALL, "Convert Local to World Coordinates."},
    {"XPLMDrawTranslucentDarkBox", CV_FASTCALL(PY_XPLMDrawTranslucentDarkBox), METH_FASTCALL,
     "Draw Translucent Dark Box."},
    {"XPLMDrawString", CV_FASTCALL(PY_XPLMDrawString), METH_FASTCALL, "Draw String."},
    {"XPLMDrawNumber", CV_FASTCALL(PY_XPLMDrawNumber), METH_FASTCALL, "Draw Number."},
    {"XPLMGetFontDimensions", PY_XPLMGetFontDimensions, METH_VARARGS, "Get Font Dimensions."},
    {"XPLMMeasureString", CV_FASTCALL(PY_XPLMMeasureString), METH_FASTCALL, "Measure string length."},
    {nullptr, nullptr, 0, nullptr},
};

}  // namespace

PyObject* initXPLMGraphics() { return CV_CreateModule("XPLMGraphics", XPLMGraphicsMethods, XPLMGraphicsConstants); }
