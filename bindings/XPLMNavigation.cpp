// The script module XPLMNavigation: the simulator's navaid database, the FMS entries and the GPS
// destination, and its constants.
#include "XPLMNavigation.h"

#include "BindingModules.h"
#include "BindingSupport.h"

#include <climits>
#include <type_traits>

namespace {

const char* const kModule = "XPLMNavigation";
// The size of the text buffers handed to the SDK (IDs, names).
constexpr size_t kTextBufferSize = 1024;

// Installed in this order, each under its SDK name.
const CV_IntConstant XPLMNavigationConstants[] = {
    // Navaid types.
    {"xplm_Nav_Unknown", 0},
    {"xplm_Nav_Airport", 1},
    {"xplm_Nav_NDB", 2},
    {"xplm_Nav_VOR", 4},
    {"xplm_Nav_ILS", 8},
    {"xplm_Nav_Localizer", 16},
    {"xplm_Nav_GlideSlope", 32},
    {"xplm_Nav_OuterMarker", 64},
    {"xplm_Nav_MiddleMarker", 128},
    {"xplm_Nav_InnerMarker", 256},
    {"xplm_Nav_Fix", 512},
    {"xplm_Nav_DME", 1024},
    {"xplm_Nav_LatLon", 2048},
    // The navaid reference of a failed lookup.
    {"XPLM_NAV_NOT_FOUND", -1},
};

// ---------------------------------------------------------------- navaids

CV_PLAIN_BINDING(kModule, XPLMGetFirstNavAid)
CV_PLAIN_BINDING(kModule, XPLMGetNextNavAid)
CV_PLAIN_BINDING(kModule, XPLMFindFirstNavAidOfType)
CV_PLAIN_BINDING(kModule, XPLMFindLastNavAidOfType)

// An optional argument of XPLMFindNavAid: None leaves the SDK's pointer null.
bool OptionalText(PyObject* object, const char** text) {
    if (object == Py_None) return true;
    *text = PyUnicode_AsUTF8(object);
    return *text != nullptr;
}

template <typename T>
bool OptionalNumber(PyObject* object, T* storage, T** pointer) {
    if (object == Py_None) return true;
    if constexpr (std::is_same_v<T, float>) {
        const double value = PyFloat_AsDouble(object);
        if (value == -1.0 && PyErr_Occurred()) return false;
        *storage = static_cast<float>(value);
    } else {
        const long value = PyLong_AsLong(object);
        if (value == -1 && PyErr_Occurred()) return false;
        if (value < INT_MIN || value > INT_MAX) {
            PyErr_SetString(PyExc_OverflowError, "frequency out of range");
            return false;
        }
        *storage = static_cast<int>(value);
    }
    *pointer = storage;
    return true;
}

// Name and ID fragments, latitude, longitude and frequency may each be None: the SDK then gets a
// null pointer and does not match on it.
PyObject* PY_XPLMFindNavAid(PyObject* self, PyObject* args) {
    PyObject *nameObject = nullptr, *idObject = nullptr, *latObject = nullptr, *lonObject = nullptr,
             *frequencyObject = nullptr;
    int type = 0;
    if (!PyArg_ParseTuple(args, "OOOOOi", &nameObject, &idObject, &latObject, &lonObject, &frequencyObject, &type))
        return nullptr;
    const char *name = nullptr, *id = nullptr;
    float lat = 0.0f, lon = 0.0f;
    float *latPointer = nullptr, *lonPointer = nullptr;
    int frequency = 0;
    int* frequencyPointer = nullptr;
    if (!OptionalText(nameObject, &name) || !OptionalText(idObject, &id) ||
        !OptionalNumber(latObject, &lat, &latPointer) || !OptionalNumber(lonObject, &lon, &lonPointer) ||
        !OptionalNumber(frequencyObject, &frequency, &frequencyPointer))
        return nullptr;
    XPLMNavRef found = XPLM_NAV_NOT_FOUND;
    CV_SDK_GUARD(kModule, "XPLMFindNavAid", CV_IntResult(0),
                 found = XPLMFindNavAid(name, id, latPointer, lonPointer, frequencyPointer, type));
    return CV_IntResult(found);
}

// Each output argument is None (the SDK gets no buffer) or a list that receives the value.
// Answers the 1-tuple (1,).
PyObject* PY_XPLMGetNavAidInfo(PyObject* self, PyObject* args) {
    int ref = 0;
    PyObject *outType = nullptr, *outLat = nullptr, *outLon = nullptr, *outHeight = nullptr, *outFrequency = nullptr,
             *outHeading = nullptr, *outID = nullptr, *outName = nullptr, *outReg = nullptr;
    if (!PyArg_ParseTuple(args, "iOOOOOOOOO", &ref, &outType, &outLat, &outLon, &outHeight, &outFrequency,
                          &outHeading, &outID, &outName, &outReg))
        return nullptr;
    for (PyObject* out : {outType, outLat, outLon, outHeight, outFrequency, outHeading, outID, outName, outReg})
        if (!CV_CheckOutputList(out)) return nullptr;
    XPLMNavType type = 0;
    float lat = 0.0f, lon = 0.0f, height = 0.0f, heading = 0.0f;
    int frequency = 0;
    char id[kTextBufferSize] = {}, name[kTextBufferSize] = {}, reg = 0;
    CV_SDK_GUARD(kModule, "XPLMGetNavAidInfo", CV_IntResult(0),
                 XPLMGetNavAidInfo(ref, CV_OutPointer(outType, &type), CV_OutPointer(outLat, &lat),
                                   CV_OutPointer(outLon, &lon), CV_OutPointer(outHeight, &height),
                                   CV_OutPointer(outFrequency, &frequency), CV_OutPointer(outHeading, &heading),
                                   CV_OutPointer(outID, id), CV_OutPointer(outName, name), CV_OutPointer(outReg, &reg)));
    if (!CV_StoreOutput(outType, CV_IntResult(type)) || !CV_StoreOutput(outLat, PyFloat_FromDouble(lat)) ||
        !CV_StoreOutput(outLon, PyFloat_FromDouble(lon)) || !CV_StoreOutput(outHeight, PyFloat_FromDouble(height)) ||
        !CV_StoreOutput(outFrequency, CV_IntResult(frequency)) ||
        !CV_StoreOutput(outHeading, PyFloat_FromDouble(heading)) ||
        !CV_StoreOutput(outID, CV_BufferText(id, sizeof id - 1)) ||
        !CV_StoreOutput(outName, CV_BufferText(name, sizeof name - 1)) ||
        !CV_StoreOutput(outReg, CV_IntResult(static_cast<signed char>(reg))))
        return nullptr;
    return Py_BuildValue("(i)", 1);
}

// ---------------------------------------------------------------- FMS and GPS

CV_PLAIN_BINDING(kModule, XPLMCountFMSEntries)
CV_PLAIN_BINDING(kModule, XPLMGetDisplayedFMSEntry)
CV_PLAIN_BINDING(kModule, XPLMGetDestinationFMSEntry)
CV_PLAIN_BINDING(kModule, XPLMSetDisplayedFMSEntry)
CV_PLAIN_BINDING(kModule, XPLMSetDestinationFMSEntry)

PyObject* PY_XPLMGetFMSEntryInfo(PyObject* self, PyObject* args) {
    int index = 0;
    PyObject *outType = nullptr, *outID = nullptr, *outRef = nullptr, *outAltitude = nullptr, *outLat = nullptr,
             *outLon = nullptr;
    if (!PyArg_ParseTuple(args, "iOOOOOO", &index, &outType, &outID, &outRef, &outAltitude, &outLat, &outLon))
        return nullptr;
    for (PyObject* out : {outType, outID, outRef, outAltitude, outLat, outLon})
        if (!CV_CheckOutputList(out)) return nullptr;
    XPLMNavType type = 0;
    char id[kTextBufferSize] = {};
    XPLMNavRef ref = XPLM_NAV_NOT_FOUND;
    int altitude = 0;
    float lat = 0.0f, lon = 0.0f;
    CV_SDK_GUARD(kModule, "XPLMGetFMSEntryInfo", CV_IntResult(0),
                 XPLMGetFMSEntryInfo(index, CV_OutPointer(outType, &type), CV_OutPointer(outID, id),
                                     CV_OutPointer(outRef, &ref), CV_OutPointer(outAltitude, &altitude),
                                     CV_OutPointer(outLat, &lat), CV_OutPointer(outLon, &lon)));
    if (!CV_StoreOutput(outType, CV_IntResult(type)) || !CV_StoreOutput(outID, CV_BufferText(id, sizeof id - 1)) ||
        !CV_StoreOutput(outRef, CV_IntResult(ref)) || !CV_StoreOutput(outAltitude, CV_IntResult(altitude)) ||
        !CV_StoreOutput(outLat, PyFloat_FromDouble(lat)) || !CV_StoreOutput(outLon, PyFloat_FromDouble(lon)))
        return nullptr;
    return CV_IntResult(1);
}

PyObject* PY_XPLMSetFMSEntryInfo(PyObject* self, PyObject* args) {
    int index = 0, ref = 0, altitude = 0;
    if (!PyArg_ParseTuple(args, "iii", &index, &ref, &altitude)) return nullptr;
    CV_SDK_GUARD(kModule, "XPLMSetFMSEntryInfo", CV_IntResult(0), XPLMSetFMSEntryInfo(index, ref, altitude));
    return CV_IntResult(1);
}

PyObject* PY_XPLMSetFMSEntryLatLon(PyObject* self, PyObject* args) {
    int index = 0, altitude = 0;
    float lat = 0.0f, lon = 0.0f;
    if (!PyArg_ParseTuple(args, "iffi", &index, &lat, &lon, &altitude)) return nullptr;
    CV_SDK_GUARD(kModule, "XPLMSetFMSEntryLatLon", CV_IntResult(0), XPLMSetFMSEntryLatLon(index, lat, lon, altitude));
    return CV_IntResult(1);
}

CV_PLAIN_BINDING(kModule, XPLMClearFMSEntry)
CV_PLAIN_BINDING(kModule, XPLMGetGPSDestinationType)
CV_PLAIN_BINDING(kModule, XPLMGetGPSDestination)

PyMethodDef XPLMNavigationMethods[] = {
    {"XPLMGetFirstNavAid", PY_XPLMGetFirstNavAid, METH_VARARGS, "Get First Nav Aid."},
    {"XPLMGetNextNavAid", PY_XPLMGetNextNavAid, METH_VARARGS, "Get Next Nav Aid."},
    {"XPLMFindFirstNavAidOfType", PY_XPLMFindFirstNavAidOfType, METH_VARARGS, "Find First Nav Aid Of Type."},
    {"XPLMFindLastNavAidOfType", PY_XPLMFindLastNavAidOfType, METH_VARARGS, "Find Last Nav Aid Of Type."},
    {"XPLMFindNavAid", PY_XPLMFindNavAid, METH_VARARGS, "Find Nav Aid."},
    {"XPLMGetNavAidInfo", PY_XPLMGetNavAidInfo, METH_VARARGS, "Get Nav Aid Info."},
    {"XPLMCountFMSEntries", PY_XPLMCountFMSEntries, METH_VARARGS, "Count FMS Entries."},
    {"XPLMGetDisplayedFMSEntry", PY_XPLMGetDisplayedFMSEntry, METH_VARARGS, "Get Displayed FMS Entry."},
    {"XPLMGetDestinationFMSEntry", PY_XPLMGetDestinationFMSEntry, METH_VARARGS, "Get Destination FMS Entry."},
    {"XPLMSetDisplayedFMSEntry", PY_XPLMSetDisplayedFMSEntry, METH_VARARGS, "Set Displayed FMS Entry."},
    {"XPLMSetDestinationFMSEntry", PY_XPLMSetDestinationFMSEntry, METH_VARARGS, "Set Destination FMS Entry."},
    {"XPLMGetFMSEntryInfo", PY_XPLMGetFMSEntryInfo, METH_VARARGS, "Get FMS Entry Info."},
    {"XPLMSetFMSEntryInfo", PY_XPLMSetFMSEntryInfo, METH_VARARGS, "Set FMS Entry Info."},
    {"XPLMSetFMSEntryLatLon", PY_XPLMSetFMSEntryLatLon, METH_VARARGS, "Set FMS Entry LatLon."},
    {"XPLMClearFMSEntry", PY_XPLMClearFMSEntry, METH_VARARGS, "Clear FMSEntry."},
    {"XPLMGetGPSDestinationType", PY_XPLMGetGPSDestinationType, METH_VARARGS, "Get GPS DestinationType."},
    {"XPLMGetGPSDestination", PY_XPLMGetGPSDestination, METH_VARARGS, "Get GPS Destination."},
    {nullptr, nullptr, 0, nullptr},
};

}  // namespace

PyObject* initXPLMNavigation() {
    return CV_CreateModule("XPLMNavigation", XPLMNavigationMethods, XPLMNavigationConstants);
}
