// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <Python.h>

#include <utility>

/// Owns a reference to a Python object, or nothing. The interpreter lock must be held while it is made, changed and
/// destroyed.
class SNK_PythonReference {
public:
    SNK_PythonReference() = default;
    /// Takes ownership of a new reference; null, after a failure, makes an empty one.
    explicit SNK_PythonReference(PyObject *owned) : object(owned) {}
    SNK_PythonReference(SNK_PythonReference &&other) noexcept : object(other.release()) {}
    SNK_PythonReference &operator=(SNK_PythonReference &&other) noexcept {
        std::swap(object, other.object);
        return *this;
    }
    ~SNK_PythonReference() { Py_XDECREF(object); }
    /// Makes one more reference to a borrowed object; null remains null.
    static SNK_PythonReference share(PyObject *borrowed) { return SNK_PythonReference(Py_XNewRef(borrowed)); }

    explicit operator bool() const { return object != nullptr; }
    operator PyObject *() const { return object; }
    PyObject *release() { return std::exchange(object, nullptr); }

private:
    PyObject *object = nullptr;
};
