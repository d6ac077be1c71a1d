// SPDX-License-Identifier: Apache-2.0
#include "SNK_Interpreter.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>

#include "SNK_PythonModule.h"
#include "SNK_PythonTexts.h"
#include "SNK_PythonValue.h"

namespace {

const SNK_ComponentHost *theHost = nullptr;
PyObject *theSupport = nullptr;   // the namespace of support.py; both stay for good
PyObject *theMain = nullptr;

std::atomic<int> theCalls{ 0 };            // under way in all threads
constinit thread_local int theDepth = 0;   // those of this thread

/// An interpreter like the one that a user starts: his variables and folders count. But nothing of the process changes:
/// no locale, no signal, no standard stream; and neither the working folder nor a program's folder holds modules.
PyStatus initialize() {
    PyPreConfig early;
    PyPreConfig_InitIsolatedConfig(&early);
    early.isolated = 0;
    early.use_environment = 1;
    early.utf8_mode = 1;   // whatever the locale: texts of the language are UTF-8 here
#ifdef __SANITIZE_ADDRESS__
    early.allocator = PYMEM_ALLOCATOR_MALLOC;   // so that the checker sees each object
#endif
    PyStatus status = Py_PreInitialize(&early);
    if (PyStatus_Exception(status))
        return status;

    PyConfig config;
    PyConfig_InitIsolatedConfig(&config);
    config.isolated = 0;
    config.use_environment = 1;
    config.user_site_directory = 1;
    // Without a name of its own, another Python that stands first on PATH would lend its modules.
    status = PyConfig_SetBytesString(&config, &config.program_name, ORVLANG_PYTHON_PROGRAM);
    if (!PyStatus_Exception(status))
        status = Py_InitializeFromConfig(&config);
    PyConfig_Clear(&config);
    return status;
}

/// Makes SIGINT raise KeyboardInterrupt when interrupt says that there was one, without taking the signal itself.
/// Importing the module and setting a handler both change the disposition, which is put back.
bool prepareInterrupt() {
    struct sigaction before;
    sigaction(SIGINT, nullptr, &before);
    const SNK_PythonReference signals(PyImport_ImportModule("_signal"));
    SNK_PythonReference done;
    if (signals) {
        const SNK_PythonReference handler(PyObject_GetAttrString(signals, "default_int_handler"));
        if (handler)
            done =
                SNK_PythonReference(PyObject_CallMethod(signals, "signal", "iO", SIGINT, (PyObject *)handler));
    }
    sigaction(SIGINT, &before, nullptr);
    return static_cast<bool>(done);
}

/// Runs a part of the component itself in a namespace.
bool runText(const char *text, PyObject *space) {
    if (PyDict_SetItemString(space, "__builtins__", PyEval_GetBuiltins()) != 0)
        return false;
    const SNK_PythonReference code(Py_CompileString(text, SNK_SupportFile, Py_file_input));
    return code && SNK_PythonReference(PyEval_EvalCode(code, space, space));
}

bool prepareSupport() {
    theSupport = PyDict_New();
    PyObject *const main = PyImport_AddModule("__main__");   // borrowed, like its namespace: it stays
    theMain = main ? PyModule_GetDict(main) : nullptr;
    return theSupport && theMain && runText(SNK_supportText, theSupport);
}

/// `orvlang`, put where an import finds it before it looks for a file.
bool prepareModule() {
    const SNK_PythonReference module(SNKmakePythonModule());
    return module && runText(SNK_orvlangText, PyModule_GetDict(module)) &&
           PyDict_SetItemString(PyImport_GetModuleDict(), "orvlang", module) == 0;
}

bool addFolders(const char *const *folders) {
    SNK_PythonReference list(PyList_New(0));
    for (; list && *folders; ++folders) {
        const SNK_PythonReference folder(PyUnicode_DecodeFSDefault(*folders));
        if (!folder || PyList_Append(list, folder) != 0)
            return false;
    }
    return list && SNK_Interpreter::support("add_folders", std::move(list));
}

bool prepare(bool isOurs) {
    if (!prepareSupport() || !prepareModule() || !addFolders(theHost->folders))
        return false;
    return !isOurs || (prepareInterrupt() && SNK_Interpreter::support("take_input"));
}

/// Handles the signals that are due now. Those that came for an earlier call, too late for it, concern nobody.
void dropOldSignals() {
    if (PyErr_CheckSignals() == 0)
        return;
    if (PyErr_ExceptionMatches(PyExc_KeyboardInterrupt))
        PyErr_Clear();
    else
        PyErr_WriteUnraisable(nullptr);
}

}   // namespace

bool SNK_Interpreter::start(const SNK_ComponentHost &host, std::string &reason) {
    theHost = &host;
    // A program may have brought the interpreter itself. Another version is another binary interface.
    if (std::strncmp(Py_GetVersion(), PY_VERSION, std::strlen("3.11.")) != 0) {
        reason = std::string("the program has another Python inside, ") + Py_GetVersion();
        return false;
    }
    const bool isOurs = !Py_IsInitialized();
    if (isOurs) {
        const PyStatus status = initialize();
        if (PyStatus_Exception(status)) {
            reason = status.err_msg ? status.err_msg : "the interpreter does not start";
            return false;
        }
    }
    const PyGILState_STATE state = PyGILState_Ensure();
    const bool prepared = prepare(isOurs);
    if (!prepared)
        SNKdescribeException(reason);
    PyGILState_Release(state);
    if (isOurs)
        PyEval_SaveThread();
    return prepared;
}

const SNK_ComponentHost &SNK_Interpreter::host() {
    return *theHost;
}

PyObject *SNK_Interpreter::mainNamespace() {
    return theMain;
}

SNK_PythonReference SNK_Interpreter::support(const char *function, SNK_PythonReference argument) {
    PyObject *const found = PyDict_GetItemString(theSupport, function);
    if (!found) {
        PyErr_SetString(PyExc_SystemError, function);
        return {};
    }
    return SNK_PythonReference(argument ? PyObject_CallOneArg(found, argument) : PyObject_CallNoArgs(found));
}

bool SNK_Interpreter::flush() {
    return static_cast<bool>(support("flush"));
}

bool SNK_Interpreter::isInsideCall() {
    return theDepth > 0;
}

bool SNK_Interpreter::isDeep() {
    const PyThreadState *const thread = PyGILState_GetThisThreadState();
    return thread && thread->recursion_remaining < thread->recursion_limit / 8;
}

void SNK_Interpreter::interrupt() {
    const int before = errno;
    if (theCalls.load() > 0)
        PyErr_SetInterruptEx(SIGINT);
    errno = before;
}

SNK_Interpreter::Call::Call() : state(PyGILState_Ensure()) {
    if (theCalls.load() == 0)
        dropOldSignals();
    ++theCalls;
    ++theDepth;
}

SNK_Interpreter::Call::~Call() {
    --theDepth;
    --theCalls;
    PyGILState_Release(state);
}
