// SPDX-License-Identifier: Apache-2.0
// What a pass of a loop costs, at two sizes: the time per pass must be the same at both.
#include <benchmark/benchmark.h>

#include <string>

#include "BenchManager.h"

namespace {

constexpr int theSizes[] = { 1000, 100000 };

/// Runs the text once per iteration; `%` in it stands for the number of passes.
void runPasses(benchmark::State &state, std::string text) {
    const std::string passes = std::to_string(state.range(0));
    for (size_t place; (place = text.find('%')) != std::string::npos;)
        text.replace(place, 1, passes);
    CMD_Manager &host = benchManager();
    for (auto _ : state)
        host.execute(text.c_str(), 0, nullptr, nullptr, 1, true);
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void addSizes(benchmark::internal::Benchmark *benchmark) {
    for (const int size : theSizes)
        benchmark->Arg(size);
    benchmark->Unit(benchmark::kMicrosecond);
}

BENCHMARK_CAPTURE(runPasses, forContinue, "for i = 1 to %\ncontinue\nend\n")->Apply(addSizes);
BENCHMARK_CAPTURE(runPasses, forSet, "for i = 1 to %\nset x = $i\nend\n")->Apply(addSizes);
BENCHMARK_CAPTURE(runPasses, forSum, "set n = 0\nfor i = 1 to %\nset n = `$n + $i`\nend\n")->Apply(addSizes);
BENCHMARK_CAPTURE(runPasses, whileCount, "set n = 0\nwhile $n < %\nset n = `$n + 1`\nend\n")->Apply(addSizes);
BENCHMARK_CAPTURE(runPasses, whileIf,
                  "set n = 0\nwhile $n < %\nif $n == -5\necho\nelse\nset n = `$n + 1`\nendif\nend\n")
    ->Apply(addSizes);
BENCHMARK_CAPTURE(runPasses, innerLoop, "for i = 1 to %\nfor k = 1 to 1\ncontinue\nend\nend\n")
    ->Apply(addSizes);

/// The list stands in the line that opens the loop.
void runWords(benchmark::State &state) {
    std::string text = "foreach w (";
    for (int i = 0; i < state.range(0); ++i)
        text += " w" + std::to_string(i);
    runPasses(state, text + " )\nset x = $w\nend\n");
}
BENCHMARK(runWords)->Apply(addSizes);

/// A long body, whose lines run once.
void runLongBody(benchmark::State &state) {
    std::string text = "for i = 1 to 1\n";
    for (int i = 0; i < state.range(0); ++i)
        text += "set x = $i\n";
    runPasses(state, text + "end\n");
}
BENCHMARK(runLongBody)->Apply(addSizes);

/// Loops inside each other.
void runDeepNest(benchmark::State &state) {
    std::string text;
    for (int i = 0; i < state.range(0); ++i)
        text += "for i = 1 to 1\n";
    for (int i = 0; i < state.range(0); ++i)
        text += "end\n";
    runPasses(state, text);
}
BENCHMARK(runDeepNest)->Apply(addSizes);

}   // namespace
