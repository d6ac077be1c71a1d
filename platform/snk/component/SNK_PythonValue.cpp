// SPDX-License-Identifier: Apache-2.0
#include "SNK_PythonValue.h"

#include <cstring>
#include <string_view>
#include <vector>

#include <orvlang/platform/snk/SNK_Result.h>

#include "SNK_Interpreter.h"

namespace {

constexpr int theFailure = -1;   // an exception is set

/// Returns the bytes of a text for the library: UTF-8 without a NUL, which would end the text for its readers.
const char *textOf(PyObject *text, Py_ssize_t &length) {
    const char *const bytes = PyUnicode_AsUTF8AndSize(text, &length);
    if (bytes && std::memchr(bytes, '\0', static_cast<size_t>(length))) {
        PyErr_SetString(PyExc_ValueError, "embedded null character");
        return nullptr;
    }
    return bytes;
}

int giveNumber(PyObject *value, double &number) {
    number = PyFloat_AsDouble(value);
    if (!PyErr_Occurred())
        return SNK_Result::Float;
    if (!PyErr_ExceptionMatches(PyExc_TypeError))
        return theFailure;
    PyErr_Clear();
    return SNK_Result::WrongType;
}

int giveString(PyObject *value, const SNK_TextTaker &texts) {
    const SNK_PythonReference text(PyObject_Str(value));
    Py_ssize_t length = 0;
    const char *const bytes = text ? textOf(text, length) : nullptr;
    if (!bytes)
        return theFailure;
    texts(bytes, static_cast<size_t>(length));
    return SNK_Result::String;
}

int giveStringArray(PyObject *value, const SNK_TextTaker &texts) {
    if (PyUnicode_Check(value) || !PySequence_Check(value))
        return SNK_Result::WrongType;
    const SNK_PythonReference entries(PySequence_Tuple(value));
    if (!entries)
        return theFailure;
    // None is passed on before all are known to be good.
    std::vector<std::string_view> found;
    const Py_ssize_t count = PyTuple_GET_SIZE(static_cast<PyObject *>(entries));
    for (Py_ssize_t i = 0; i < count; ++i) {
        PyObject *const entry = PyTuple_GET_ITEM(static_cast<PyObject *>(entries), i);
        if (!PyUnicode_Check(entry))
            return SNK_Result::WrongType;
        Py_ssize_t length = 0;
        const char *const bytes = textOf(entry, length);
        if (!bytes)
            return theFailure;
        found.emplace_back(bytes, static_cast<size_t>(length));
    }
    for (const std::string_view text : found)
        texts(text.data(), text.size());
    return SNK_Result::StringArray;
}

/// An exception in short and in full, as support.py describes it. Where that fails, it is the name of the class twice:
/// support.py needs depth and memory, which may be what is missing.
struct Description {
    explicit Description(SNK_PythonReference exception) {
        const char *const name = Py_TYPE((PyObject *)exception)->tp_name;
        pair = SNK_Interpreter::support("describe", std::move(exception));
        if (pair && PyArg_ParseTuple(pair, "yy", &inShort, &inFull))
            return;
        PyErr_Clear();
        inShort = name;
        substitute = std::string(name) + "\n";
        inFull = substitute.c_str();
    }

    SNK_PythonReference pair;
    std::string substitute;
    const char *inShort = nullptr;
    const char *inFull = nullptr;
};

/// Clears the exception that is set and returns it with its traceback.
SNK_PythonReference takeException() {
    PyObject *type = nullptr, *value = nullptr, *traceback = nullptr;
    PyErr_Fetch(&type, &value, &traceback);
    PyErr_NormalizeException(&type, &value, &traceback);
    if (traceback)
        PyException_SetTraceback(value, traceback);
    Py_XDECREF(type);
    Py_XDECREF(traceback);
    return SNK_PythonReference(value);
}

}   // namespace

int SNKgiveValue(PyObject *value, int wanted, double &number, const SNK_TextTaker &texts) {
    switch (wanted) {
    case SNK_Result::Float:
        return giveNumber(value, number);
    case SNK_Result::String:
        return giveString(value, texts);
    case SNK_Result::StringArray:
        return giveStringArray(value, texts);
    default:
        return SNK_Result::WrongType;
    }
}

int SNKgiveException(const SNK_TextTaker &texts) {
    if (PyErr_ExceptionMatches(PyExc_SystemExit)) {
        PyErr_Clear();
        return SNK_Result::Exit;
    }
    const Description description(takeException());
    texts(description.inShort, std::strlen(description.inShort));
    texts(description.inFull, std::strlen(description.inFull));
    return SNK_Result::Exception;
}

void SNKdescribeException(std::string &text) {
    text = Description(takeException()).inShort;
}
