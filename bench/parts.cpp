// SPDX-License-Identifier: Apache-2.0
// Parts of the platform beside what the standard library has in their place, in a process that has one thread.
#include <cstdlib>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <benchmark/benchmark.h>

#include <orvlang/platform/kit/KIT_SymbolTable.h>
#include <orvlang/platform/kit/KIT_WorkArgs.h>
#include <orvlang/platform/osl/KIT_Lock.h>
#include <orvlang/platform/osl/OSL_System.h>

namespace {

void lockTable(benchmark::State &state) {
    static KIT_Lock lock(false, true);
    for (auto _ : state) {
        const KIT_LockHolder holder(lock);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(lockTable);

void lockRecursiveMutex(benchmark::State &state) {
    static std::recursive_mutex mutex;
    for (auto _ : state) {
        const std::lock_guard holder(mutex);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(lockRecursiveMutex);

std::string nameOf(int i) {
    return "variable_" + std::to_string(i);
}

/// Names in an order of no use to a cache. Every second one is in the table that `add` fills.
template <typename Add>
std::vector<std::string> fillTable(const benchmark::State &state, Add add) {
    const int count = static_cast<int>(state.range(0));
    std::vector<std::string> names;
    for (int i = 0; i < count; ++i) {
        names.push_back(nameOf(i * 37 % count));
        if (i % 2 == 0)
            add(names.back());
    }
    return names;
}

// The argument is the number of names that are looked for; the time is for all of them.

void findSymbols(benchmark::State &state) {
    KIT_SymbolTable table;
    const std::vector<std::string> names =
        fillTable(state, [&](const std::string &name) { table.addSymbol(name, &table); });
    KIT_Thing thing;
    for (auto _ : state)
        for (const std::string &name : names)
            benchmark::DoNotOptimize(table.findSymbol(name, thing));
}
BENCHMARK(findSymbols)->Arg(100)->Arg(10000);

struct TextHash : std::hash<std::string_view> {
    using is_transparent = void;
};

void findInUnorderedMap(benchmark::State &state) {
    std::unordered_map<std::string, void *, TextHash, std::equal_to<>> table;
    const std::vector<std::string> names =
        fillTable(state, [&](const std::string &name) { table[name] = &table; });
    for (auto _ : state)
        for (const std::string_view name : names)
            benchmark::DoNotOptimize(table.find(name));
}
BENCHMARK(findInUnorderedMap)->Arg(100)->Arg(10000);

constexpr std::string_view theWords[] = { "trivial", "one", "/some/longer/path/of/a/file" };

void fillWorkArgs(benchmark::State &state) {
    KIT_WorkArgs words;
    for (auto _ : state) {
        words.clear();
        for (const std::string_view word : theWords)
            words.append(word);
        benchmark::DoNotOptimize(words.argv());
    }
}
BENCHMARK(fillWorkArgs);

/// With the table of pointers that a main program wants.
void fillStringVector(benchmark::State &state) {
    std::vector<std::string> words;
    std::vector<char *> table;
    for (auto _ : state) {
        words.clear();
        table.clear();
        for (const std::string_view word : theWords)
            words.emplace_back(word);
        for (std::string &word : words)
            table.push_back(word.data());
        table.push_back(nullptr);
        benchmark::DoNotOptimize(table.data());
    }
}
BENCHMARK(fillStringVector);

// The argument is the number of names in the environment; each pass sets one of them to another value.

void setEnvironment(benchmark::State &state) {
    const int count = static_cast<int>(state.range(0));
    for (int i = 0; i < count; ++i)
        OSLsystem().setEnvironment(nameOf(i), "first");
    const std::string name = nameOf(count - 1);
    int value = 0;
    for (auto _ : state)
        OSLsystem().setEnvironment(name, std::to_string(++value));
}
BENCHMARK(setEnvironment)->Arg(100)->Arg(10000);

void setEnvironmentOfTheLibrary(benchmark::State &state) {
    const int count = static_cast<int>(state.range(0));
    for (int i = 0; i < count; ++i)
        ::setenv(nameOf(i).c_str(), "first", 1);
    const std::string name = nameOf(count - 1);
    int value = 0;
    for (auto _ : state)
        ::setenv(name.c_str(), std::to_string(++value).c_str(), 1);
}
BENCHMARK(setEnvironmentOfTheLibrary)->Arg(100)->Arg(10000);

}   // namespace
