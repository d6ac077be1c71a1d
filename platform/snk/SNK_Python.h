// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/kit/KIT_Export.h>
#include <orvlang/platform/snk/SNK_Result.h>

/// Reserved: pass null.
struct SNK_EvaluationContext;

// Python code inside the process. The interpreter is loaded and started by the first of these calls, and stays until
// the process ends. Where it is missing each call returns an exception whose text begins with "Python is not
// available: ". All code runs in the module `__main__`, so the next call knows what one call has defined, and can
// `import orvlang`, through which it uses the command language.
//
// Any thread may call, and calls nest. Each holds the interpreter lock while it runs. The standard streams of C++ are
// flushed before the code runs, and those of Python after it, so that the output of both comes in order.
// KIT_Interrupt::interrupt raises KeyboardInterrupt in code that runs on the thread that made the first call.

/// Evaluates an expression and converts its value. Float: numbers of all kinds, but no texts. String: str(value).
/// StringArray: any sequence of texts, but not a text itself. Another kind returns WrongType. Null code counts as empty,
/// which is a syntax error.
CMD_API SNK_Result SNKrunPythonExpression(const char *code, SNK_Result::Type wanted,
                                          SNK_EvaluationContext *context);
/// Runs statements. Null code counts as empty.
CMD_API SNK_Result SNKrunPythonStatements(const char *code, SNK_EvaluationContext *context);
/// Runs the file argv[0]. While it runs, sys.argv holds the words, sys.path begins with the folder of the file, and
/// `__file__` is its name. Without a word it returns an exception.
CMD_API SNK_Result SNKrunPythonStatementsFromFile(int argc, char **argv, SNK_EvaluationContext *context);

/// The error (an errno) with which standard output refused text of Python's that is lost now; 0 for none. Known at the end
/// of the process only: until then Python keeps such text and tries again.
CMD_API int SNKgetPythonOutputError();
