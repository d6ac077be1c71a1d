// SPDX-License-Identifier: Apache-2.0
#include "SNK_Interpreter.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>

#include <unistd.h>

#include "SNK_PythonModule.h"
#include "SNK_PythonTexts.h"
#include "SNK_PythonValue.h"

namespace {

const SNK_ComponentHost *theHost = nullptr;
PyObject *theSupport = nullptr;   // the namespace of support.py
PyObject *theMain = nullptr;   // the one of `__main__`; both stay for good, whatever code does to the modules

bool isOurs = false;   // else the program had started the interpreter before
bool isGone = false;   // the program has ended it

/// The thread that has started the interpreter, the only one in which Python raises KeyboardInterrupt; 0 while it is
/// not known.
pid_t theThread = 0;
std::atomic<bool> isPassedOn{ false };   // an interrupt, to theThread

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
    config.use_hash_seed = -1;   // as PYTHONHASHSEED has it
    // Without a name of its own it would use the modules of another Python that is first on PATH.
    status = PyConfig_SetBytesString(&config, &config.program_name, ORVLANG_PYTHON_PROGRAM);
    if (!PyStatus_Exception(status))
        status = Py_InitializeFromConfig(&config);
    PyConfig_Clear(&config);
    return status;
}

void (*thePythonHandler)(int) = nullptr;   // of signals, as Python sets it

/// Replaces signal.signal: where the program has a handler of its own for SIGINT, that one is kept. It passes the signal
/// to Python through interrupt, and then what Python code has set is called.
PyObject *setSignal(PyObject *original, PyObject *arguments) {
    struct sigaction before;
    sigaction(SIGINT, nullptr, &before);
    PyObject *const result = PyObject_Call(original, arguments, nullptr);
    const auto handler = before.sa_handler;
    if (handler != SIG_DFL && handler != SIG_IGN && handler != thePythonHandler)
        sigaction(SIGINT, &before, nullptr);
    return result;
}

PyMethodDef theSetSignal = { "signal", setSignal, METH_VARARGS, nullptr };

/// Makes SIGINT raise KeyboardInterrupt when interrupt says that there was one, without taking the signal itself.
/// Importing the module and setting a handler both change the disposition, which is put back.
bool prepareInterrupt() {
    struct sigaction before, python;
    sigaction(SIGINT, nullptr, &before);
    const SNK_PythonReference signals(PyImport_ImportModule("_signal"));
    const SNK_PythonReference set(signals ? PyObject_GetAttrString(signals, "signal") : nullptr);
    const SNK_PythonReference handler(set ? PyObject_GetAttrString(signals, "default_int_handler") : nullptr);
    const SNK_PythonReference done(handler ? PyObject_CallFunction(set, "iO", SIGINT, (PyObject *)handler)
                                           : nullptr);
    sigaction(SIGINT, &before, &python);
    thePythonHandler = python.sa_handler;
    const SNK_PythonReference ours(done ? PyCFunction_New(&theSetSignal, set) : nullptr);
    return ours && PyObject_SetAttrString(signals, "signal", ours) == 0;
}

/// Runs a part of the component itself in a namespace.
bool runText(const char *text, PyObject *space) {
    if (PyDict_SetItemString(space, "__builtins__", PyEval_GetBuiltins()) != 0)
        return false;
    const SNK_PythonReference code(Py_CompileString(text, SNK_SupportFile, Py_file_input));
    return code && SNK_PythonReference(PyEval_EvalCode(code, space, space));
}

bool prepareSupport() {
    PyObject *const main = PyImport_AddModule("__main__");   // borrowed
    if (!main)
        return false;
    theMain = Py_NewRef(PyModule_GetDict(main));
    theSupport = Py_BuildValue("{s:O,s:N}", "main", main, "read_line", SNKmakeReadLine().release());
    return theSupport && runText(SNK_supportText, theSupport);
}

/// The module `orvlang`, which is among those that an import finds before it looks for a file.
PyObject *makeModule() {
    SNK_PythonReference module(SNKmakePythonModule());
    return module && runText(SNK_orvlangText, PyModule_GetDict(module)) ? module.release() : nullptr;
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

/// Where the program's own interpreter finds `orvlang`: it knows its built-in modules from the start.
bool addModule() {
    const SNK_PythonReference module(makeModule());
    return module && PyDict_SetItemString(PyImport_GetModuleDict(), "orvlang", module) == 0;
}

bool prepare() {
    if (!prepareSupport() || !addFolders(theHost->folders) || Py_AtExit([] { isGone = true; }) != 0)
        return false;
    return isOurs ? prepareInterrupt() && SNK_Interpreter::support("take_input") : addModule();
}

/// Has theThread interrupt itself when the caller is another thread. From elsewhere Python's flag does not reach code
/// that makes no calls, nor does it end a system call. SIGURG does no harm whenever it comes, since the system ignores it;
/// where the program uses it, nothing is done.
void passInterruptOn() {
    constexpr auto interrupt = [](int) {
        if (isPassedOn.exchange(false))
            SNK_Interpreter::interrupt();
    };
    if (theThread == 0 || theThread == gettid())
        return;
    struct sigaction action;
    sigaction(SIGURG, nullptr, &action);
    if (action.sa_handler == SIG_DFL) {
        action = {};
        action.sa_handler = interrupt;
        sigaction(SIGURG, &action, nullptr);
    } else if (action.sa_handler != interrupt) {
        return;
    }
    isPassedOn = true;
    tgkill(getpid(), theThread, SIGURG);   // does nothing when the thread has ended
}

/// Handles the signals that are due now: they came too late for an earlier call, so they mean nothing.
void dropOldSignals() {
    isPassedOn = false;
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
    isOurs = !Py_IsInitialized();
    if (isOurs) {
        theThread = gettid();
        PyImport_AppendInittab("orvlang", makeModule);
        const PyStatus status = initialize();
        if (PyStatus_Exception(status)) {
            reason = status.err_msg ? status.err_msg : "the interpreter does not start";
            return false;
        }
    }
    const PyGILState_STATE state = PyGILState_Ensure();
    const bool prepared = prepare();
    if (!prepared)
        SNKdescribeException(reason);
    PyGILState_Release(state);
    if (isOurs)
        PyEval_SaveThread();
    return prepared;
}

bool SNK_Interpreter::hasEnded() {
    return isGone || !Py_IsInitialized();
}

bool SNK_Interpreter::endsWithProcess() {
    return isOurs && !hasEnded();
}

const SNK_ComponentHost &SNK_Interpreter::host() {
    return *theHost;
}

PyObject *SNK_Interpreter::mainNamespace() {
    return theMain;
}

SNK_PythonReference SNK_Interpreter::support(const char *function, SNK_PythonReference argument) {
    PyObject *const found = theSupport ? PyDict_GetItemString(theSupport, function) : nullptr;
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
    if (theCalls.load() > 0) {
        PyErr_SetInterruptEx(SIGINT);
        passInterruptOn();
    }
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
