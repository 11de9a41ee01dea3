// The dataref dump: every dataref's value at one moment, as a text file a test can read back
// (`xpsim run --dump-datarefs FILE` writes it after the last frame, before the plugins stop).
#pragma once

#include <string>

#include "world/Export.h"

namespace xpsim {

// The most elements written for one array dataref; longer arrays are cut there.
constexpr int kMaxDumpElements = 65536;

// One line per dataref, in the order the datarefs were added (DataRefs.txt, xpsim's own, then those
// plugins registered or shared): name, type and value separated by tabs. The type is the first the
// dataref offers of double, float, int, float array, int array and byte array, written as in
// DataRefs.txt (`double`, `float`, `int`, `float[N]`, `int[N]`, `byte[N]`, N the current size).
// Scalars are written as numbers (floats and doubles in the shortest form that reads back to the same
// value, `nan`, `inf` or `-inf` where they are not finite), arrays as comma-separated numbers (bytes
// 0 to 255). A plugin's dataref is read through its accessor, in that plugin's context; unregistered
// accessors and datarefs without a type are left out.
XPSIM_API std::string DataRefDumpText();
// Writes DataRefDumpText() to `path`. False with `error` set when the file cannot be written.
XPSIM_API bool WriteDataRefDump(const std::string& path, std::string& error);

}  // namespace xpsim
