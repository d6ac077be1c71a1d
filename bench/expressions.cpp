// SPDX-License-Identifier: Apache-2.0
//
// What one expression costs, in the context of a manager as it is after its start.
#include <orvlang/engine/CMD_Manager.h>
#include <orvlang/platform/fml/FML.h>
#include <orvlang/platform/kit/KIT_String.h>

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <string>

#include "BenchManager.h"

namespace {

/// Evaluates a text that the cache has after the first rounds.
void evaluate(benchmark::State &state, const char *text) {
    benchManager().setVariable("i", "20", 0, 0);
    benchManager().setVariable("text", "some words of a text", 0, 0);
    KIT_String value;
    for (auto _ : state)
        if (!TRK_Manager::lookupExpressionNoThread(text, value))
            state.SkipWithError("failed");
}

/// Evaluates texts of which none comes twice.
void evaluateNewTexts(benchmark::State &state) {
    benchManager().setVariable("i", "20", 0, 0);
    KIT_String value;
    std::string text;
    unsigned number = 0;
    for (auto _ : state) {
        text.assign("$i * 2 + ").append(std::to_string(number++));
        if (!TRK_Manager::lookupExpressionNoThread(text.c_str(), value))
            state.SkipWithError("failed");
    }
}

void command(CMD_Args &) {}

void expandPrompt(benchmark::State &state) {
    KIT_String out;
    for (auto _ : state)
        benchManager().expandString("frame `FRAME` of $i -> ", out, 0, nullptr, 0, 3);
}

void executeCommand(benchmark::State &state) {
    benchManager().installCommand("benchcommand", "", command, true);
    evaluate(state, "execute(\"benchcommand\")");
}

BENCHMARK_CAPTURE(evaluate, constant, "1");
BENCHMARK_CAPTURE(evaluate, variable, "$i");
BENCHMARK_CAPTURE(evaluate, arithmetic, "$i * 2 + 1");
BENCHMARK_CAPTURE(evaluate, bare_name, "i * 2 + 1");
BENCHMARK(evaluateNewTexts);
BENCHMARK_CAPTURE(evaluate, comparison, "$i > 10 && $i < 30");
BENCHMARK_CAPTURE(evaluate, number_function, "sqrt($i)");
BENCHMARK_CAPTURE(evaluate, text_function, "substr($text, 5, 5)");
BENCHMARK_CAPTURE(evaluate, text_functions, "upper(word($text, 1)) + \":\" + length($text)");
BENCHMARK_CAPTURE(evaluate, string, "\"<$i of $text>\"");
BENCHMARK_CAPTURE(evaluate, test_of_variable, "isovariable(\"i\")");
BENCHMARK(expandPrompt);
BENCHMARK(executeCommand);

}   // namespace
