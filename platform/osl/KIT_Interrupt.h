// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>

#include <pthread.h>

#include <orvlang/platform/kit/KIT_Export.h>

/// Lets a person stop what is running. Work is bracketed by opStart and opEnd, brackets may nest, and asks
/// opInterrupt now and then. An interrupt marks the running work until its outermost bracket ends; with nothing
/// running it is dropped.
class CMD_API KIT_Interrupt {
public:
    /// Begins an operation, by name for those who show progress. Non-zero to go on; 0 when the work around it is
    /// interrupted already. An opEnd must follow either way. Least and most value of the progress; data is not used.
    int opStart(const char *, int, int, void *) {
        const int around = depth.load(std::memory_order_relaxed);
        if (around == 0) {
            worker.store(pthread_self(), std::memory_order_relaxed);
            marked.store(false, std::memory_order_relaxed);
        }
        depth.store(around + 1, std::memory_order_relaxed);
        return !marked.load(std::memory_order_relaxed);
    }
    /// Non-zero when the operation shall stop. The progress so far, negative for none, is not shown by anybody.
    int opInterrupt(int) const { return marked.load(std::memory_order_relaxed); }
    void opEnd(int) {
        const int around = depth.load(std::memory_order_relaxed) - 1;
        depth.store(around, std::memory_order_relaxed);
        if (around == 0)
            marked.store(false, std::memory_order_relaxed);
    }

    /// Marks the running work. May be called from a signal handler and from any thread.
    void interrupt() {
        if (depth.load(std::memory_order_relaxed) > 0)
            marked.store(true, std::memory_order_relaxed);
        if (void (*const call)() = listener.load(std::memory_order_acquire))
            call();
    }
    bool isInterrupted() const { return marked.load(std::memory_order_relaxed); }

    /// Has a function told of each interrupt, also while nothing runs that is marked: for what cannot ask. It is
    /// called where interrupt is, so it may do only what a signal handler may. Null for none.
    void setListener(void (*function)()) { listener.store(function, std::memory_order_release); }
    /// Whether the calling thread runs the work, or nobody does.
    bool isMine() const {
        return depth.load(std::memory_order_relaxed) == 0 ||
               worker.load(std::memory_order_relaxed) == pthread_self();
    }

private:
    std::atomic<int> depth{ 0 };   // changed only by the thread that runs the work
    std::atomic<bool> marked{ false };
    std::atomic<pthread_t> worker{};   // of the latest work
    std::atomic<void (*)()> listener{ nullptr };
    static_assert(std::atomic<int>::is_always_lock_free && std::atomic<bool>::is_always_lock_free);
};

/// The one of the process.
CMD_API KIT_Interrupt *KITgetInterrupt();

/// An operation of the process's KIT_Interrupt from the construction to the destruction.
class KIT_Operation {
public:
    explicit KIT_Operation(const char *name)
        : isStarted(KITgetInterrupt()->opStart(name, 0, 0, nullptr) != 0) {}
    ~KIT_Operation() { KITgetInterrupt()->opEnd(-1); }
    KIT_Operation(const KIT_Operation &) = delete;
    KIT_Operation &operator=(const KIT_Operation &) = delete;

    /// False when the operation around it is interrupted already.
    bool mayRun() const { return isStarted; }

private:
    const bool isStarted;
};
