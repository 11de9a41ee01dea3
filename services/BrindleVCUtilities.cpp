// The script module BrindleVCUtilities and the fourteen shared data items it works on. A separate
// virtual-camera plugin shares the same items; scripts set its offsets and zoom, and ask it to
// acquire, release or set its camera by writing 1 into the request items. Nothing here resets a
// request or waits for an answer: that is the other plugin's side.
#include "BrindleVCUtilities.h"

#include <cstdint>

#include "BindingModules.h"
#include "BindingSupport.h"
#include "XPLMDataAccess.h"

namespace {

const char* const kModule = "BrindleVCUtilities";

// The items in their fixed order; the order is also each item's refcon when shared.
struct SharedItem {
    const char* name;
    XPLMDataTypeID type;
};
enum {
    kCameraIndex = 0,
    kCameraTypeIndex,
    kCameraPluginReady,
    kAcquireCamera,
    kReleaseCamera,
    kSetCamera,
    kXOffset,
    kYOffset,
    kZOffset,
    kHeadingOffset,
    kPitchOffset,
    kRollOffset,
    kZoomRatio,
    kLookAtAircraft,
    kItemCount
};
const SharedItem kVirtualCameraItems[kItemCount] = {
    {"brindle/virtualcamera/cameraindex", xplmType_Int},
    {"brindle/virtualcamera/cameratypeindex", xplmType_Int},
    {"brindle/virtualcamera/camerapluginready", xplmType_Int},
    {"brindle/virtualcamera/acquirecamera", xplmType_Int},
    {"brindle/virtualcamera/releasecamera", xplmType_Int},
    {"brindle/virtualcamera/setcamera", xplmType_Int},
    {"brindle/virtualcamera/xoffset", xplmType_Float},
    {"brindle/virtualcamera/yoffset", xplmType_Float},
    {"brindle/virtualcamera/zoffset", xplmType_Float},
    {"brindle/virtualcamera/headingoffset", xplmType_Float},
    {"brindle/virtualcamera/pitchoffset", xplmType_Float},
    {"brindle/virtualcamera/rolloffset", xplmType_Float},
    {"brindle/virtualcamera/zoomratio", xplmType_Float},
    {"brindle/virtualcamera/lookataircraft", xplmType_Int},
};

// The other plugin's changes need no action here: every read goes to the item itself.
void VirtualCameraDataChangedCB2(void* refcon) { (void)refcon; }

void* ItemRefcon(int index) { return reinterpret_cast<void*>(static_cast<intptr_t>(index)); }

// Looked up once when the module is created; a name that was not found leaves a null reference,
// which reads as 0 and ignores writes.
XPLMDataRef gVCDataRefs[kItemCount] = {};

template <int Item>
PyObject* PY_GetInt(PyObject* self, PyObject* args) {
    int value = 0;
    CV_SDK_GUARD(kModule, "XPLMGetDatai", PyLong_FromLong(0), value = XPLMGetDatai(gVCDataRefs[Item]));
    return PyLong_FromLong(value);
}

template <int Item>
PyObject* PY_GetFloat(PyObject* self, PyObject* args) {
    float value = 0.0f;
    CV_SDK_GUARD(kModule, "XPLMGetDataf", PyLong_FromLong(0), value = XPLMGetDataf(gVCDataRefs[Item]));
    return PyFloat_FromDouble(value);
}

template <int Item>
PyObject* PY_SetInt(PyObject* self, PyObject* args) {
    int value = 0;
    if (!PyArg_ParseTuple(args, "i", &value)) return nullptr;
    CV_SDK_GUARD(kModule, "XPLMSetDatai", PyLong_FromLong(0), XPLMSetDatai(gVCDataRefs[Item], value));
    return PyLong_FromLong(0);
}

template <int Item>
PyObject* PY_SetFloat(PyObject* self, PyObject* args) {
    float value = 0.0f;
    if (!PyArg_ParseTuple(args, "f", &value)) return nullptr;
    CV_SDK_GUARD(kModule, "XPLMSetDataf", PyLong_FromLong(0), XPLMSetDataf(gVCDataRefs[Item], value));
    return PyLong_FromLong(0);
}

// Acquire, release and set-camera are requests to the other plugin: each writes 1 into its item.
template <int Item>
PyObject* PY_Request(PyObject* self, PyObject* args) {
    CV_SDK_GUARD(kModule, "XPLMSetDatai", PyLong_FromLong(0), XPLMSetDatai(gVCDataRefs[Item], 1));
    return PyLong_FromLong(0);
}

PyMethodDef BrindleVCUtilitiesMethods[] = {
    {"VC_CameraPluginReady", PY_GetInt<kCameraPluginReady>, METH_VARARGS, "Check that VC plugin is ready."},
    {"VC_AcquireCamera", PY_Request<kAcquireCamera>, METH_VARARGS, "Acquire the VC."},
    {"VC_ReleaseCamera", PY_Request<kReleaseCamera>, METH_VARARGS, "Release the VC."},
    {"VC_SetCamera", PY_Request<kSetCamera>, METH_VARARGS, "Set the Camerar."},
    {"VC_GetCameraIndex", PY_GetInt<kCameraIndex>, METH_VARARGS, "Get the Camera Index."},
    {"VC_GetCameraTypeIndex", PY_GetInt<kCameraTypeIndex>, METH_VARARGS, "Get the Camera Type Index."},
    {"VC_GetXOffset", PY_GetFloat<kXOffset>, METH_VARARGS, "Get the X Offset."},
    {"VC_GetYOffset", PY_GetFloat<kYOffset>, METH_VARARGS, "Get the Y Offset."},
    {"VC_GetZOffset", PY_GetFloat<kZOffset>, METH_VARARGS, "Get the Z Offset."},
    {"VC_GetHeadingOffset", PY_GetFloat<kHeadingOffset>, METH_VARARGS, "Get the Heading Offset."},
    {"VC_GetPitchOffset", PY_GetFloat<kPitchOffset>, METH_VARARGS, "Get the Pitch Offset."},
    {"VC_GetRollOffset", PY_GetFloat<kRollOffset>, METH_VARARGS, "Get the Roll Offset."},
    {"VC_GetZoomRatio", PY_GetFloat<kZoomRatio>, METH_VARARGS, "Get the Zoom Ratio."},
    {"VC_SetCameraIndex", PY_SetInt<kCameraIndex>, METH_VARARGS, "Set the Camera Index."},
    {"VC_SetCameraTypeIndex", PY_SetInt<kCameraTypeIndex>, METH_VARARGS, "Set the Camera Type Index."},
    {"VC_SetXOffset", PY_SetFloat<kXOffset>, METH_VARARGS, "Set the X Offset."},
    {"VC_SetYOffset", PY_SetFloat<kYOffset>, METH_VARARGS, "Set the Y Offset."},
    {"VC_SetZOffset", PY_SetFloat<kZOffset>, METH_VARARGS, "Set the Z Offset."},
    {"VC_SetHeadingOffset", PY_SetFloat<kHeadingOffset>, METH_VARARGS, "Set the Heading Offset."},
    {"VC_SetPitchOffset", PY_SetFloat<kPitchOffset>, METH_VARARGS, "Set the Pitch Offset."},
    {"VC_SetRollOffset", PY_SetFloat<kRollOffset>, METH_VARARGS, "Set the Roll Offset."},
    {"VC_SetZoomRatio", PY_SetFloat<kZoomRatio>, METH_VARARGS, "Set the Zoom Ratio."},
    {"VC_GetLookAtAircraft", PY_GetInt<kLookAtAircraft>, METH_VARARGS, "Get the LookAtAircraft Index."},
    {"VC_SetLookAtAircraft", PY_SetInt<kLookAtAircraft>, METH_VARARGS, "Set the LookAtAircraft Index."},
    {nullptr, nullptr, 0, nullptr},
};

}  // namespace

void CV_ShareVirtualCameraItems() {
    for (int i = 0; i < kItemCount; ++i)
        XPLMShareData(kVirtualCameraItems[i].name, kVirtualCameraItems[i].type, VirtualCameraDataChangedCB2, ItemRefcon(i));
}

void CV_UnshareVirtualCameraItems() {
    for (int i = 0; i < kItemCount; ++i)
        XPLMUnshareData(kVirtualCameraItems[i].name, kVirtualCameraItems[i].type, VirtualCameraDataChangedCB2,
                        ItemRefcon(i));
}

PyObject* initBrindleVCUtilities() {
    for (int i = 0; i < kItemCount; ++i) {
        gVCDataRefs[i] = nullptr;
        CV_SDK_GUARD(kModule, "XPLMFindDataRef", nullptr, gVCDataRefs[i] = XPLMFindDataRef(kVirtualCameraItems[i].name));
    }
    return CV_CreateModule("BrindleVCUtilities", BrindleVCUtilitiesMethods);
}
