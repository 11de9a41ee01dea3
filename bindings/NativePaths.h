// Native paths per script, and the path forms the simulator hands out.
//
// The simulator's "XPLM_USE_NATIVE_PATHS" feature is one switch for the whole plugin, but scripts
// choose it one by one (XPLMEnableFeature(self, ...) records the wish in the script table). So the
// simulator's switch stays off, and every `_NP` binding turns it to the calling script's wish for
// the length of its one SDK call.
#pragma once

#include <Python.h>

#include <string>
#include <vector>

// The feature id of "XPLM_USE_NATIVE_PATHS" in the script table's feature list, looked up when the
// XPLMPlugin module lists the simulator's features; -1 when the simulator does not offer it.
extern int CV_NativePathsFeatureId;

// Sets the simulator's native-paths feature to the script's wish for its lifetime and switches it
// off again afterwards. Does nothing where the simulator lacks the feature. Never throws from its
// destructor; the constructor lets an SDK exception through to the binding's guard.
class CV_NativePathsCall {
public:
    explicit CV_NativePathsCall(PyObject* scriptId);
    ~CV_NativePathsCall();
    CV_NativePathsCall(const CV_NativePathsCall&) = delete;
    CV_NativePathsCall& operator=(const CV_NativePathsCall&) = delete;

private:
    bool switched_ = false;
};

// A POSIX path in the simulator's form: with the separator ":" every "/" becomes ":"; with any
// other separator the path stays as it is.
std::string CV_PathToSimForm(const std::string& path, char separator);

// The names XPLMGetDirectoryContents returned through its index table, read only inside the name
// buffer: an index that is null or points outside the buffer ends the list, a name runs at most to
// the end of the buffer, and `returned` is taken between 0 and indexCount.
std::vector<std::string> CV_NamesFromIndices(const char* buffer, size_t bufferSize, char* const* indices,
                                             int indexCount, int returned);
