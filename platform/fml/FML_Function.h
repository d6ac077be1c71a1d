// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/kit/KIT_Export.h>

struct FML_SYMBOL;
struct FML_FUNCTION;

/// Bits of the flags of a function.
enum FML_FUNCTION_FLAG : unsigned {
    FML_UNSAFE = 0x1,          // refused in safe mode
    FML_VOLATILE = 0x8000000   // the result depends on more than the arguments: never computed ahead
};

/// Computes `result`, a symbol of the function's result type that starts with the first value of that type, from
/// the arguments, which have the types that the function asked for. Both belong to the caller. To fail, call
/// fml_Fail.
using FML_EvaluateCallback = void (*)(FML_FUNCTION *function, FML_SYMBOL *result, FML_SYMBOL **arguments,
                                      int thread);
/// Called once when a function is added, and when another one takes its name.
using FML_FunctionCallback = void (*)(FML_FUNCTION *function);

/// A function of expressions that a host adds. The record must not be moved or freed afterwards.
struct CMD_API FML_FUNCTION {
    constexpr FML_FUNCTION(unsigned flags, const char *name, int argumentCount, int resultType,
                           const int *argumentTypes, FML_EvaluateCallback evaluate, FML_FunctionCallback added,
                           FML_FunctionCallback replaced, int version, bool openEnded)
        : flags(flags), name(name), argumentCount(argumentCount), resultType(resultType),
          argumentTypes(argumentTypes), evaluate(evaluate), added(added), replaced(replaced), version(version),
          openEnded(openEnded) {}

    unsigned flags;
    const char *name;           // borrowed; null in the record that ends a table
    int argumentCount;          // how many arguments a call has
    int resultType;             // a type code
    const int *argumentTypes;   // borrowed; argumentCount type codes
    FML_EvaluateCallback evaluate;
    FML_FunctionCallback added;      // may be null
    FML_FunctionCallback replaced;   // may be null
    int version;                     // of this record's layout: 1
    bool openEnded;                  // a call may have more arguments, of the last one's type
};

/// Makes `function` known to expressions, instead of an older one of its name. `help` is the text that
/// fml_PrintHelp shows below the name: how it is called, a line end, and what it does; not copied.
CMD_API void fml_AddFunction(FML_FUNCTION *function, const char *help = nullptr);
