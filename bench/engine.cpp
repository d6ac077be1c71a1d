// SPDX-License-Identifier: Apache-2.0
// What a host and a script pay for the plain road: a statement, a look-up, a variable, the words of a line, and a
// long script in which no two lines are alike.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <string>

#include <unistd.h>

#include <orvlang/engine/CMD_Args.h>
#include <orvlang/engine/CMD_LineScan.h>
#include <orvlang/engine/CMD_Manager.h>
#include <orvlang/platform/kit/KIT_CshTemplate.h>
#include <orvlang/platform/kit/KIT_Performance.h>
#include <orvlang/platform/kit/KIT_WorkArgs.h>
#include <orvlang/symbols/CMD_VariableTable.h>

#include "BenchManager.h"

namespace {

void nothing(CMD_Args &args) {
    benchmark::DoNotOptimize(args.argc());
}

CMD_Manager &hostWithCommand() {
    CMD_Manager &host = benchManager();
    if (!host.isCommandDefined("trivial"))
        host.installCommand("trivial", "", nothing, true);
    return host;
}

void executeStatement(benchmark::State &state) {
    CMD_Manager &host = hostWithCommand();
    for (auto _ : state)
        host.execute("trivial one two", 0, nullptr, nullptr, 1, true);
}
BENCHMARK(executeStatement);

/// The same while the performance log counts; executeStatement itself runs with the log switched off.
void executeLoggedStatement(benchmark::State &state) {
    KIT_Performance &performance = *KITgetPerformance();
    performance.setWindow([](const char *, void *) {}, nullptr);
    performance.logType(KIT_Performance::logWindow);
    performance.logEnable(1);
    executeStatement(state);
    performance.logEnable(0);
    performance.logType(KIT_Performance::logOff);
}
BENCHMARK(executeLoggedStatement);

void lookUp(benchmark::State &state, const char *name) {
    CMD_Manager &host = hostWithCommand();
    for (auto _ : state)
        benchmark::DoNotOptimize(host.getOptions(name));
}
BENCHMARK_CAPTURE(lookUp, exact, "trivial");
BENCHMARK_CAPTURE(lookUp, prefix, "triv");

void setVariable(benchmark::State &state) {
    CMD_Manager &host = benchManager();
    for (auto _ : state)
        host.setVariable("benchVariable", "some value", 1, 0);
}
BENCHMARK(setVariable);

void readVariable(benchmark::State &state) {
    CMD_Manager &host = benchManager();
    host.setVariable("benchVariable", "some value", 1, 0);
    KIT_String value;
    for (auto _ : state)
        benchmark::DoNotOptimize(host.getVariable("benchVariable", value));
}
BENCHMARK(readVariable);

void scanLine(benchmark::State &state) {
    std::string buffer;
    for (auto _ : state)
        benchmark::DoNotOptimize(CMDscanLine("set name = \"dir/file\" # where it is", buffer));
}
BENCHMARK(scanLine);

void splitLine(benchmark::State &state, const char *line) {
    KIT_CshTemplate words;
    KIT_WorkArgs result;
    for (auto _ : state) {
        words.parse(line, true);
        benchmark::DoNotOptimize(words.expand(result, nullptr, nullptr, nullptr));
    }
}
BENCHMARK_CAPTURE(splitLine, plain, "echo aa bb cc");
BENCHMARK_CAPTURE(splitLine, quoted, "echo \"a b\" 'c d' e\\ f");

/// A script in the folder for temporary files, gone when the program ends.
class Script {
public:
    Script()
        : path(std::filesystem::temp_directory_path() /
               ("orvlang_bench_" + std::to_string(getpid()) + ".cmd")) {}
    ~Script() { std::filesystem::remove(path); }
    Script(const Script &) = delete;
    Script &operator=(const Script &) = delete;

    const std::filesystem::path path;
};

void sourceScript(benchmark::State &state) {
    const int lines = static_cast<int>(state.range(0));
    const Script script;
    std::ofstream file(script.path);
    for (int i = 0; i < lines; ++i)
        file << "set v" << i % 1000 << " = val" << i << '\n';
    file.close();
    const std::string command = "source " + script.path.string();
    CMD_Manager &host = benchManager();
    for (auto _ : state)
        host.execute(command.c_str(), 0, nullptr, nullptr, 1, true);
    state.SetItemsProcessed(state.iterations() * lines);
}
BENCHMARK(sourceScript)->Arg(20000)->Arg(200000)->Unit(benchmark::kMillisecond);

/// A script that sources itself until it is as deep as asked for.
void deepSources(benchmark::State &state) {
    const Script script;
    const std::string name = script.path.string();
    std::ofstream(script.path) << "if $arg1 > 1\nset below = `$arg1 - 1`\nsource " << name
                               << " $below\nendif\n";
    const std::string command = "source " + name + ' ' + std::to_string(state.range(0));
    CMD_Manager &host = benchManager();
    for (auto _ : state)
        host.execute(command.c_str(), 0, nullptr, nullptr, 1, true);
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(deepSources)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

void createManager(benchmark::State &state) {
    CMD_Manager &first = benchManager();   // the first one of the process does more
    for (auto _ : state) {
        CMD_Manager another("bench");
        benchmark::DoNotOptimize(&another);
    }
    first.setContext();
}
BENCHMARK(createManager)->Unit(benchmark::kMicrosecond);

}   // namespace
