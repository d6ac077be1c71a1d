// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cerrno>
#include <deque>
#include <functional>

#include "TestSystem.h"

/// The real system with planned results in front: each read or write takes the next planned one, if any.
/// A result below 0 is an errno, another one the largest number of bytes that the call may move. It counts
/// the calls that matter for speed.
class FakeSystem : public TestSystem {
public:
    std::deque<int> planned;
    int closeError = 0;
    int calls = 0;
    int waits = 0;
    std::function<void()> onInterrupt;   // runs before a planned EINTR

    int open(const char *path, int flags, int mode) override {
        ++calls;
        return OSL_System::open(path, flags, mode);
    }
    bool getStatus(const char *path, OSL_FileStatus &status) override {
        ++calls;
        return OSL_System::getStatus(path, status);
    }
    bool getStatus(int descriptor, OSL_FileStatus &status) override {
        ++calls;
        return OSL_System::getStatus(descriptor, status);
    }
    ssize_t read(int descriptor, void *buffer, size_t count) override {
        return move(count, [&](size_t n) { return OSL_System::read(descriptor, buffer, n); });
    }
    ssize_t write(int descriptor, const void *data, size_t count) override {
        return move(count, [&](size_t n) { return OSL_System::write(descriptor, data, n); });
    }
    int close(int descriptor) override {
        ++calls;
        const int result = OSL_System::close(descriptor);
        errno = closeError;
        return closeError ? -1 : result;
    }

    int waitReadable(int descriptor, int milliseconds) override {
        ++waits;
        return OSL_System::waitReadable(descriptor, milliseconds);
    }

private:
    template <typename Operation>
    ssize_t move(size_t count, Operation operation) {
        ++calls;
        if (planned.empty())
            return operation(count);
        const int plan = planned.front();
        planned.pop_front();
        if (plan >= 0)
            return operation(std::min(count, static_cast<size_t>(plan)));
        if (plan == -EINTR && onInterrupt)
            onInterrupt();
        errno = -plan;
        return -1;
    }
};
