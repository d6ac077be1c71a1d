// SPDX-License-Identifier: Apache-2.0
//
// Functions that choose among values, test them or take vectors apart.
#include <orvlang/platform/fml/FML_Call.h>
#include <orvlang/platform/fml/FML_Library.h>
#include <orvlang/platform/kit/KIT_Char.h>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace {

void choose(FML_Call &call) {
    const double index = std::trunc(call.number(0));
    if (index < 0 || index >= static_cast<double>(call.count() - 1))
        return call.fail(FML_OUT_OF_RANGE);
    call.give(call.any(static_cast<std::size_t>(index) + 1));
}

void ifEmpty(FML_Call &call) {
    call.give(call.any(call.textOfAny(0).empty() ? 1 : 0));
}

void number(FML_Call &call) {
    const std::size_t last = call.count() - 1;
    if (!call.any(0).isNumber() && last == 0)
        return call.fail(FML_WRONG_TYPE);
    if (call.any(0).isNumber())
        call.give(call.any(0).number);
    else
        call.give(call.any(1));
}

void isInteger(FML_Call &call) {
    FML_Value &value = call.any(0);
    call.give(value.isNumber() && std::trunc(value.number) == value.number);
}

void isVector(FML_Call &call) {
    fml_Vector scanned;
    call.give(call.any(0).kind == FML_Value::VECTOR || scanned.scan(call.textOfAny(0)) != 0);
}

/// 1 when the text is not empty and holds only bytes that pass.
template <bool (*passes)(char)>
void holdsOnly(FML_Call &call) {
    const std::string_view text = call.text(0);
    call.give(!text.empty() && std::all_of(text.begin(), text.end(), passes));
}

bool isNameByte(char c) {
    return KITisAlnum(c) || c == '_';
}

void isName(FML_Call &call) {
    const std::string_view text = call.text(0);
    call.give(!text.empty() && !KITisDigit(text.front()) && std::all_of(text.begin(), text.end(), isNameByte));
}

void type(FML_Call &call) {
    FML_Value &value = call.any(0);
    call.giveShared(value.isNumber() ? "number" : value.kind == FML_Value::VECTOR ? "vector" : "text");
}

void item(FML_Call &call) {
    const int count = call.vector(0).entries();
    const long index = call.place(1, static_cast<std::size_t>(count));
    if (index < 0 || index >= count)
        return call.fail(FML_OUT_OF_RANGE);
    call.give(call.vector(0).getValue(static_cast<int>(index)));
}

void range(FML_Call &call) {
    constexpr double theMostEntries = 1e6;
    const double first = call.number(0);
    const double last = call.number(1);
    const double step = call.numberOr(2, last < first ? -1 : 1);
    if (step == 0 || !std::isfinite(step))
        return call.fail(FML_OUT_OF_RANGE);
    // A little more, so that the tenth tenth is not lost to rounding.
    const double steps = std::floor((last - first) / step + 1e-9);
    if (!(steps < theMostEntries))
        return call.fail(FML_TEXT_TOO_LONG);
    fml_Vector &vector = call.giveVector();
    for (double i = 0; i <= steps; i++)
        vector.append(first + i * step);
}

void join(FML_Call &call) {
    KIT_NumberText room;
    std::string joined;
    for (int i = 0; i < call.vector(0).entries(); i++) {
        if (i > 0 && !call.extend(joined, call.text(1)))
            return;
        joined += KITformatNumber(call.vector(0).getValue(i), room);
    }
    call.giveText(joined);
}

void dot(FML_Call &call) {
    const fml_Vector &a = call.vector(0);
    const fml_Vector &b = call.vector(1);
    if (a.entries() != b.entries())
        return call.fail(FML_WRONG_TYPE);
    call.give(std::inner_product(a.begin(), a.end(), b.begin(), 0.0));
}

void magnitude(FML_Call &call) {
    const fml_Vector &a = call.vector(0);
    call.give(std::sqrt(std::inner_product(a.begin(), a.end(), a.begin(), 0.0)));
}

constexpr FML_LibraryFunction theRows[] = {
    { "choose", "na*", choose, "choose(index, a, b, ...)",
      "The value at that index among the values, counted from 0." },
    { "dot", "vv", dot, "dot(v, w)", "The inner product of two vectors of one size." },
    { "if", "aaa", nullptr, "if(condition, a, b)",
      "a when the condition is true, else b; only that one is computed.\n"
      "A number is true when it is not 0, any other text when it is not empty." },
    { "ifempty", "aa", ifEmpty, "ifempty(a, b)", "a, or b when the text of a is empty." },
    { "isalpha", "t", holdsOnly<KITisAlpha>, "isalpha(text)", "1 when the text holds letters only, else 0." },
    { "isdigit", "t", holdsOnly<KITisDigit>, "isdigit(text)", "1 when the text holds digits only, else 0." },
    { "isempty", "t", [](FML_Call &call) { call.give(call.text(0).empty()); }, "isempty(text)",
      "1 when the text is empty, else 0." },
    { "isinteger", "a", isInteger, "isinteger(x)", "1 when x is a number without a fraction, else 0." },
    { "isname", "t", isName, "isname(text)", "1 when the text can be the name of a variable, else 0." },
    { "isnumber", "a", [](FML_Call &call) { call.give(call.any(0).isNumber()); }, "isnumber(x)",
      "1 when x is a number, else 0." },
    { "isspace", "t", holdsOnly<KITisSpace>, "isspace(text)",
      "1 when the text holds white space only, else 0." },
    { "isvector", "a", isVector, "isvector(x)",
      "1 when x can be read as a vector, as every number can, else 0." },
    { "item", "vn", item, "item(v, index)",
      "One entry of a vector, counted from 0, negative ones from the end." },
    { "join", "vt", join, "join(v, separator)",
      "The entries of a vector as a text, with the separator between them." },
    { "magnitude", "v", magnitude, "magnitude(v)", "The length of a vector in space." },
    { "number", "a|a", number, "number(x, [otherwise])",
      "x as a plain number, so that 007 becomes 7.\n"
      "For any other text the result is the second value, or an error without one." },
    { "range", "nn|n", range, "range(first, last, [step])", "The vector of the numbers from first to last." },
    { "size", "v", [](FML_Call &call) { call.give(static_cast<double>(call.vector(0).entries())); }, "size(v)",
      "How many entries a vector has." },
    { "type", "a", type, "type(x)", "The type of x: number, text or vector." },
};

}   // namespace

constinit const FML_LibraryRows theValueFunctions = theRows;
