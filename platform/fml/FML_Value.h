// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/kit/KIT_Number.h>

#include <string_view>

class fml_Vector;
struct FML_SYMBOL;

/// A value while an expression is evaluated. It owns nothing: what it points to belongs to the program (constants)
/// or to the evaluation, and lives until that ends, so values are copied freely.
struct FML_Value {
    enum Kind : unsigned char {
        NUMBER,
        TEXT,
        VECTOR,
        SYMBOL   // a value of a host's type, read when it is first used
    };
    enum Numeric : unsigned char { UNKNOWN, YES, NO };

    Kind kind = NUMBER;
    Numeric numeric = YES;   // of a text: whether it is a number, once that was asked
    double number = 0;       // when numeric is YES
    std::string_view text;   // of a text; a null one has no data
    union {
        const fml_Vector *vector = nullptr;
        FML_SYMBOL *symbol;
    };

    static FML_Value ofNumber(double number) {
        FML_Value value;
        value.number = number;
        return value;
    }
    static FML_Value ofText(std::string_view text) {
        FML_Value value;
        value.kind = TEXT;
        value.numeric = UNKNOWN;
        value.text = text;
        return value;
    }
    /// Returns a text that is known to be that number.
    static FML_Value ofNumberText(std::string_view text, double number) {
        FML_Value value;
        value.kind = TEXT;
        value.number = number;
        value.text = text;
        return value;
    }
    static FML_Value ofVector(const fml_Vector *vector) {
        FML_Value value;
        value.kind = VECTOR;
        value.numeric = NO;
        value.vector = vector;
        return value;
    }
    static FML_Value ofSymbol(FML_SYMBOL *symbol) {
        FML_Value value;
        value.kind = SYMBOL;
        value.numeric = NO;
        value.symbol = symbol;
        return value;
    }

    /// Returns whether it counts as a number, which is then in `number`.
    bool isNumber() {
        if (numeric == UNKNOWN)
            numeric = KITisNumber(text, &number) ? YES : NO;
        return numeric == YES;
    }
};
