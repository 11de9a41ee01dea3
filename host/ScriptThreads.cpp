// Ending the threads that scripts leave running at a stop.
#include "ScriptThreads.h"

#include <Python.h>

#include <atomic>
#include <chrono>
#include <mutex>
#include <string>
#include <vector>

#include "LogFiles.h"
#include "PythonRef.h"

pthread_t gCV_MainThread;
bool gCV_MainThreadKnown = false;

void CV_SetMainThread() {
    gCV_MainThread = pthread_self();
    gCV_MainThreadKnown = true;
}

namespace {

// Bounded, so that a thread that never stops reporting cannot fill the memory.
const size_t kMostDeferredWork = 10000;
std::mutex gDeferredLock;
std::vector<std::function<void()>> gDeferred;
std::atomic<bool> gDeferredWaiting{false};  // lets the main thread skip the lock when nothing waits

}  // namespace

void CV_OnMainThreadDo(std::function<void()> work) {
    if (!CV_OnMainThread()) {
        std::lock_guard<std::mutex> hold(gDeferredLock);
        if (gDeferred.size() < kMostDeferredWork) gDeferred.push_back(std::move(work));
        gDeferredWaiting = true;
        return;
    }
    CV_RunDeferredWork();
    work();
}

void CV_RunDeferredWork() {
    if (!CV_OnMainThread() || !gDeferredWaiting) return;
    std::vector<std::function<void()>> work;
    {
        std::lock_guard<std::mutex> hold(gDeferredLock);
        work.swap(gDeferred);
        gDeferredWaiting = false;
    }
    for (std::function<void()>& w : work) w();
}

namespace {

struct ScriptThread {
    CV_PyRef thread;
    std::string name;
    unsigned long ident = 0;
};

std::string ThreadName(PyObject* thread) {
    CV_PyRef name(PyObject_GetAttrString(thread, "name"));
    const char* text = name && PyUnicode_Check(name.get()) ? PyUnicode_AsUTF8(name.get()) : nullptr;
    if (text == nullptr) {
        PyErr_Clear();
        return "?";
    }
    return text;
}

// The threads of `threading` other than the main one that are still alive.
std::vector<ScriptThread> LiveThreads(PyObject* threading) {
    std::vector<ScriptThread> live;
    CV_PyRef main(PyObject_CallMethod(threading, "main_thread", nullptr));
    CV_PyRef all(PyObject_CallMethod(threading, "enumerate", nullptr));
    if (!main || !all || !PyList_Check(all.get())) {
        PyErr_Clear();
        return live;
    }
    for (Py_ssize_t i = 0; i < PyList_GET_SIZE(all.get()); ++i) {
        PyObject* thread = PyList_GET_ITEM(all.get(), i);
        if (thread == main.get()) continue;
        CV_PyRef alive(PyObject_CallMethod(thread, "is_alive", nullptr));
        CV_PyRef ident(PyObject_GetAttrString(thread, "ident"));
        if (!alive || !ident || !PyObject_IsTrue(alive.get()) || !PyLong_Check(ident.get())) {
            PyErr_Clear();
            continue;
        }
        Py_INCREF(thread);
        live.push_back({CV_PyRef(thread), ThreadName(thread), PyLong_AsUnsignedLong(ident.get())});
        if (PyErr_Occurred()) PyErr_Clear();
    }
    return live;
}

// Joins each thread, all of them within `seconds`; the interpreter's lock is released while waiting.
void JoinWithin(std::vector<ScriptThread>& threads, double seconds) {
    using Clock = std::chrono::steady_clock;
    const Clock::time_point end =
        Clock::now() + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds));
    for (ScriptThread& t : threads) {
        const double left = std::chrono::duration<double>(end - Clock::now()).count();
        CV_PyRef done(PyObject_CallMethod(t.thread.get(), "join", "d", left > 0 ? left : 0.0));
        if (!done) PyErr_Clear();
    }
}

std::vector<ScriptThread> StillAlive(std::vector<ScriptThread>& threads) {
    std::vector<ScriptThread> alive;
    for (ScriptThread& t : threads) {
        CV_PyRef result(PyObject_CallMethod(t.thread.get(), "is_alive", nullptr));
        if (result && PyObject_IsTrue(result.get())) alive.push_back(std::move(t));
        PyErr_Clear();
    }
    return alive;
}

// The interpreter's shutdown waits for every non-daemon thread through the lock `threading` keeps
// for it; a thread taken out of that set is no longer waited for.
void StopWaitingFor(PyObject* threading, PyObject* thread) {
    CV_PyRef locks(PyObject_GetAttrString(threading, "_shutdown_locks"));
    CV_PyRef lock(PyObject_GetAttrString(thread, "_tstate_lock"));
    if (locks && lock && PySet_Check(locks.get())) PySet_Discard(locks.get(), lock.get());
    PyErr_Clear();
    if (PyObject_SetAttrString(thread, "_daemonic", Py_True) != 0) PyErr_Clear();
}

}  // namespace

int CV_EndScriptThreads(double graceSeconds) {
    // Only `threading` makes threads that the shutdown waits for; without it there is nothing to end.
    PyObject* threading = PyDict_GetItemString(PyImport_GetModuleDict(), "threading");
    if (threading == nullptr) return 0;
    Py_INCREF(threading);
    CV_PyRef module(threading);
    std::vector<ScriptThread> threads = LiveThreads(threading);
    if (threads.empty()) return 0;

    JoinWithin(threads, graceSeconds);
    threads = StillAlive(threads);
    for (ScriptThread& t : threads) {
        CV_WriteToLogf("Thread %s still running at stop: raising SystemExit in it\n", t.name.c_str());
        PyThreadState_SetAsyncExc(t.ident, PyExc_SystemExit);
    }
    JoinWithin(threads, graceSeconds);
    threads = StillAlive(threads);
    for (ScriptThread& t : threads) {
        CV_WriteToLogf("Thread %s did not end: left running\n", t.name.c_str());
        StopWaitingFor(threading, t.thread.get());
    }
    CV_RunDeferredWork();
    return static_cast<int>(threads.size());
}
