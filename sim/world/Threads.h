// The simulator's main thread. The SDK may be called only on it; xpsim notes every SDK call made
// from another thread in Log.txt, as the misuse it is.
#pragma once

#include "world/Export.h"

namespace xpsim {

// How many SDK calls from other threads Log.txt has noted so far (the first 100 are noted).
XPSIM_API int ForeignThreadCalls();

}  // namespace xpsim
