// SPDX-License-Identifier: Apache-2.0
#include "SNK_PythonModule.h"

#include <mutex>
#include <string>

#include <structseq.h>

#include "SNK_Interpreter.h"

namespace {

PyTypeObject *theExecuteType = nullptr;   // the result of execute; never freed

/// The class orvlang.Error, borrowed; null, with an exception set, when it cannot be made.
PyObject *errorClass() {
    static PyObject *theClass = nullptr;   // stays for good
    if (!theClass)
        theClass =
            PyErr_NewExceptionWithDoc("orvlang.Error", "The language refuses what is asked.", nullptr, nullptr);
    return theClass;
}

PyObject *raiseError(const char *format, const char *text) {
    PyObject *const error = errorClass();
    return error ? PyErr_Format(error, format, text) : nullptr;
}

/// The language, when the calling thread may use it now; otherwise null, with orvlang.Error set.
const SNK_Language *language() {
    const SNK_Language *const found = SNK_Interpreter::host().language();
    const char *refusal = "there is no command language in this program";
    if (found && !SNK_Interpreter::isInsideCall())
        refusal = "the command language can't be used from a thread that it did not call";
    else if (found)
        refusal = found->refusal();
    if (!refusal)
        return found;
    raiseError("%s", refusal);
    return nullptr;
}

/// Returns a receiver that appends texts to a string.
SNK_TextTaker into(std::string &text) {
    return { &text, [](void *target, const char *part, size_t length) {
                static_cast<std::string *>(target)->append(part, length);
            } };
}

PyObject *decode(const std::string &text) {
    return PyUnicode_DecodeUTF8(text.data(), static_cast<Py_ssize_t>(text.size()), nullptr);
}

/// Behind something that took time without the lock: true when an interrupt came meanwhile, with the exception set.
/// Code of Python inside may have caught that interrupt; the work it was meant for ends all the same.
bool wasInterrupted() {
    if (PyErr_CheckSignals() != 0)
        return true;
    if (!SNK_Interpreter::host().isInterrupted())
        return false;
    PyErr_SetNone(PyExc_KeyboardInterrupt);
    return true;
}

/// Releases the interpreter lock for something that can take long, so that other threads of Python run meanwhile.
class Unlocked {
public:
    Unlocked() : thread(PyEval_SaveThread()) {}
    ~Unlocked() { PyEval_RestoreThread(thread); }
    Unlocked(const Unlocked &) = delete;
    Unlocked &operator=(const Unlocked &) = delete;

private:
    PyThreadState *const thread;
};

/// Keeps the language for the calling thread, from the question whether it may use it until an interrupt was asked for.
class RunningLanguage {
public:
    explicit RunningLanguage(const SNK_Language &language) : language(language) { language.begin(); }
    ~RunningLanguage() { language.end(); }
    RunningLanguage(const RunningLanguage &) = delete;
    RunningLanguage &operator=(const RunningLanguage &) = delete;

private:
    const SNK_Language &language;
};

PyObject *makeExecuteResult(const std::string &output, const std::string &errors, int status) {
    SNK_PythonReference result(PyStructSequence_New(theExecuteType));
    if (!result)
        return nullptr;
    PyStructSequence_SetItem(result, 0, decode(output));
    PyStructSequence_SetItem(result, 1, decode(errors));
    PyStructSequence_SetItem(result, 2, PyLong_FromLong(status));
    return PyErr_Occurred() ? nullptr : result.release();
}

PyObject *execute(PyObject *, PyObject *arguments) {
    const char *text = nullptr;
    if (!PyArg_ParseTuple(arguments, "s:execute", &text))
        return nullptr;
    const SNK_Language *const target = SNK_Interpreter::flush() ? language() : nullptr;
    if (!target)
        return nullptr;
    const RunningLanguage running(*target);
    std::string output, errors;
    int status = 0;
    bool done = false;
    {
        const Unlocked unlocked;
        done = target->execute(text, into(output), into(errors), status);
        SNK_Interpreter::host().flush();
    }
    if (wasInterrupted())
        return nullptr;
    if (!done) {
        PyErr_SetString(PyExc_RecursionError, "the command language nests too deep");
        return nullptr;
    }
    return makeExecuteResult(output, errors, status);
}

PyObject *get(PyObject *, PyObject *arguments, PyObject *keywords) {
    static const char *names[] = { "name", "default", nullptr };
    const char *name = nullptr;
    PyObject *missing = Py_None;
    if (!PyArg_ParseTupleAndKeywords(arguments, keywords, "s|O:get", const_cast<char **>(names), &name,
                                     &missing))
        return nullptr;
    const SNK_Language *const target = language();
    if (!target)
        return nullptr;
    std::string value;
    return target->getVariable(name, into(value)) ? decode(value) : Py_NewRef(missing);
}

PyObject *set(PyObject *, PyObject *arguments, PyObject *keywords) {
    static const char *names[] = { "name", "value", "local", nullptr };
    const char *name = nullptr;
    PyObject *value = nullptr;
    int local = 0;
    if (!PyArg_ParseTupleAndKeywords(arguments, keywords, "sO|$p:set", const_cast<char **>(names), &name,
                                     &value, &local))
        return nullptr;
    const SNK_PythonReference text(PyObject_Str(value));
    const char *bytes = nullptr;
    if (!text || !PyArg_Parse(text, "s", &bytes))
        return nullptr;
    const SNK_Language *const target = language();
    if (!target)
        return nullptr;
    if (!target->setVariable(name, bytes, local != 0))
        return raiseError("no name for a variable: %s", name);
    Py_RETURN_NONE;
}

PyObject *unset(PyObject *, PyObject *arguments) {
    const char *name = nullptr;
    if (!PyArg_ParseTuple(arguments, "s:unset", &name))
        return nullptr;
    const SNK_Language *const target = language();
    if (!target)
        return nullptr;
    if (!target->unsetVariable(name))
        return raiseError("no variable that can be removed: %s", name);
    Py_RETURN_NONE;
}

PyObject *listNames(PyObject *, PyObject *) {
    const SNK_Language *const target = language();
    SNK_PythonReference list(target ? PyList_New(0) : nullptr);
    if (!list)
        return nullptr;
    const auto take = [](void *names, const char *text, size_t length) {
        if (PyErr_Occurred())
            return;
        const SNK_PythonReference name(PyUnicode_DecodeUTF8(text, static_cast<Py_ssize_t>(length), nullptr));
        if (name)
            PyList_Append(static_cast<PyObject *>(names), name);
    };
    target->listVariables({ static_cast<PyObject *>(list), take });
    return PyErr_Occurred() ? nullptr : list.release();
}

/// Returns a line of standard input; empty at its end. Without a language nothing else reads, so any thread may.
PyObject *readLine(PyObject *, PyObject *) {
    const SNK_ComponentHost &host = SNK_Interpreter::host();
    if (host.language() && !language())
        return nullptr;
    std::string line;
    {
        static std::mutex theReader;
        const Unlocked unlocked;
        const std::lock_guard lock(theReader);
        host.readLine(into(line));
    }
    if (wasInterrupted())
        return nullptr;
    return PyUnicode_DecodeUTF8(line.data(), static_cast<Py_ssize_t>(line.size()), "surrogateescape");
}

template <typename Function>
PyCFunction asFunction(Function function) {
    return reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(function));
}

PyMethodDef theFunctions[] = {
    { "execute", execute, METH_VARARGS,
      "execute(text)\n--\n\n"
      "Runs text of the command language. The result holds .output and .error, what it wrote, and .status, "
      "that of its\n"
      "last statement." },
    { "get", asFunction(get), METH_VARARGS | METH_KEYWORDS,
      "get(name, default=None)\n--\n\nThe value of a variable of the language, a str; default when there is "
      "none." },
    { "set", asFunction(set), METH_VARARGS | METH_KEYWORDS,
      "set(name, value, *, local=False)\n--\n\n"
      "Sets a variable of the language to str(value): a global one, or a local of the current script." },
    { "unset", unset, METH_VARARGS, "unset(name)\n--\n\nRemoves a variable of the language, if there is one." },
    { "_names", listNames, METH_NOARGS, nullptr },
    {},
};

PyMethodDef theReadLine = { "read_line", readLine, METH_NOARGS, nullptr };

PyModuleDef theModule = {
    PyModuleDef_HEAD_INIT,
    "orvlang",
    "The command language of the program that this Python runs in.",
    -1,
    theFunctions,
    nullptr,
    nullptr,
    nullptr,
    nullptr,
};

PyStructSequence_Field theFields[] = {
    { "output", "what was written to the output stream" },
    { "error", "what was written to the error stream" },
    { "status", "of the last statement" },
    {},
};
PyStructSequence_Desc theExecuteResult = { "orvlang.Result", "What execute gives.", theFields, 3 };

}   // namespace

SNK_PythonReference SNKmakeReadLine() {
    return SNK_PythonReference(PyCFunction_New(&theReadLine, nullptr));
}

SNK_PythonReference SNKmakePythonModule() {
    SNK_PythonReference module(PyModule_Create(&theModule));
    PyObject *const error = errorClass();
    theExecuteType = PyStructSequence_NewType(&theExecuteResult);
    if (!module || !error || !theExecuteType || PyModule_AddObjectRef(module, "Error", error) != 0 ||
        PyModule_AddObjectRef(module, "Result", reinterpret_cast<PyObject *>(theExecuteType)) != 0)
        return {};
    return module;
}
