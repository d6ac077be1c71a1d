// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/fml/FML.h>
#include <orvlang/platform/fml/FML_Evaluation.h>
#include <orvlang/platform/fml/FML_Value.h>
#include <orvlang/platform/fml/fml_Vector.h>

#include <string>
#include <string_view>

/// One call of a function of the library: its arguments, which already are what the signature asks for, and its
/// result.
class FML_Call {
public:
    FML_Call(FML_Evaluation &evaluation, FML_Value *arguments, std::size_t count)
        : evaluation(evaluation), arguments(arguments), argumentCount(count) {}

    std::size_t count() const { return argumentCount; }
    bool has(std::size_t i) const { return i < argumentCount; }
    FML_Value &any(std::size_t i) { return arguments[i]; }
    double number(std::size_t i) const { return arguments[i].number; }
    double numberOr(std::size_t i, double otherwise) const { return has(i) ? number(i) : otherwise; }
    /// Returns the number without its fraction, limited to the indices of the largest text or vector.
    long integer(std::size_t i) const;
    /// Returns an index that counts from 0, or from the end at `count` when it is negative. May be outside.
    long place(std::size_t i, std::size_t count) const;
    long integerOr(std::size_t i, long otherwise) const { return has(i) ? integer(i) : otherwise; }
    std::string_view text(std::size_t i) const { return arguments[i].text; }
    std::string_view textOr(std::size_t i, std::string_view otherwise) const {
        return has(i) ? text(i) : otherwise;
    }
    const fml_Vector &vector(std::size_t i) const { return *arguments[i].vector; }
    /// Returns the text of an argument that may be any value.
    std::string_view textOfAny(std::size_t i) { return evaluation.textOf(arguments[i]); }

    void give(double number) { result = FML_Value::ofNumber(number); }
    void give(bool truth) { give(truth ? 1.0 : 0.0); }
    void give(std::size_t number) { give(static_cast<double>(number)); }
    void give(FML_Value value) { result = value; }
    /// Sets a text that is part of an argument or a constant.
    void giveShared(std::string_view text) { result = FML_Value::ofText(text); }
    /// Sets a copy of a text.
    void giveText(std::string_view text);
    /// Appends `piece` to a text that is being made; false, and the call has failed, when it becomes too long.
    bool extend(std::string &text, std::string_view piece);
    /// Returns room for a result of `size` bytes of text; null, and the call has failed, when that is too long.
    char *giveRoom(std::size_t size);
    /// Sets an empty vector and returns it.
    fml_Vector &giveVector();
    void fail(FML_ERROR number) { evaluation.fail(number); }

    FML_Value result;

private:
    FML_Evaluation &evaluation;
    FML_Value *arguments;   // borrowed
    std::size_t argumentCount;
};
