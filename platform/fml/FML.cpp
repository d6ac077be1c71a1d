// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/fml/FML.h>

#include <orvlang/platform/fml/FML_ErrorScope.h>
#include <orvlang/platform/fml/FML_Evaluator.h>
#include <orvlang/platform/fml/FML_Registry.h>

#include <array>

constinit thread_local int FML::theErrNo = 0;

namespace {

constexpr std::array<const char *, FML_ERROR_COUNT> theErrorTexts = {
    "",
    "Syntax error",
    "Unknown function",
    "Wrong number of arguments",
    "Unknown variable",
    "Wrong type of value",
    "Division by zero",
    "Nesting too deep",
    "Not allowed in safe mode",
    "Number out of range",
    "Text too long",
};
static_assert(theErrorTexts.back() != nullptr);

bool theSafeMode = false;

}   // namespace

const char *fml_GetErrorText(int number) {
    return number >= 0 && number < FML_ERROR_COUNT ? theErrorTexts[static_cast<std::size_t>(number)]
                                                   : "Unknown error";
}

void fml_Fail(int number) {
    if (FML::theErrNo == FML_NO_ERROR)
        FML::theErrNo = number;
}

void fml_setSafeMode(bool on) {
    theSafeMode = on;
}

bool fml_getSafeMode() {
    return theSafeMode;
}

void fml_SetOptimization(int level) {
    FML_Registry::get().setOptimization(level);
}

bool fml_Evaluate(const char *text, KIT_String &value, int thread) {
    const FML_ErrorScope earlierError(
        FML_ErrorScope::IfSet);   // a command that the expression runs clears the number
    const int error = text ? FML_Evaluator::get().evaluate(text, value, thread) : FML_SYNTAX_ERROR;
    FML::theErrNo = error;
    return error == FML_NO_ERROR;
}
