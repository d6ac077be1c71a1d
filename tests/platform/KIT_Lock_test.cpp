// SPDX-License-Identifier: Apache-2.0
#include <atomic>
#include <cstdint>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <pthread.h>

#include <orvlang/platform/osl/KIT_Lock.h>
#include <orvlang/platform/osl/KIT_Thread.h>

// First, so that the lock is taken while the process has one thread.
TEST(Lock, TakenBeforeThereWereThreadsIsHeldForThem) {
    KIT_Lock lock(false, true);
    int guarded = 0;
    lock.lockLW();
    lock.lockLW();
    std::atomic<bool> started = false;
    std::thread other([&] {
        EXPECT_FALSE(lock.isMine());
        started = true;
        started.notify_one();
        const KIT_LockHolder holder(lock);
        EXPECT_EQ(guarded, 2);
        guarded = 3;
    });
    started.wait(false);
    guarded = 1;
    lock.unlock();
    EXPECT_TRUE(lock.isMine());
    guarded = 2;
    lock.unlock();
    other.join();
    EXPECT_FALSE(lock.isMine());
    lock.lockLW();
    EXPECT_EQ(guarded, 3);
    lock.unlock();
}

TEST(Lock, KeepsThreadsApart) {
    for (const bool spin : { false, true }) {
        KIT_Lock lock(spin, true);
        long sum = 0;
        std::vector<std::thread> threads;
        for (int i = 0; i < 4; ++i)
            threads.emplace_back([&] {
                for (int pass = 0; pass < 20000; ++pass) {
                    const KIT_LockHolder outer(lock);
                    ++sum;
                    if (pass % 100 == 0)
                        std::this_thread::yield();
                    const KIT_LockHolder inner(lock);
                    ++sum;
                }
            });
        for (std::thread &thread : threads)
            thread.join();
        EXPECT_EQ(sum, 4 * 20000 * 2);
    }
}

TEST(Thread, HasAnIndexOfItsOwn) {
    const int mine = KIT_Thread::getMySequentialThreadIndex();
    EXPECT_EQ(KIT_Thread::getMySequentialThreadIndex(), mine);
    std::set<int> seen = { mine };
    for (int i = 0; i < 3; ++i)
        std::thread([&] { seen.insert(KIT_Thread::getMySequentialThreadIndex()); }).join();
    EXPECT_EQ(seen.size(), 4u);
    EXPECT_EQ(*seen.rbegin(), mine + 3);
}

namespace {

/// The stack left that many calls of a kilobyte each deeper.
__attribute__((noinline)) size_t leftBelow(int calls) {
    volatile char frame[1024];
    frame[0] = 1;
    const size_t left = calls > 0 ? leftBelow(calls - 1) : KIT_Thread::stackLeft();
    return left + static_cast<size_t>(frame[0] - 1);
}

void *measure(void *result) {
    *static_cast<size_t *>(result) = KIT_Thread::stackLeft();
    return nullptr;
}

}   // namespace

TEST(Thread, KnowsTheStackThatIsLeft) {
    const size_t left = KIT_Thread::stackLeft();
    EXPECT_GT(left, size_t(100) << 10);
    EXPECT_LE(left, size_t(128) << 20);
    EXPECT_LT(leftBelow(50), left - 50 * 1024);

    // A stack of the test's own: the library could hand out an older, larger one.
    alignas(4096) static char stack[size_t(4) << 20];
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstack(&attributes, stack, sizeof stack);
    size_t leftThere = 0;
    pthread_t thread;
    ASSERT_EQ(pthread_create(&thread, &attributes, measure, &leftThere), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
    EXPECT_GT(leftThere, sizeof stack / 4 * 3);   // a sanitizer keeps some for itself
    EXPECT_LE(leftThere, sizeof stack);
}
