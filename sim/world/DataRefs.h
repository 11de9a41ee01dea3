// Datarefs: the simulator's own (from DataRefs.txt plus the values xpsim drives), those that plugins
// publish with accessors, and shared data items.
//
// A dataref handle (XPLMDataRef) is the address of its record. Records live until ResetWorld, so a
// handle stays usable after its owner unregisters it (XPLMIsDataRefGood then answers 0) and after
// a plugin reload (when the plugin registers the same name again, the old handle works again).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "XPLMDataAccess.h"
#include "world/Export.h"

namespace xpsim {

struct DataRefRecord {
    enum Kind { Builtin, Accessor, Shared };

    struct Sharer {
        uint64_t id;
        int plugin;
        XPLMDataChanged_f callback;
        void* refcon;
    };

    std::string name;
    Kind kind = Builtin;
    XPLMDataTypeID types = xplmType_Unknown;
    bool writable = false;
    int owner = 0;      // the plugin that registered an accessor; the sim otherwise
    bool good = true;   // false once the accessor was unregistered

    // Values of builtin and shared datarefs. Builtin arrays have the fixed size of DataRefs.txt and
    // are allocated on the first write (until then they read as zeros); shared arrays grow to hold
    // whatever is written.
    int intValue = 0;
    float floatValue = 0.0f;
    double doubleValue = 0.0;
    int arraySize = 0;
    std::vector<int> ints;
    std::vector<float> floats;
    std::vector<uint8_t> bytes;

    // Accessor callbacks and their refcons.
    XPLMGetDatai_f readInt = nullptr;
    XPLMSetDatai_f writeInt = nullptr;
    XPLMGetDataf_f readFloat = nullptr;
    XPLMSetDataf_f writeFloat = nullptr;
    XPLMGetDatad_f readDouble = nullptr;
    XPLMSetDatad_f writeDouble = nullptr;
    XPLMGetDatavi_f readIntArray = nullptr;
    XPLMSetDatavi_f writeIntArray = nullptr;
    XPLMGetDatavf_f readFloatArray = nullptr;
    XPLMSetDatavf_f writeFloatArray = nullptr;
    XPLMGetDatab_f readData = nullptr;
    XPLMSetDatab_f writeData = nullptr;
    void* readRefcon = nullptr;
    void* writeRefcon = nullptr;

    std::vector<Sharer> sharers;
};

// ------------------------------------------------------------------ control interface

// Loads a DataRefs.txt: a version header line, then one dataref a line, tab-separated: name, type
// (int, float, double, int[N], float[N], byte[N], with several [N] multiplied), writable y/n, unit,
// description. Returns the number of datarefs added, or -1 when the file cannot be read. Bad lines
// are logged and skipped.
XPSIM_API int LoadDataRefsFile(const std::string& path);
// Loads PluginsFolder()/DataRefs.txt when present and adds the datarefs xpsim drives itself.
// Returns the number of datarefs known afterwards.
XPSIM_API int LoadStandardDataRefs();
// Writes a dataref as the simulator does for a "set" event: VALUE is a number for scalars,
// comma-separated numbers for arrays (from offset 0) and text for byte arrays. The sim may write its
// own read-only datarefs; a plugin's dataref is written through its accessor.
XPSIM_API bool SetDataRefFromText(const std::string& name, const std::string& value, std::string& error);
XPSIM_API int DataRefCount();

// ------------------------------------------------------------------ inside the library

DataRefRecord* FindDataRefRecord(const std::string& name);
// The record of a handle, or null for anything that is not a dataref handle.
DataRefRecord* DataRefFromHandle(const void* handle);

// Typed reads and writes with the SDK's rules. `function` names the SDK function in reports. A write
// with asSim ignores writability of the sim's own datarefs.
int ReadInt(DataRefRecord& ref, const char* function);
float ReadFloat(DataRefRecord& ref, const char* function);
double ReadDouble(DataRefRecord& ref, const char* function);
int ReadIntArray(DataRefRecord& ref, int* out, int offset, int max, const char* function);
int ReadFloatArray(DataRefRecord& ref, float* out, int offset, int max, const char* function);
int ReadBytes(DataRefRecord& ref, void* out, int offset, int max, const char* function);
void WriteInt(DataRefRecord& ref, int value, const char* function, bool asSim = false);
void WriteFloat(DataRefRecord& ref, float value, const char* function, bool asSim = false);
void WriteDouble(DataRefRecord& ref, double value, const char* function, bool asSim = false);
void WriteIntArray(DataRefRecord& ref, const int* in, int offset, int count, const char* function,
                   bool asSim = false);
void WriteFloatArray(DataRefRecord& ref, const float* in, int offset, int count, const char* function,
                     bool asSim = false);
void WriteBytes(DataRefRecord& ref, const void* in, int offset, int count, const char* function,
                bool asSim = false);

DataRefRecord* RegisterAccessor(const DataRefRecord& accessor);
void UnregisterAccessor(DataRefRecord& ref);
int ShareData(const char* name, XPLMDataTypeID type, XPLMDataChanged_f callback, void* refcon);
int UnshareData(const char* name, XPLMDataTypeID type, XPLMDataChanged_f callback, void* refcon);

// Updates the time datarefs for the current frame.
void UpdateTimeDataRefs();
// sim/time/paused is non-zero.
bool SimPaused();
// Writes sim/time/paused as the simulator, creating it when no DataRefs.txt was loaded.
void SetSimPaused(bool paused);
// The simulator's own writable datarefs, in the order they were added, without the clock datarefs
// xpsim drives every frame.
std::vector<DataRefRecord*> SimWritableDataRefs();
// Every dataref record in the order it was added, unregistered accessors included.
std::vector<DataRefRecord*> AllDataRefRecords();
int ForgetAccessorsOf(int plugin);
int ForgetSharedDataOf(int plugin);
void ResetDataRefs();

}  // namespace xpsim
