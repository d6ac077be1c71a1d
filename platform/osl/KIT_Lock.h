// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <cassert>
#include <cstdint>

#include <pthread.h>
#include <sys/single_threaded.h>

#include <orvlang/platform/kit/KIT_Export.h>

/// A lock owned by a thread. While the process has one thread, locking and unlocking are plain stores. They go to the
/// same word that threads contend for, so a thread that is started while the lock is held finds it held.
/// It has two words and needs no set-up. In a process with one thread it takes a sixth of the time
/// of std::recursive_mutex (1.3 against 8.3 ns, bench/parts.cpp), and each look-up of a variable takes it.
class CMD_API KIT_Lock {
public:
    /// SpinFirst: a thread tries for a moment before it sleeps, for locks that are held very briefly. ReentrantToo: the
    /// owner may lock it again, and it is free after as many unlocks; otherwise that is an error of the program.
    constexpr KIT_Lock(bool spinFirst, bool reentrantToo) : spin(spinFirst), reentrant(reentrantToo) {}
    KIT_Lock(const KIT_Lock &) = delete;
    KIT_Lock &operator=(const KIT_Lock &) = delete;

    void lockLW() {
        const uintptr_t self = currentThread();
        if (isOwnedBy(self)) {
            assert(reentrant);
            ++depth;
            return;
        }
        uintptr_t expected = 0;
        if (__libc_single_threaded)
            owner.store(self, std::memory_order_relaxed);
        else if (!owner.compare_exchange_strong(expected, self, std::memory_order_acquire,
                                                std::memory_order_relaxed))
            waitForLock(self);
        depth = 1;
    }

    /// Only for the thread that holds the lock.
    void unlock() {
        assert(isOwnedBy(currentThread()));
        if (--depth > 0)
            return;
        if (__libc_single_threaded)
            owner.store(0, std::memory_order_relaxed);
        else if (owner.exchange(0, std::memory_order_release) & Waiters)
            owner.notify_one();
    }

    /// Returns whether the calling thread holds the lock.
    bool isMine() const { return isOwnedBy(currentThread()); }

private:
    static constexpr uintptr_t Waiters = 1;   // the address in a pthread_t leaves this bit free

    static uintptr_t currentThread() { return static_cast<uintptr_t>(pthread_self()); }
    bool isOwnedBy(uintptr_t thread) const {
        return (owner.load(std::memory_order_relaxed) & ~Waiters) == thread;
    }
    void waitForLock(uintptr_t self);

    std::atomic<uintptr_t> owner{ 0 };   // the thread, and Waiters when one may be asleep; 0 when free
    uint32_t depth = 0;                  // how often the owner took it; guarded by the lock
    const bool spin;
    const bool reentrant;
};

/// Holds a lock for the length of a block.
class CMD_API KIT_LockHolder {
public:
    explicit KIT_LockHolder(KIT_Lock &held) : lock(held) { lock.lockLW(); }
    ~KIT_LockHolder() { lock.unlock(); }
    KIT_LockHolder(const KIT_LockHolder &) = delete;
    KIT_LockHolder &operator=(const KIT_LockHolder &) = delete;

private:
    KIT_Lock &lock;
};
