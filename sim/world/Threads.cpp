// Noting SDK calls made off the main thread.
//
// The SDK sources (sim/XPLM*.cpp, sim/XP*.cpp) are compiled with -finstrument-functions, so every
// function they define calls __cyg_profile_func_enter first. On the main thread that is one
// comparison; on another thread, a function that is one of the library's exported SDK symbols is
// noted in Log.txt. One check for every SDK function, which no new SDK function can forget.
#include "world/Threads.h"

#include <dlfcn.h>
#include <pthread.h>

#include <atomic>
#include <cstring>
#include <string>

#include "world/World.h"

namespace {

// The thread that loads the library is the simulator's main thread: xpsim's own, or a test's.
pthread_t gMainThread = pthread_self();
std::atomic<int> gForeignCalls{0};
const int kMostNoted = 100;

__attribute__((no_instrument_function)) bool IsSdkFunction(void* function, const char** name) {
    Dl_info info;
    if (dladdr(function, &info) == 0 || info.dli_sname == nullptr || info.dli_saddr != function) return false;
    *name = info.dli_sname;
    return std::strncmp(*name, "XP", 2) == 0;
}

}  // namespace

extern "C" {

__attribute__((no_instrument_function)) void __cyg_profile_func_enter(void* function, void*) {
    if (pthread_equal(pthread_self(), gMainThread)) return;
    const char* name = nullptr;
    if (!IsSdkFunction(function, &name)) return;
    const int count = ++gForeignCalls;
    if (count <= kMostNoted)
        xpsim::Note(std::string(name) + ": called from a thread other than the simulator's main thread");
    if (count == kMostNoted) xpsim::Note("further SDK calls from other threads are not noted");
}

__attribute__((no_instrument_function)) void __cyg_profile_func_exit(void*, void*) {}

}  // extern "C"

namespace xpsim {

int ForeignThreadCalls() { return gForeignCalls; }

}  // namespace xpsim
