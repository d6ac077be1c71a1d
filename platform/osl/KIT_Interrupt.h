// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>

#include <pthread.h>

#include <orvlang/platform/kit/KIT_Export.h>

/// Lets the user stop what is running. An operation begins with opStart, ends with opEnd and calls opInterrupt now and
/// then; operations nest. An interrupt marks the running operation until the outermost one ends. While nothing runs it
/// is dropped.
class CMD_API KIT_Interrupt {
public:
    /// Begins an operation. Returns 0 when the one around it is interrupted already, otherwise non-zero. An opEnd must
    /// follow either way. Name, least and most progress are for hosts that show progress; the data is not used.
    int opStart(const char *, int, int, void *) {
        const int around = depth.load(std::memory_order_relaxed);
        if (around == 0) {
            worker.store(pthread_self(), std::memory_order_relaxed);
            marked.store(false, std::memory_order_relaxed);
        }
        depth.store(around + 1, std::memory_order_relaxed);
        return !marked.load(std::memory_order_relaxed);
    }
    /// Returns non-zero when the operation must stop. The progress so far, negative for none, is not used.
    int opInterrupt(int) const { return marked.load(std::memory_order_relaxed); }
    void opEnd(int) {
        const int around = depth.load(std::memory_order_relaxed) - 1;
        depth.store(around, std::memory_order_relaxed);
        if (around == 0)
            marked.store(false, std::memory_order_relaxed);
    }

    /// Marks the running operation. May be called from a signal handler and from any thread.
    void interrupt() {
        if (depth.load(std::memory_order_relaxed) > 0)
            marked.store(true, std::memory_order_relaxed);
        if (void (*const call)() = listener.load(std::memory_order_acquire))
            call();
    }
    bool isInterrupted() const { return marked.load(std::memory_order_relaxed); }

    /// Sets a function that is called at each interrupt, also while no operation runs. It is called by interrupt, so it
    /// may do only what a signal handler may. Null for none.
    void setListener(void (*function)()) { listener.store(function, std::memory_order_release); }
    /// Returns whether the calling thread runs the operation, or no thread does.
    bool isMine() const {
        return depth.load(std::memory_order_relaxed) == 0 ||
               worker.load(std::memory_order_relaxed) == pthread_self();
    }

private:
    std::atomic<int> depth{ 0 };   // changed only by the thread that runs the operation
    std::atomic<bool> marked{ false };
    std::atomic<pthread_t> worker{};   // of the latest operation
    std::atomic<void (*)()> listener{ nullptr };
    static_assert(std::atomic<int>::is_always_lock_free && std::atomic<bool>::is_always_lock_free);
};

/// Returns the one of the process.
CMD_API KIT_Interrupt *KITgetInterrupt();

/// Runs an operation of the process's KIT_Interrupt for as long as this object lives.
class KIT_Operation {
public:
    explicit KIT_Operation(const char *name)
        : isStarted(KITgetInterrupt()->opStart(name, 0, 0, nullptr) != 0) {}
    ~KIT_Operation() { KITgetInterrupt()->opEnd(-1); }
    KIT_Operation(const KIT_Operation &) = delete;
    KIT_Operation &operator=(const KIT_Operation &) = delete;

    /// Returns false when the operation around it is interrupted already.
    bool mayRun() const { return isStarted; }

private:
    const bool isStarted;
};
