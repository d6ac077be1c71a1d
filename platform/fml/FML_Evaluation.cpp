// SPDX-License-Identifier: Apache-2.0
//
// The stack machine. A program comes from FML_Compiler; each of its instructions takes its values from the top of
// the stack and leaves one there. The first failure ends the run.
#include <orvlang/platform/fml/FML_Evaluation.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

// Longer texts of variables are kept where they are read; below it a copy costs less than a place of their own.
constexpr std::size_t theLongText = 512;
// No text grows beyond it: a script that repeats its mistake in a loop ends with an error, not with the memory.
constexpr std::size_t theLongestText = std::size_t(1) << 28;
// What an evaluation keeps for the next one.
constexpr std::size_t theKeptCapacity = 65536;
constexpr std::size_t theKeptStack = 4096;

bool holds(FML_Op op, int order) {
    switch (op) {
    case FML_Op::EQUAL:
        return order == 0;
    case FML_Op::NOT_EQUAL:
        return order != 0;
    case FML_Op::LESS:
        return order < 0;
    case FML_Op::LESS_EQUAL:
        return order <= 0;
    case FML_Op::GREATER:
        return order > 0;
    default:
        return order >= 0;
    }
}

}   // namespace

bool FML_Evaluation::run(const FML_Program &program, int threadIndex, FML_Value &result) {
    thread = threadIndex;
    return runRange(program, 0, program.code.size(), result);
}

bool FML_Evaluation::runAhead(const FML_Program &program, std::size_t begin, std::size_t end,
                              FML_Value &result) {
    const bool succeeded = runRange(program, begin, end, result);
    error = FML_NO_ERROR;
    return succeeded;
}

bool FML_Evaluation::runRange(const FML_Program &program, std::size_t begin, std::size_t end,
                              FML_Value &result) {
    if (stack.size() < program.stackDepth)
        stack.resize(program.stackDepth);
    top = stack.data();
    for (std::size_t at = begin; at < end && error == FML_NO_ERROR;) {
        const FML_Instruction instruction = program.code[at++];
        switch (instruction.op) {
        case FML_Op::CONSTANT:
            *top++ = program.constants[instruction.operand];
            break;
        case FML_Op::VARIABLE:
            pushVariable(program.references[instruction.operand]);
            break;
        case FML_Op::NAME:
            pushName(program.references[instruction.operand]);
            break;
        case FML_Op::JOIN:
            joinTexts(instruction.count);
            break;
        case FML_Op::VECTOR:
            collectVector(instruction.count);
            break;
        case FML_Op::CALL:
            call(program.callees[instruction.operand], instruction.count);
            break;
        case FML_Op::JUMP:
            at = instruction.operand;
            break;
        case FML_Op::JUMP_FALSE:
            if (!isTrue(*--top))
                at = instruction.operand;
            break;
        case FML_Op::AND:
        case FML_Op::OR: {
            const bool decided = instruction.op == FML_Op::OR;
            if (isTrue(*--top) != decided)
                break;
            setNumber(*top++, decided);
            at = instruction.operand;
            break;
        }
        case FML_Op::TRUTH:
            setNumber(top[-1], isTrue(top[-1]));
            break;
        case FML_Op::NOT:
            setNumber(top[-1], !isTrue(top[-1]));
            break;
        case FML_Op::NEGATE:
            if (needNumber(top[-1]))
                setNumber(top[-1], -top[-1].number);
            break;
        case FML_Op::ADD:
            top--;
            add(top[-1], *top);
            break;
        case FML_Op::SUBTRACT:
        case FML_Op::MULTIPLY:
        case FML_Op::DIVIDE:
        case FML_Op::MODULO:
        case FML_Op::POWER:
            top--;
            compute(instruction.op, top[-1], *top);
            break;
        case FML_Op::EQUAL:
        case FML_Op::NOT_EQUAL:
        case FML_Op::LESS:
        case FML_Op::LESS_EQUAL:
        case FML_Op::GREATER:
        case FML_Op::GREATER_EQUAL:
            top--;
            compare(instruction.op, top[-1], *top);
            break;
        }
    }
    if (error != FML_NO_ERROR)
        return false;
    result = top[-1];
    return true;
}

void FML_Evaluation::reset() {
    error = FML_NO_ERROR;
    texts.clear();
    if (!longTexts.empty())
        longTexts.clear();
    if (!vectors.empty())
        vectors.clear();
    symbols.clear();
    if (composed.capacity() > theKeptCapacity)
        std::string().swap(composed);
    if (stack.size() > theKeptStack)
        std::vector<FML_Value>().swap(stack);
    if (std::max(scratch.code.capacity(), scratch.constants.capacity()) > theKeptStack)
        scratch = FML_Program(theTextBlock);
    else
        scratch.clear();
}

// Names.

/// The text that a name was read into, in a place where it stays.
FML_Value FML_Evaluation::takeReadText() {
    if (read.isNull())
        return FML_Value::ofText({});
    if (read.length() <= theLongText)
        return FML_Value::ofText(texts.copy(read.view()));
    KIT_String &kept = longTexts.emplace_back(std::move(read));
    kept.harden();
    return FML_Value::ofText(kept.view());
}

bool FML_Evaluation::pushResolved(const char *name) {
    FML_SymbolPointer symbol = FML_Registry::get().resolve(name, thread);
    if (!symbol)
        return false;
    *top++ = FML_Value::ofSymbol(symbol.get());
    symbols.push_back(std::move(symbol));
    return true;
}

void FML_Evaluation::pushVariable(const FML_VariableReference &reference) {
    const FML_NameSource &names = FML_Registry::get().getNames();
    read.clear();
    if (names.variable && names.variable(reference.name.data(), read, thread))
        *top++ = takeReadText();
    else if (pushResolved(reference.name.data()))
        return;
    else if (reference.hasFallback)
        *top++ = FML_Value::ofText(reference.fallback);
    else
        fail(FML_UNKNOWN_VARIABLE);
}

void FML_Evaluation::pushName(const FML_VariableReference &reference) {
    const FML_NameSource &names = FML_Registry::get().getNames();
    read.clear();
    if (names.fixed && names.fixed(reference.name.data(), read)) {
        *top++ = takeReadText();
        return;
    }
    if (!pushResolved(reference.name.data()))
        pushVariable(reference);
}

// What values count as.

void FML_Evaluation::settle(FML_Value &value) {
    if (value.kind != FML_Value::SYMBOL)
        return;
    FML_SYMBOL &source = *value.symbol;
    value = FML_Value::ofText({});
    for (const int code : { FML_STRING, FML_FLOAT, FML_VECTOR }) {
        FML_SymbolPointer target(fml_AllocSymbol(code, thread));
        if (source.type->cast && source.type->cast(target.get(), &source) >= 0) {
            value = takeResult(std::move(target));
            return;
        }
    }
    fail(FML_WRONG_TYPE);
}

std::string_view FML_Evaluation::textOf(FML_Value &value) {
    settle(value);
    if (value.kind == FML_Value::NUMBER) {
        KIT_NumberText room;
        return texts.copy(KITformatNumber(value.number, room));
    }
    if (value.kind == FML_Value::VECTOR) {
        composed.clear();
        value.vector->appendText(composed);
        return texts.copy(composed);
    }
    return value.text;
}

bool FML_Evaluation::isTrue(FML_Value &value) {
    settle(value);
    if (value.isNumber())
        return value.number != 0;
    return value.kind == FML_Value::VECTOR ? value.vector->entries() > 0 : !value.text.empty();
}

bool FML_Evaluation::needNumber(FML_Value &value) {
    if (value.isNumber())
        return true;
    settle(value);
    if (value.isNumber())
        return true;
    fail(FML_WRONG_TYPE);
    return false;
}

void FML_Evaluation::setNumber(FML_Value &value, double number) {
    value.kind = FML_Value::NUMBER;
    value.numeric = FML_Value::YES;
    value.number = number;
    if (!std::isfinite(number))
        fail(FML_OUT_OF_RANGE);
}

bool FML_Evaluation::allowText(std::size_t size) {
    if (size > theLongestText)
        fail(FML_TEXT_TOO_LONG);
    return size <= theLongestText;
}

char *FML_Evaluation::allocateText(std::size_t size) {
    return allowText(size) ? texts.allocate(size) : nullptr;
}

fml_Vector &FML_Evaluation::newVector() {
    return vectors.emplace_back();
}

// Operators.

void FML_Evaluation::add(FML_Value &left, FML_Value &right) {
    settle(left);
    settle(right);
    if (left.isNumber() && right.isNumber())
        return setNumber(left, left.number + right.number);
    top++;   // both are on the stack again
    joinTexts(2);
}

void FML_Evaluation::joinTexts(std::size_t count) {
    FML_Value *pieces = top - count;
    std::string_view joined = textOf(pieces[0]);
    for (std::size_t i = 1; i < count; i++) {
        const std::string_view piece = textOf(pieces[i]);
        if (!allowText(joined.size() + piece.size()))
            return;
        joined = texts.join(joined, piece);
    }
    top = pieces;
    *top++ = FML_Value::ofText(joined);
}

void FML_Evaluation::collectVector(std::size_t count) {
    FML_Value *entries = top - count;
    fml_Vector &vector = newVector();
    for (std::size_t i = 0; i < count; i++)
        if (needNumber(entries[i]))
            vector.append(entries[i].number);
    top = entries;
    *top++ = FML_Value::ofVector(&vector);
}

void FML_Evaluation::compute(FML_Op op, FML_Value &left, FML_Value &right) {
    if (!needNumber(left) || !needNumber(right))
        return;
    const double a = left.number;
    const double b = right.number;
    switch (op) {
    case FML_Op::SUBTRACT:
        return setNumber(left, a - b);
    case FML_Op::MULTIPLY:
        return setNumber(left, a * b);
    case FML_Op::DIVIDE:
        return b == 0 ? fail(FML_DIVISION_BY_ZERO) : setNumber(left, a / b);
    case FML_Op::MODULO:
        return b == 0 ? fail(FML_DIVISION_BY_ZERO) : setNumber(left, std::fmod(a, b));
    default:
        return a == 0 && b < 0 ? fail(FML_DIVISION_BY_ZERO) : setNumber(left, std::pow(a, b));
    }
}

void FML_Evaluation::compare(FML_Op op, FML_Value &left, FML_Value &right) {
    settle(left);
    settle(right);
    int order = 0;
    if (left.isNumber() && right.isNumber())
        order = left.number < right.number ? -1 : left.number > right.number;
    else
        order = textOf(left).compare(textOf(right));
    setNumber(left, holds(op, order));
}
