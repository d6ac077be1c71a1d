// SPDX-License-Identifier: Apache-2.0
//
// Calls of functions: the values on the stack become the arguments that the function asks for, and its result takes
// their place. Functions of the library work on values directly, those of hosts on symbols.
#include <orvlang/platform/fml/FML_Evaluation.h>

#include <orvlang/platform/fml/FML_Call.h>
#include <orvlang/platform/fml/FML_ErrorScope.h>
#include <orvlang/platform/fml/FML_Function.h>
#include <orvlang/platform/fml/FML_Library.h>
#include <orvlang/platform/kit/KIT_Nesting.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>

namespace {

/// Returns the shortest decimal number that reads as the float: 0.1f becomes 0.1.
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

/// Returns the error that the function has left. Commands that it runs begin without one, and leave one only when it was
/// not reported.
int evaluateHost(FML_FUNCTION &function, FML_SYMBOL &result, FML_SYMBOL **arguments, int thread) {
    const FML_ErrorScope earlierError(FML_ErrorScope::Always);
    FML::theErrNo = FML_NO_ERROR;
    const unsigned refusals = KIT_Nesting::getRefusals();
    function.evaluate(&function, &result, arguments, thread);
    // A recursion without end must not end as if nothing had happened.
    return refusals != KIT_Nesting::getRefusals() ? FML_NESTING_TOO_DEEP : FML::theErrNo;
}

}   // namespace

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
    const int failure = evaluateHost(function, *result, arguments.data(), thread);
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
