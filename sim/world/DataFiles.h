// Situations and replay movies (XPLMSaveDataFile, XPLMLoadDataFile) in xpsim's own file format.
//
// A file holds what xpsim knows of a flight: the flight time, whether the sim is paused, and every
// non-zero value of the simulator's writable datarefs. Loading one restores exactly that: the
// datarefs the file does not name go back to zero. A replay movie holds the same snapshot; loading
// it restores the snapshot rather than playing anything back.
//
//   xpsim situation 1                      (or: xpsim replay 1)
//   flight-time 12.5
//   paused 0
//   sim/cockpit/radios/com1_freq_hz\tint\t12345
//   sim/flightmodel/position/q\tfloat[4]\t1,0,0,0.5
//   sim/aircraft/view/acf_tailnum\tbyte[40]\t4e313732      (bytes in hexadecimal)
//
// Paths are relative to the simulator folder, as in X-Plane; "../" may lead out of it.
#pragma once

#include "XPLMUtilities.h"

namespace xpsim {

// 1 on success; failures are reported as misuse and answer 0.
int SaveDataFile(XPLMDataFileType type, const char* path);
int LoadDataFile(XPLMDataFileType type, const char* path);

}  // namespace xpsim
