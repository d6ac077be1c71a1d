// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <span>

class FML_Call;

/// The arguments that a function of the library takes, written as a text with a letter for each: `n` a number,
/// `t` a text, `v` a vector, `a` any value. What comes after a `|` may be left out; with a `*` at the end the
/// last one may be repeated.
class FML_Signature {
public:
    consteval FML_Signature(const char *text) {
        bool isOptional = false;
        for (; *text; text++) {
            if (*text == '|')
                isOptional = true;
            else if (*text == '*')
                openEnded = true;
            else
                kinds[taken++] = *text;   // too many are a compilation error
            if (!isOptional)
                required = taken;
        }
    }

    constexpr bool takes(unsigned count) const { return count >= required && (openEnded || count <= taken); }
    constexpr char kind(std::size_t index) const { return kinds[index < taken ? index : taken - 1]; }

private:
    char kinds[6] = {};
    unsigned char taken = 0;
    unsigned char required = 0;
    bool openEnded = false;
};

/// A function that expressions always know. Its result depends on its arguments alone.
struct FML_LibraryFunction {
    const char *name;
    FML_Signature signature;
    /// Null for the choice `if`, which the compiler turns into jumps.
    void (*evaluate)(FML_Call &call);
    const char *usage;
    const char *help;
};

using FML_LibraryRows = std::span<const FML_LibraryFunction>;

// The library, by families.
extern const FML_LibraryRows theMathFunctions;
extern const FML_LibraryRows theTextFunctions;
extern const FML_LibraryRows theWordFunctions;
extern const FML_LibraryRows theValueFunctions;
