// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

#include <orvlang/platform/kit/KIT_Export.h>

/// Facts about the calling thread.
class CMD_API KIT_Thread {
public:
    /// Returns 0 for the thread that calls this first, 1 for the next one, and so on. A thread keeps its index, and an
    /// index is never used again.
    static int getMySequentialThreadIndex();

    /// Returns the bytes left on the stack of this thread. On a stack that is not the thread's own (of a coroutine or a
    /// signal handler) they are unknown: then it returns the largest size_t, so that nothing is refused for it.
    static size_t stackLeft();
};
