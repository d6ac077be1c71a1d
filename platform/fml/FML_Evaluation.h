// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/fml/FML.h>
#include <orvlang/platform/fml/FML_Program.h>
#include <orvlang/platform/fml/FML_Registry.h>
#include <orvlang/platform/fml/FML_TextArena.h>
#include <orvlang/platform/fml/fml_Vector.h>
#include <orvlang/platform/kit/KIT_String.h>

#include <deque>
#include <string>
#include <string_view>
#include <vector>

struct FML_FUNCTION;

/// Runs one program: the stack machine and everything that its values point to. A function that it calls may run
/// commands; their expressions run in other evaluations.
class FML_Evaluation {
public:
    FML_Evaluation() : texts(theTextBlock), scratch(theTextBlock) {}
    FML_Evaluation(const FML_Evaluation &) = delete;
    FML_Evaluation &operator=(const FML_Evaluation &) = delete;

    /// An empty program, for one that is run once. Good until reset.
    FML_Program &getScratchProgram() { return scratch; }

    /// Returns true with `result` set, or false with the error in getError. `result` is valid until reset.
    bool run(const FML_Program &program, int threadIndex, FML_Value &result);
    /// Runs a part of a program that takes nothing from the stack and has no jumps.
    bool runAhead(const FML_Program &program, std::size_t begin, std::size_t end, FML_Value &result);
    int getError() const { return error; }
    /// Frees what the last evaluation made.
    void reset();

    // For the functions that are called.

    /// Keeps the first failure.
    void fail(int number) {
        if (error == FML_NO_ERROR)
            error = number;
    }
    std::string_view textOf(FML_Value &value);
    /// Returns whether a text may have that many bytes; if not, the evaluation has failed.
    bool allowText(std::size_t size);
    /// Returns null, and the evaluation has failed, when that is too long for a text.
    char *allocateText(std::size_t size);
    fml_Vector &newVector();

private:
    static constexpr std::size_t theTextBlock = 2048;

    bool runRange(const FML_Program &program, std::size_t begin, std::size_t end, FML_Value &result);
    void pushVariable(const FML_VariableReference &reference);
    void pushName(const FML_VariableReference &reference);
    bool pushResolved(const char *name);
    FML_Value takeReadText();
    void joinTexts(std::size_t count);
    void collectVector(std::size_t count);
    void call(const FML_Callee &callee, std::size_t count);
    void callLibrary(const FML_LibraryFunction &function, std::size_t count);
    void callHost(FML_FUNCTION &function, std::size_t count);
    void convert(FML_Value &value, char kind);
    /// Converts a value of a host's type to one of ours; other values do not change.
    void settle(FML_Value &value);
    bool isTrue(FML_Value &value);
    FML_SymbolPointer makeArgument(FML_Value &value, int typeCode);
    bool fillSymbol(FML_SYMBOL &symbol, FML_Value &value);
    FML_Value takeResult(FML_SymbolPointer symbol);
    void add(FML_Value &left, FML_Value &right);
    void compute(FML_Op op, FML_Value &left, FML_Value &right);
    void compare(FML_Op op, FML_Value &left, FML_Value &right);
    bool needNumber(FML_Value &value);
    void setNumber(FML_Value &value, double number);

    std::vector<FML_Value> stack;
    FML_Value *top = nullptr;   // one after the upper value
    int error = FML_NO_ERROR;
    int thread = 0;

    FML_TextArena texts;
    KIT_String read;                    // what a name was looked up into
    std::deque<KIT_String> longTexts;   // of variables; not worth a second copy
    std::deque<fml_Vector> vectors;
    std::vector<FML_SymbolPointer> symbols;
    std::string composed;   // a text while it is put together
    FML_Program scratch;
};
