// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/fml/FML_TextArena.h>
#include <orvlang/platform/fml/FML_Value.h>

#include <string_view>
#include <vector>

struct FML_FUNCTION;
struct FML_LibraryFunction;

/// What one instruction does to the stack of values. `n` is the instruction's count, `x` its operand.
enum class FML_Op : unsigned char {
    CONSTANT,     // push constant x
    VARIABLE,     // push the variable that reference x names
    NAME,         // push the value of the bare name x
    JOIN,         // the upper n values become one text
    VECTOR,       // the upper n values become a vector
    CALL,         // the upper n values become the result of callee x
    JUMP,         // go to instruction x
    JUMP_FALSE,   // pop; when that is false, go to x
    AND,          // pop; when that is false, push 0 and go to x
    OR,           // pop; when that is true, push 1 and go to x
    TRUTH,        // the upper value becomes 1 or 0
    NOT,
    NEGATE,
    ADD,
    SUBTRACT,
    MULTIPLY,
    DIVIDE,
    MODULO,
    POWER,
    EQUAL,
    NOT_EQUAL,
    LESS,
    LESS_EQUAL,
    GREATER,
    GREATER_EQUAL
};

struct FML_Instruction {
    FML_Op op;
    unsigned count;
    unsigned operand;
};

/// A name in a program, which is looked up when it runs.
struct FML_VariableReference {
    std::string_view name;   // ends with a NUL
    bool hasFallback = false;
    std::string_view fallback = {};   // used when the name is unknown
};

/// What a call in a program calls: one of the two is set.
struct FML_Callee {
    const FML_LibraryFunction *library = nullptr;
    FML_FUNCTION *host = nullptr;
    explicit operator bool() const { return library || host; }
};

/// An expression in compiled form: instructions for a stack machine. There are no loops, so each instruction runs
/// at most once in an evaluation.
class FML_Program {
public:
    explicit FML_Program(std::size_t textBlock) : texts(textBlock) {}

    /// Returns a copy of text that lives as long as the program and ends with a NUL.
    std::string_view keep(std::string_view text);
    void clear();

    std::vector<FML_Instruction> code;
    std::vector<FML_Value> constants;
    std::vector<FML_VariableReference> references;
    std::vector<FML_Callee> callees;
    std::size_t stackDepth = 0;   // the most values that it has on the stack

private:
    FML_TextArena texts;
};
