// SPDX-License-Identifier: Apache-2.0
// The lock of the tables beside the one of the standard library, in a process that has one thread.
#include <mutex>

#include <benchmark/benchmark.h>

#include <orvlang/platform/osl/KIT_LockHolder.h>

namespace {

void lockTable(benchmark::State &state) {
    static KIT_Lock lock(false, true);
    for (auto _ : state) {
        const KIT_LockHolder holder(lock);
        benchmark::ClobberMemory();
    }
}

void lockRecursiveMutex(benchmark::State &state) {
    static std::recursive_mutex mutex;
    for (auto _ : state) {
        const std::lock_guard holder(mutex);
        benchmark::ClobberMemory();
    }
}

BENCHMARK(lockTable);
BENCHMARK(lockRecursiveMutex);

}   // namespace
