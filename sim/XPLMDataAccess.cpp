// XPLMDataAccess: finding, reading and writing datarefs, data accessors and shared data.
#include "XPLMDataAccess.h"

#include <cstdio>
#include <string>

#include "world/DataRefs.h"
#include "world/World.h"

namespace {

// The record behind a handle; reports a bad handle.
xpsim::DataRefRecord* Ref(XPLMDataRef handle, const char* function) {
    xpsim::DataRefRecord* ref = xpsim::DataRefFromHandle(handle);
    if (ref == nullptr) {
        char text[64];
        std::snprintf(text, sizeof text, "%p is not a dataref", handle);
        xpsim::ReportMisuse(function, text);
    }
    return ref;
}

}  // namespace

XPLMDataRef XPLMFindDataRef(const char* inDataRefName) {
    if (inDataRefName == nullptr) {
        xpsim::ReportMisuse("XPLMFindDataRef", "null name");
        return nullptr;
    }
    return xpsim::FindDataRefRecord(inDataRefName);
}

int XPLMCanWriteDataRef(XPLMDataRef inDataRef) {
    xpsim::DataRefRecord* ref = Ref(inDataRef, "XPLMCanWriteDataRef");
    return ref != nullptr && ref->good && ref->writable ? 1 : 0;
}

int XPLMIsDataRefGood(XPLMDataRef inDataRef) {
    xpsim::DataRefRecord* ref = Ref(inDataRef, "XPLMIsDataRefGood");
    return ref != nullptr && ref->good ? 1 : 0;
}

XPLMDataTypeID XPLMGetDataRefTypes(XPLMDataRef inDataRef) {
    xpsim::DataRefRecord* ref = Ref(inDataRef, "XPLMGetDataRefTypes");
    return ref != nullptr && ref->good ? ref->types : xplmType_Unknown;
}

int XPLMGetDatai(XPLMDataRef inDataRef) {
    xpsim::DataRefRecord* ref = Ref(inDataRef, "XPLMGetDatai");
    return ref ? xpsim::ReadInt(*ref, "XPLMGetDatai") : 0;
}

void XPLMSetDatai(XPLMDataRef inDataRef, int inValue) {
    if (xpsim::DataRefRecord* ref = Ref(inDataRef, "XPLMSetDatai")) xpsim::WriteInt(*ref, inValue, "XPLMSetDatai");
}

float XPLMGetDataf(XPLMDataRef inDataRef) {
    xpsim::DataRefRecord* ref = Ref(inDataRef, "XPLMGetDataf");
    return ref ? xpsim::ReadFloat(*ref, "XPLMGetDataf") : 0.0f;
}

void XPLMSetDataf(XPLMDataRef inDataRef, float inValue) {
    if (xpsim::DataRefRecord* ref = Ref(inDataRef, "XPLMSetDataf")) xpsim::WriteFloat(*ref, inValue, "XPLMSetDataf");
}

double XPLMGetDatad(XPLMDataRef inDataRef) {
    xpsim::DataRefRecord* ref = Ref(inDataRef, "XPLMGetDatad");
    return ref ? xpsim::ReadDouble(*ref, "XPLMGetDatad") : 0.0;
}

void XPLMSetDatad(XPLMDataRef inDataRef, double inValue) {
    if (xpsim::DataRefRecord* ref = Ref(inDataRef, "XPLMSetDatad")) xpsim::WriteDouble(*ref, inValue, "XPLMSetDatad");
}

int XPLMGetDatavi(XPLMDataRef inDataRef, int* outValues, int inOffset, int inMax) {
    xpsim::DataRefRecord* ref = Ref(inDataRef, "XPLMGetDatavi");
    return ref ? xpsim::ReadIntArray(*ref, outValues, inOffset, inMax, "XPLMGetDatavi") : 0;
}

void XPLMSetDatavi(XPLMDataRef inDataRef, int* inValues, int inoffset, int inCount) {
    if (xpsim::DataRefRecord* ref = Ref(inDataRef, "XPLMSetDatavi"))
        xpsim::WriteIntArray(*ref, inValues, inoffset, inCount, "XPLMSetDatavi");
}

int XPLMGetDatavf(XPLMDataRef inDataRef, float* outValues, int inOffset, int inMax) {
    xpsim::DataRefRecord* ref = Ref(inDataRef, "XPLMGetDatavf");
    return ref ? xpsim::ReadFloatArray(*ref, outValues, inOffset, inMax, "XPLMGetDatavf") : 0;
}

void XPLMSetDatavf(XPLMDataRef inDataRef, float* inValues, int inoffset, int inCount) {
    if (xpsim::DataRefRecord* ref = Ref(inDataRef, "XPLMSetDatavf"))
        xpsim::WriteFloatArray(*ref, inValues, inoffset, inCount, "XPLMSetDatavf");
}

int XPLMGetDatab(XPLMDataRef inDataRef, void* outValue, int inOffset, int inMaxBytes) {
    xpsim::DataRefRecord* ref = Ref(inDataRef, "XPLMGetDatab");
    return ref ? xpsim::ReadBytes(*ref, outValue, inOffset, inMaxBytes, "XPLMGetDatab") : 0;
}

void XPLMSetDatab(XPLMDataRef inDataRef, void* inValue, int inOffset, int inLength) {
    if (xpsim::DataRefRecord* ref = Ref(inDataRef, "XPLMSetDatab"))
        xpsim::WriteBytes(*ref, inValue, inOffset, inLength, "XPLMSetDatab");
}

XPLMDataRef XPLMRegisterDataAccessor(const char* inDataName, XPLMDataTypeID inDataType, int inIsWritable,
                                     XPLMGetDatai_f inReadInt, XPLMSetDatai_f inWriteInt,
                                     XPLMGetDataf_f inReadFloat, XPLMSetDataf_f inWriteFloat,
                                     XPLMGetDatad_f inReadDouble, XPLMSetDatad_f inWriteDouble,
                                     XPLMGetDatavi_f inReadIntArray, XPLMSetDatavi_f inWriteIntArray,
                                     XPLMGetDatavf_f inReadFloatArray, XPLMSetDatavf_f inWriteFloatArray,
                                     XPLMGetDatab_f inReadData, XPLMSetDatab_f inWriteData, void* inReadRefcon,
                                     void* inWriteRefcon) {
    if (inDataName == nullptr || *inDataName == '\0') {
        xpsim::ReportMisuse("XPLMRegisterDataAccessor", "no data name");
        return nullptr;
    }
    xpsim::DataRefRecord accessor;
    accessor.name = inDataName;
    accessor.types = inDataType;
    accessor.writable = inIsWritable != 0;
    accessor.owner = xpsim::CurrentPlugin();
    accessor.readInt = inReadInt;
    accessor.writeInt = inWriteInt;
    accessor.readFloat = inReadFloat;
    accessor.writeFloat = inWriteFloat;
    accessor.readDouble = inReadDouble;
    accessor.writeDouble = inWriteDouble;
    accessor.readIntArray = inReadIntArray;
    accessor.writeIntArray = inWriteIntArray;
    accessor.readFloatArray = inReadFloatArray;
    accessor.writeFloatArray = inWriteFloatArray;
    accessor.readData = inReadData;
    accessor.writeData = inWriteData;
    accessor.readRefcon = inReadRefcon;
    accessor.writeRefcon = inWriteRefcon;
    return xpsim::RegisterAccessor(accessor);
}

void XPLMUnregisterDataAccessor(XPLMDataRef inDataRef) {
    if (xpsim::DataRefRecord* ref = Ref(inDataRef, "XPLMUnregisterDataAccessor")) xpsim::UnregisterAccessor(*ref);
}

int XPLMShareData(const char* inDataName, XPLMDataTypeID inDataType, XPLMDataChanged_f inNotificationFunc,
                  void* inNotificationRefcon) {
    return xpsim::ShareData(inDataName, inDataType, inNotificationFunc, inNotificationRefcon);
}

int XPLMUnshareData(const char* inDataName, XPLMDataTypeID inDataType, XPLMDataChanged_f inNotificationFunc,
                    void* inNotificationRefcon) {
    return xpsim::UnshareData(inDataName, inDataType, inNotificationFunc, inNotificationRefcon);
}
