// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/kit/KIT_Export.h>

#include <iosfwd>

class KIT_String;

/// What can go wrong with an expression. The numbers are part of the interface: hosts compare them.
enum FML_ERROR {
    FML_NO_ERROR = 0,
    FML_SYNTAX_ERROR,
    FML_UNKNOWN_FUNCTION,
    FML_ARGUMENT_COUNT,
    FML_UNKNOWN_VARIABLE,
    FML_WRONG_TYPE,
    FML_DIVISION_BY_ZERO,
    FML_NESTING_TOO_DEEP,
    FML_NOT_ALLOWED,     // in safe mode
    FML_OUT_OF_RANGE,    // a number without a value, or one that a function cannot take
    FML_TEXT_TOO_LONG,   // a text or vector that would grow beyond all use
    FML_ERROR_COUNT
};

/// What the expression library keeps for each thread.
struct CMD_API FML {
    /// The number of the first error since the engine last set this to 0; 0 for none.
    /// In the static block of thread storage, since every statement reads and writes it.
    static constinit thread_local int theErrNo __attribute__((tls_model("initial-exec")));
};

/// Returns the text for an error number, without an end of line. Empty for 0; never null.
CMD_API const char *fml_GetErrorText(int number);

/// For the evaluate callbacks of functions: makes the running expression fail with `number`. The first error
/// stays.
CMD_API void fml_Fail(int number);

/// In safe mode a function with the flag FML_UNSAFE fails with FML_NOT_ALLOWED instead of running.
CMD_API void fml_setSafeMode(bool on);
CMD_API bool fml_getSafeMode();

/// 0: a call of a function is made at each evaluation, even when all its arguments are constants. Above 0, which
/// is the state at start: a call whose function always returns the same result for them is made once, when the
/// expression is compiled.
CMD_API void fml_SetOptimization(int level);

/// Prints help on the functions. With a `name`: the entry of that function, or a line that there is none. Without
/// one (null): a list of all functions, or with a `keyword` of those whose entry holds it in any case of letters.
CMD_API void fml_PrintHelp(std::ostream &os, const char *name, const char *keyword);

/// Evaluates the expression `text` and sets `value` to its result as text. On failure it returns false, `value` is
/// unchanged and FML::theErrNo is the error. A null `text` is a syntax error.
CMD_API bool fml_Evaluate(const char *text, KIT_String &value, int thread = 0);
