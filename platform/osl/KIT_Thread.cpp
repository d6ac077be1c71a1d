// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/osl/KIT_Thread.h>

#include <atomic>
#include <cstdint>

#include <pthread.h>
#include <sys/auxv.h>
#include <sys/resource.h>
#include <unistd.h>

namespace {

struct Facts {
    int index = -1;
    uintptr_t stackLow = 0;   // lowest address that the stack may use; both 0 until asked for
    uintptr_t stackHigh = 0;
};

// A few bytes that are reached without a call, also in a library that was loaded late.
constinit thread_local Facts theFacts __attribute__((tls_model("initial-exec")));

std::atomic<int> theThreadCount{ 0 };

bool findInitialStack(uintptr_t here, Facts &facts) {
    // The C library would read the whole memory map for this. The name of the program is at the very top of the
    // stack. However large the limit, the kernel keeps no more than 128 MiB below free of other mappings.
    constexpr rlim_t Reserved = 128UL << 20;
    rlimit limit;
    if (gettid() != getpid() || getrlimit(RLIMIT_STACK, &limit) != 0)
        return false;
    const uintptr_t top = getauxval(AT_EXECFN);
    const uintptr_t size = limit.rlim_cur < Reserved ? limit.rlim_cur : Reserved;
    if (here >= top || here < top - size)
        return false;
    facts.stackLow = top - size;
    facts.stackHigh = top;
    return true;
}

__attribute__((noinline)) void findStack(uintptr_t here, Facts &facts) {
    if (findInitialStack(here, facts))
        return;
    pthread_attr_t attributes;
    if (pthread_getattr_np(pthread_self(), &attributes) != 0)
        return;
    void *low = nullptr;
    size_t size = 0;
    pthread_attr_getstack(&attributes, &low, &size);
    pthread_attr_destroy(&attributes);
    facts.stackLow = reinterpret_cast<uintptr_t>(low);
    facts.stackHigh = facts.stackLow + size;
}

}   // namespace

int KIT_Thread::getMySequentialThreadIndex() {
    if (theFacts.index < 0)
        theFacts.index = theThreadCount.fetch_add(1, std::memory_order_relaxed);
    return theFacts.index;
}

size_t KIT_Thread::stackLeft() {
    // Not the address of a local: address checkers put those elsewhere.
    const uintptr_t here = reinterpret_cast<uintptr_t>(__builtin_frame_address(0));
    Facts &facts = theFacts;
    if (facts.stackHigh == 0)
        findStack(here, facts);
    if (here < facts.stackLow || here >= facts.stackHigh)
        return SIZE_MAX;
    return here - facts.stackLow;
}
