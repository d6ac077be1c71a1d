// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/snk/SNK_Python.h>

#include <string>

#include <orvlang/platform/kit/KIT_Nesting.h>
#include <orvlang/platform/osl/OSL_Terminal.h>
#include <orvlang/platform/snk/SNK_Component.h>
#include <orvlang/platform/snk/SNK_ComponentTable.h>

namespace {

/// Puts the texts where their kind has them.
void setTexts(SNK_Result &result, KIT_StringArray &&texts) {
    if (result.kind == SNK_Result::String) {
        result.stringValue = texts[0];
    } else if (result.kind == SNK_Result::StringArray) {
        result.stringArray = std::move(texts);
    } else if (result.kind == SNK_Result::Exception) {
        result.errorText = texts[0];
        result.detailText = texts[1];
    }
}

constinit thread_local int theDepth = 0;   // calls under way on this thread

struct DepthScope {
    DepthScope() { theDepth++; }
    ~DepthScope() { theDepth--; }
};

SNK_Result refusal(const std::string &reason) {
    SNK_Result result;
    result.kind = SNK_Result::Exception;
    result.errorText = reason;
    result.detailText = reason + "\n";
    return result;
}

/// Calls `run` with the table of the component, a number to set and the receiver of the texts.
template <typename Run>
SNK_Result runPython(Run run) {
    std::string reason;
    const SNK_ComponentTable *const python = SNK_Component::get(&reason);
    // The first call of a thread does not nest: that it does not fit on a small stack ends nothing else.
    if (theDepth > 0 && (!python || python->isDeep())) {
        KIT_Nesting::countRefusal();
        return refusal("RecursionError: Python and the command language nest too deep");
    }
    if (!python)
        return refusal(reason);
    const DepthScope depth;
    OSLyieldTerminal();   // Python code writes to the terminal past our streams
    SNK_Result result;
    KIT_StringArray texts;
    const SNK_TextTaker taker = { &texts, [](void *target, const char *text, size_t length) {
                                     static_cast<KIT_StringArray *>(target)->append(
                                         std::string_view(text, length));
                                 } };
    result.kind = static_cast<SNK_Result::Type>(run(*python, result.doubleValue, taker));
    setTexts(result, std::move(texts));
    return result;
}

const char *orEmpty(const char *text) {
    return text ? text : "";
}

}   // namespace

SNK_Result SNKrunPythonExpression(const char *code, SNK_Result::Type wanted, SNK_EvaluationContext *) {
    return runPython([&](const SNK_ComponentTable &python, double &number, const SNK_TextTaker &texts) {
        return python.runExpression(orEmpty(code), wanted, number, texts);
    });
}

SNK_Result SNKrunPythonStatements(const char *code, SNK_EvaluationContext *) {
    return runPython([&](const SNK_ComponentTable &python, double &, const SNK_TextTaker &texts) {
        return python.runStatements(orEmpty(code), texts);
    });
}

SNK_Result SNKrunPythonStatementsFromFile(int argc, char **argv, SNK_EvaluationContext *) {
    return runPython([&](const SNK_ComponentTable &python, double &, const SNK_TextTaker &texts) {
        return python.runFile(argc, argv, texts);
    });
}

int SNKgetPythonOutputError() {
    return SNK_Component::getOutputError();
}
