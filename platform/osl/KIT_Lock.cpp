// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/osl/KIT_Lock.h>

#include <sched.h>

void KIT_Lock::waitForLock(uintptr_t self) {
    uintptr_t seen = owner.load(std::memory_order_relaxed);
    for (int tries = spin ? 100 : 0; tries > 0 && seen != 0; --tries) {
        sched_yield();
        seen = owner.load(std::memory_order_relaxed);
    }
    for (;;) {
        if (seen == 0) {
            // With the mark, since others may sleep as this thread perhaps did: it will wake the next one.
            if (owner.compare_exchange_weak(seen, self | Waiters, std::memory_order_acquire,
                                            std::memory_order_relaxed))
                return;
            continue;
        }
        if (!(seen & Waiters)) {
            if (!owner.compare_exchange_weak(seen, seen | Waiters, std::memory_order_relaxed))
                continue;
            seen |= Waiters;
        }
        owner.wait(seen, std::memory_order_relaxed);
        seen = owner.load(std::memory_order_relaxed);
    }
}
