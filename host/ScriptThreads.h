// The simulator's main thread, and the threads that scripts start.
//
// The simulator allows its SDK only on its main thread. The plugin holds the interpreter's lock
// there whenever it runs, so a script's thread runs only while the main thread is itself inside
// script code, and every SDK call such a thread makes would land in the middle of whatever the
// simulator was doing. Bindings refuse them, and the stop ends what scripts left running.
#pragma once

#include <pthread.h>

#include <functional>

// Records the calling thread as the simulator's main thread (XPluginStart runs on it).
void CV_SetMainThread();

extern pthread_t gCV_MainThread;
extern bool gCV_MainThreadKnown;
// True on the simulator's main thread, and before XPluginStart named one.
inline bool CV_OnMainThread() { return !gCV_MainThreadKnown || pthread_equal(pthread_self(), gCV_MainThread); }

// Runs `work` at once on the main thread. From another thread the work waits, in order, for the
// main thread's next call of this function or of CV_RunDeferredWork: what the plugin itself does
// for a script's thread (a line for the control panel) never calls the SDK off the main thread.
void CV_OnMainThreadDo(std::function<void()> work);
// On the main thread: runs the work other threads left, in the order they left it.
void CV_RunDeferredWork();

// At a stop, after the scripts' own stops and before the interpreter is finalised: every thread
// the scripts started that still runs gets a grace period to end, then a SystemExit raised in it
// and a second grace period. Threads that still run are named in the log and no longer waited
// for, so the stop always completes. Returns how many threads were left running.
int CV_EndScriptThreads(double graceSeconds = 1.0);
