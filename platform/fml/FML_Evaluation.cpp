// SPDX-License-Identifier: Apache-2.0
//
// The stack machine. A program comes from FML_Compiler; each of its instructions takes its values from the top of
// the stack and leaves one there. The first failure ends the run.
#include <orvlang/platform/fml/FML_Evaluation.h>

#include <orvlang/platform/fml/FML_Call.h>
#include <orvlang/platform/fml/FML_Evaluator.h>
#include <orvlang/platform/fml/FML_Function.h>
#include <orvlang/platform/fml/FML_Library.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace {

// Longer texts of variables are kept where they are read; below it a copy costs less than a place of their own.
constexpr std::size_t theLongText = 512;
// No text grows beyond it: a script that repeats its mistake in a loop ends with an error, not with the memory.
constexpr std::size_t theLongestText = std::size_t(1) << 28;
// What an evaluation keeps for the next one.
constexpr std::size_t theKeptCapacity = 65536;
constexpr std::size_t theKeptStack = 4096;

/// The number that a person sees who looks at the float: 0.1f becomes 0.1.
double widen(float value) {
    if (!std::isfinite(value))
        return value;
    char text[32];
    const std::to_chars_result written = std::to_chars(text, text + sizeof text, value);
    double wide = value;
    std::from_chars(text, written.ptr, wide);
    return wide;
}

char *duplicate(std::string_view text) {
    char *copy = static_cast<char *>(std::malloc(text.size() + 1));
    if (!copy)
        throw std::bad_alloc();
    std::copy(text.begin(), text.end(), copy);
    copy[text.size()] = '\0';
    return copy;
}

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

char *FML_Evaluation::allocateText(std::size_t size) {
    if (size <= theLongestText)
        return texts.allocate(size);
    fail(FML_TEXT_TOO_LONG);
    return nullptr;
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
    top++;   // both stand on the stack again
    joinTexts(2);
}

void FML_Evaluation::joinTexts(std::size_t count) {
    FML_Value *pieces = top - count;
    std::string_view joined = textOf(pieces[0]);
    for (std::size_t i = 1; i < count; i++) {
        const std::string_view piece = textOf(pieces[i]);
        if (joined.size() + piece.size() > theLongestText)
            return fail(FML_TEXT_TOO_LONG);
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

// Calls.

void FML_Evaluation::call(const FML_Callee &callee, std::size_t count) {
    if (callee.library)
        callLibrary(*callee.library, count);
    else
        callHost(*callee.host, count);
}

void FML_Evaluation::callLibrary(const FML_LibraryFunction &function, std::size_t count) {
    FML_Value *arguments = top - count;
    for (std::size_t i = 0; i < count && error == FML_NO_ERROR; i++)
        convert(arguments[i], function.signature.kind(i));
    if (error != FML_NO_ERROR)
        return;
    FML_Call call(*this, arguments, count);
    function.evaluate(call);
    if (call.result.kind == FML_Value::NUMBER && !std::isfinite(call.result.number))
        fail(FML_OUT_OF_RANGE);
    top = arguments;
    *top++ = call.result;
}

/// Makes an argument what the signature of a library function asks for.
void FML_Evaluation::convert(FML_Value &value, char kind) {
    settle(value);
    if (kind == 'n') {
        needNumber(value);
    } else if (kind == 't') {
        value.text = textOf(value);
    } else if (kind == 'v' && value.kind != FML_Value::VECTOR) {
        fml_Vector &vector = newVector();
        if (vector.scan(textOf(value)))
            value = FML_Value::ofVector(&vector);
        else
            fail(FML_WRONG_TYPE);
    }
}

bool FML_Evaluation::fillSymbol(FML_SYMBOL &symbol, FML_Value &value) {
    settle(value);
    switch (symbol.type->code) {
    case FML_FLOAT:
        if (!needNumber(value))
            return false;
        symbol.value.number = static_cast<float>(value.number);
        return true;
    case FML_STRING: {
        const std::string_view text = textOf(value);
        symbol.value.text = text.data() ? duplicate(text) : nullptr;
        return true;
    }
    case FML_VECTOR:
        convert(value, 'v');
        if (value.kind != FML_Value::VECTOR)
            return false;
        *symbol.value.vector = *value.vector;
        return true;
    default:
        fail(FML_WRONG_TYPE);
        return false;
    }
}

/// An argument for a function of a host; null, and the evaluation has failed, when the value does not fit.
FML_SymbolPointer FML_Evaluation::makeArgument(FML_Value &value, int typeCode) {
    FML_SymbolPointer symbol(fml_AllocSymbol(typeCode, thread));
    if (!symbol) {
        fail(FML_WRONG_TYPE);
        return nullptr;
    }
    if (value.kind == FML_Value::SYMBOL) {
        FML_SYMBOL &source = *value.symbol;
        if (source.type->cast && source.type->cast(symbol.get(), &source) >= 0)
            return symbol;
    }
    return fillSymbol(*symbol, value) ? std::move(symbol) : nullptr;
}

void FML_Evaluation::callHost(FML_FUNCTION &function, std::size_t count) {
    if ((function.flags & FML_UNSAFE) && fml_getSafeMode())
        return fail(FML_NOT_ALLOWED);
    FML_Value *values = top - count;
    std::vector<FML_SymbolPointer> made(count);
    std::vector<FML_SYMBOL *> arguments(count);
    const auto declared = static_cast<std::size_t>(function.argumentCount);
    for (std::size_t i = 0; i < count; i++) {
        const int code = declared > 0 ? function.argumentTypes[std::min(i, declared - 1)] : FML_STRING;
        if (values[i].kind == FML_Value::SYMBOL && values[i].symbol->type->code == code) {
            arguments[i] = values[i].symbol;
            continue;
        }
        made[i] = makeArgument(values[i], code);
        if (!made[i])
            return;
        arguments[i] = made[i].get();
    }
    FML_SymbolPointer result(fml_AllocSymbol(function.resultType, thread));
    if (!result)
        return fail(FML_WRONG_TYPE);
    // Commands that the function runs begin with no error, and end with one only when nobody reported it.
    const int before = std::exchange(FML::theErrNo, 0);
    const unsigned refusals = FML_Evaluator::get().getRefusals();
    function.evaluate(&function, result.get(), arguments.data(), thread);
    if (refusals != FML_Evaluator::get().getRefusals())
        FML::theErrNo = FML_NESTING_TOO_DEEP;
    const int failure = std::exchange(FML::theErrNo, before);
    if (failure != FML_NO_ERROR)
        return fail(failure);
    top = values;
    *top++ = takeResult(std::move(result));
}

/// The value that a function or a cast gave. The symbol lives as long as the evaluation, since the value may point
/// into it.
FML_Value FML_Evaluation::takeResult(FML_SymbolPointer symbol) {
    const FML_SYMBOL &given = *symbol;
    FML_Value value = FML_Value::ofSymbol(symbol.get());
    if (given.type->code == FML_FLOAT)
        setNumber(value, widen(given.value.number));
    else if (given.type->code == FML_STRING)
        value = FML_Value::ofText(given.value.text ? std::string_view(given.value.text) : std::string_view());
    else if (given.type->code == FML_VECTOR)
        value = FML_Value::ofVector(given.value.vector);
    symbols.push_back(std::move(symbol));
    return value;
}
