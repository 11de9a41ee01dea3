// One owned reference to a Python object, released when it goes out of scope, so that a function
// with several exit paths never releases references by hand.
#pragma once

#include <Python.h>

#include <utility>

class CV_PyRef {
public:
    CV_PyRef() = default;
    // Takes over a new reference (or null, for a failed Python call).
    explicit CV_PyRef(PyObject* object) : object_(object) {}
    ~CV_PyRef() { Py_XDECREF(object_); }
    CV_PyRef(CV_PyRef&& other) noexcept : object_(other.release()) {}
    CV_PyRef& operator=(CV_PyRef&& other) noexcept {
        if (this != &other) reset(other.release());
        return *this;
    }
    CV_PyRef(const CV_PyRef&) = delete;
    CV_PyRef& operator=(const CV_PyRef&) = delete;

    PyObject* get() const { return object_; }
    explicit operator bool() const { return object_ != nullptr; }
    // Hands the reference to the caller (for functions that steal it, or a result).
    PyObject* release() { return std::exchange(object_, nullptr); }
    void reset(PyObject* object = nullptr) {
        PyObject* old = std::exchange(object_, object);
        Py_XDECREF(old);
    }

private:
    PyObject* object_ = nullptr;
};
