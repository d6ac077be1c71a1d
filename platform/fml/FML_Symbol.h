// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/kit/KIT_Export.h>

class fml_Vector;
struct FML_TYPEDEF;

/// The type codes of the arguments and results of functions. Types of hosts have codes from 16 on.
enum FML_TYPE { FML_FLOAT = 0, FML_STRING = 1, FML_VECTOR = 5, FML_FIRST_HOST_TYPE = 16 };

/// One machine word; the type of the symbol decides which member is used.
union FML_VALUE {
    void *word;
    float number;
    char *text;           // from malloc, owned by the symbol; may be null
    fml_Vector *vector;   // owned by the symbol
};

/// A typed value. It owns what its value points to: the release operation of its type frees that.
struct FML_SYMBOL {
    const FML_TYPEDEF *type;
    FML_VALUE value;
};

/// A type of values. The record must not be moved or freed once it has been added.
struct FML_TYPEDEF {
    using Reserved = void (*)();

    int code;
    const char *name;
    /// Sets the first value of a new symbol; null: a value of zeros.
    void (*allocate)(FML_SYMBOL *symbol);
    /// Frees what the value owns; null: nothing.
    void (*release)(FML_SYMBOL *symbol);
    /// A new symbol, made by fml_AllocSymbol, when this type knows `name`, else null. Null: knows none.
    FML_SYMBOL *(*resolve)(const char *name, int thread);
    /// The name that a symbol was resolved from. May be null.
    const char *(*getName)(FML_SYMBOL *symbol);
    /// Turns `source`, of this type, into the type that `target` has. Negative: it cannot.
    int (*cast)(FML_SYMBOL *target, FML_SYMBOL *source);
    Reserved reserved[6];   // null
};

/// Lets the names that `type` resolves be used in expressions. Names known to the time line come first, then the
/// types in the order in which they were added; with `front` not 0 this one is tried before the others. A type
/// that is null, or whose code is taken, changes nothing.
CMD_API void fml_AddVariableType(const FML_TYPEDEF *type, int front);

/// Returns a new symbol of a type, with its first value; null when there is no such type. It is freed by
/// fml_FreeSymbol, or returned from a resolver.
CMD_API FML_SYMBOL *fml_AllocSymbol(int typeCode, int thread);
CMD_API void fml_FreeSymbol(FML_SYMBOL *symbol);
