// SPDX-License-Identifier: Apache-2.0
// What the component offers: each call goes through SNK_Interpreter::Call, runs its code in `__main__`, passes on
// the result and flushes Python's streams. Exceptions of Python end here.
#include <cstring>
#include <string>

#include <orvlang/platform/snk/SNK_Result.h>

#include "SNK_Interpreter.h"
#include "SNK_PythonValue.h"

namespace {

/// Runs one call: `work` returns a kind, or a negative number with an exception set.
template <typename Work>
int run(const SNK_TextTaker &texts, Work work) {
    const SNK_ComponentHost &host = SNK_Interpreter::host();
    host.flush();
    const SNK_Interpreter::Call call;
    int kind = -1;
    if (host.isInterrupted())
        PyErr_SetNone(PyExc_KeyboardInterrupt);
    else
        kind = work();
    if (kind < 0)
        kind = SNKgiveException(texts);
    if (SNK_Interpreter::flush())
        return kind;
    // Printed text is not lost silently; but the first failure is the one that is reported.
    if (kind != SNK_Result::None) {
        PyErr_Clear();
        return kind;
    }
    return SNKgiveException(texts);
}

SNK_PythonReference evaluate(PyObject *code) {
    PyObject *const space = SNK_Interpreter::mainNamespace();
    return SNK_PythonReference(code ? PyEval_EvalCode(code, space, space) : nullptr);
}

SNK_PythonReference evaluate(const char *code, int start) {
    // The compiler would report only that the text is wrong.
    if (!SNK_PythonReference(PyUnicode_DecodeUTF8(code, static_cast<Py_ssize_t>(std::strlen(code)), nullptr)))
        return {};
    PyCompilerFlags flags = _PyCompilerFlags_INIT;
    flags.cf_flags = PyCF_SOURCE_IS_UTF8 | PyCF_IGNORE_COOKIE;
    return evaluate(SNK_PythonReference(Py_CompileStringFlags(code, "<string>", start, &flags)));
}

int runExpression(const char *code, int wanted, double &number, const SNK_TextTaker &texts) {
    return run(texts, [&] {
        // As eval does: blanks in front are no indentation.
        const SNK_PythonReference value = evaluate(code + std::strspn(code, " \t"), Py_eval_input);
        return value ? SNKgiveValue(value, wanted, number, texts) : -1;
    });
}

int runStatements(const char *code, const SNK_TextTaker &texts) {
    return run(texts, [&] { return evaluate(code, Py_file_input) ? int(SNK_Result::None) : -1; });
}

/// Returns the words as a list of Python; bytes that are not UTF-8 are kept as Python keeps them in names of files.
SNK_PythonReference makeWords(int argc, char **argv) {
    SNK_PythonReference words(PyList_New(argc));
    for (int i = 0; words && i < argc; ++i) {
        PyObject *const word = PyUnicode_DecodeFSDefault(argv[i]);
        if (!word)
            return {};
        PyList_SET_ITEM((PyObject *)words, i, word);
    }
    return words;
}

/// Undoes what start_script did, or a part of it, and keeps the exception that is set. What a signal raises meanwhile
/// was meant for the code that has just ended.
void endScript(PyObject *script) {
    constexpr int theTries = 100;
    PyObject *type, *value, *traceback;
    PyErr_Fetch(&type, &value, &traceback);
    for (int tries = 1; !SNK_Interpreter::support("end_script", SNK_PythonReference::share(script)); ++tries) {
        if (tries == theTries) {
            PyErr_WriteUnraisable(nullptr);
            break;
        }
        PyErr_Clear();
    }
    PyErr_Restore(type, value, traceback);
}

int runFile(int argc, char **argv, const SNK_TextTaker &texts) {
    return run(texts, [&] {
        SNK_PythonReference words = makeWords(argc, argv);
        if (!words)
            return -1;
        const SNK_PythonReference loaded = SNK_Interpreter::support("load_script", std::move(words));
        PyObject *code = nullptr, *script = nullptr;   // borrowed
        if (!loaded || !PyArg_ParseTuple(loaded, "OO", &code, &script))
            return -1;
        const bool done =
            SNK_Interpreter::support("start_script", SNK_PythonReference::share(script)) && evaluate(code);
        endScript(script);
        return done ? int(SNK_Result::None) : -1;
    });
}

int lock() {
    return PyGILState_Ensure();
}

void unlock(int state) {
    PyGILState_Release(static_cast<PyGILState_STATE>(state));
}

/// The interpreter itself stays: threads of Python may be running, and waiting for them could take for ever.
int finish() {
    if (!SNK_Interpreter::endsWithProcess())
        return 0;
    const SNK_Interpreter::Call call;
    const SNK_PythonReference refusal = SNK_Interpreter::support("finish");
    if (refusal)
        return static_cast<int>(PyLong_AsLong(refusal));
    PyErr_WriteUnraisable(nullptr);
    return 0;
}

}   // namespace

extern "C" CMD_API SNK_StartFunction SNK_START_FUNCTION;

const SNK_ComponentTable *SNK_START_FUNCTION(const SNK_ComponentHost &host, const SNK_TextTaker &reason) {
    static constexpr SNK_ComponentTable table = { runExpression,
                                                  runStatements,
                                                  runFile,
                                                  SNK_Interpreter::hasEnded,
                                                  SNK_Interpreter::isDeep,
                                                  lock,
                                                  unlock,
                                                  SNK_Interpreter::interrupt,
                                                  finish };
    std::string text;
    if (SNK_Interpreter::start(host, text))
        return &table;
    reason(text.data(), text.size());
    return nullptr;
}
