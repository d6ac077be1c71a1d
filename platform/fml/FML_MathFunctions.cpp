// SPDX-License-Identifier: Apache-2.0
//
// Functions of numbers. A result without a value, as the logarithm of 0, is an error of the evaluation; that is
// looked after where the functions are called.
#include <orvlang/platform/fml/FML_Call.h>
#include <orvlang/platform/fml/FML_Library.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <numeric>

namespace {

using Function = double (*)(double);

template <Function function>
void apply(FML_Call &call) {
    call.give(function(call.number(0)));
}

double sign(double x) {
    return x > 0 ? 1 : x < 0 ? -1 : 0;
}

double toDegrees(double x) {
    return x * 180 / std::numbers::pi;
}

double toRadians(double x) {
    return x * std::numbers::pi / 180;
}

void round(FML_Call &call) {
    const double scale = std::pow(10.0, static_cast<double>(std::clamp(call.integerOr(1, 0), -300L, 300L)));
    const double scaled = call.number(0) * scale;
    // So large that no fraction is left to round.
    call.give(std::fabs(scaled) < 1e15 ? std::round(scaled) / scale : call.number(0));
}

void mod(FML_Call &call) {
    const double divisor = call.number(1);
    if (divisor == 0)
        return call.fail(FML_DIVISION_BY_ZERO);
    const double rest = std::fmod(call.number(0), divisor);
    call.give(rest != 0 && (rest < 0) != (divisor < 0) ? rest + divisor : rest);
}

void power(FML_Call &call) {
    if (call.number(0) == 0 && call.number(1) < 0)
        return call.fail(FML_DIVISION_BY_ZERO);
    call.give(std::pow(call.number(0), call.number(1)));
}

/// All numbers among the arguments, those in vectors included. With none at all the call has failed.
fml_Vector collectNumbers(FML_Call &call) {
    fml_Vector all;
    for (std::size_t i = 0; i < call.count(); i++) {
        FML_Value &value = call.any(i);
        fml_Vector scanned;
        if (value.isNumber())
            all.append(value.number);
        else if (value.kind != FML_Value::VECTOR && !scanned.scan(value.text))
            call.fail(FML_WRONG_TYPE);
        else
            for (const double x : value.kind == FML_Value::VECTOR ? *value.vector : scanned)
                all.append(x);
    }
    if (all.entries() == 0)
        call.fail(FML_OUT_OF_RANGE);
    return all;
}

void minimum(FML_Call &call) {
    const fml_Vector all = collectNumbers(call);
    if (all.entries() > 0)
        call.give(*std::min_element(all.begin(), all.end()));
}

void maximum(FML_Call &call) {
    const fml_Vector all = collectNumbers(call);
    if (all.entries() > 0)
        call.give(*std::max_element(all.begin(), all.end()));
}

void sum(FML_Call &call) {
    const fml_Vector all = collectNumbers(call);
    call.give(std::accumulate(all.begin(), all.end(), 0.0));
}

void average(FML_Call &call) {
    const fml_Vector all = collectNumbers(call);
    if (all.entries() > 0)
        call.give(std::accumulate(all.begin(), all.end(), 0.0) / all.entries());
}

void clampNumber(FML_Call &call) {
    call.give(std::max(call.number(1), std::min(call.number(0), call.number(2))));
}

void mix(FML_Call &call) {
    call.give(std::lerp(call.number(0), call.number(1), call.number(2)));
}

/// A number from 0 up to but not including 1 that looks like chance, always the same for the same seed.
double randomOf(double seed) {
    // The finishing steps of splitmix64, whose output passes the usual tests of randomness for counting seeds. The
    // sum turns -0 into 0.
    auto bits = std::bit_cast<std::uint64_t>(seed + 0.0) + 0x9e3779b97f4a7c15u;
    bits = (bits ^ (bits >> 30)) * 0xbf58476d1ce4e5b9u;
    bits = (bits ^ (bits >> 27)) * 0x94d049bb133111ebu;
    bits ^= bits >> 31;
    return static_cast<double>(bits >> 11) * 0x1p-53;
}

void randomInt(FML_Call &call) {
    const double low = std::ceil(call.number(1));
    const double high = std::floor(call.number(2));
    if (low > high)
        return call.fail(FML_OUT_OF_RANGE);
    call.give(std::min(high, low + std::floor(randomOf(call.number(0)) * (high - low + 1))));
}

constexpr FML_LibraryFunction theRows[] = {
    { "abs", "n", apply<std::fabs>, "abs(x)", "The distance of x from 0." },
    { "acos", "n", apply<std::acos>, "acos(x)", "The angle, in radians, whose cosine is x." },
    { "asin", "n", apply<std::asin>, "asin(x)", "The angle, in radians, whose sine is x." },
    { "atan", "n", apply<std::atan>, "atan(x)", "The angle, in radians, whose tangent is x." },
    { "atan2", "nn", [](FML_Call &call) { call.give(std::atan2(call.number(0), call.number(1))); },
      "atan2(y, x)", "The angle, in radians, from the x axis to the point x, y." },
    { "average", "a*", average, "average(x, ...)", "The mean of numbers and of the entries of vectors." },
    { "ceil", "n", apply<std::ceil>, "ceil(x)", "The least whole number not below x." },
    { "clamp", "nnn", clampNumber, "clamp(x, low, high)",
      "x, or the nearer end when x is not from low to high." },
    { "cos", "n", apply<std::cos>, "cos(x)", "The cosine of an angle in radians." },
    { "degrees", "n", apply<toDegrees>, "degrees(x)", "An angle in radians, turned into degrees." },
    { "exp", "n", apply<std::exp>, "exp(x)", "E to the power of x." },
    { "floor", "n", apply<std::floor>, "floor(x)", "The largest whole number not above x." },
    { "hypot", "nn", [](FML_Call &call) { call.give(std::hypot(call.number(0), call.number(1))); },
      "hypot(x, y)", "The distance of the point x, y from 0, 0." },
    { "log", "n", apply<std::log>, "log(x)", "The natural logarithm of x, which is above 0." },
    { "log10", "n", apply<std::log10>, "log10(x)", "The logarithm of x to the base 10." },
    { "log2", "n", apply<std::log2>, "log2(x)", "The logarithm of x to the base 2." },
    { "max", "a*", maximum, "max(x, ...)", "The largest of numbers and of the entries of vectors." },
    { "min", "a*", minimum, "min(x, ...)", "The least of numbers and of the entries of vectors." },
    { "mix", "nnn", mix, "mix(a, b, part)",
      "The number at that part of the way from a to b: a for 0, b for 1." },
    { "mod", "nn", mod, "mod(x, y)",
      "The rest of x after steps of y.\n"
      "It has the sign of y; the result of the operator % has the sign of x." },
    { "pow", "nn", power, "pow(x, y)", "x to the power of y, as x ^ y." },
    { "radians", "n", apply<toRadians>, "radians(x)", "An angle in degrees, turned into radians." },
    { "random", "n", [](FML_Call &call) { call.give(randomOf(call.number(0))); }, "random(seed)",
      "A pseudo-random number from 0 to below 1.\n"
      "The same seed returns the same number: increment it for the next one." },
    { "randomint", "nnn", randomInt, "randomint(seed, low, high)",
      "A pseudo-random whole number from low to high, both included, the same for the same seed." },
    { "round", "n|n", round, "round(x, [digits])",
      "The nearest number with that many digits after the point.\n"
      "Without digits it is a whole number; halves are rounded away from 0." },
    { "sign", "n", apply<sign>, "sign(x)", "-1, 0 or 1, as x is below, at or above 0." },
    { "sin", "n", apply<std::sin>, "sin(x)", "The sine of an angle in radians." },
    { "sqrt", "n", apply<std::sqrt>, "sqrt(x)", "The square root of x, which is not below 0." },
    { "sum", "a*", sum, "sum(x, ...)", "The sum of numbers and of the entries of vectors." },
    { "tan", "n", apply<std::tan>, "tan(x)", "The tangent of an angle in radians." },
    { "trunc", "n", apply<std::trunc>, "trunc(x)", "x without its fraction." },
};

}   // namespace

constinit const FML_LibraryRows theMathFunctions = theRows;
