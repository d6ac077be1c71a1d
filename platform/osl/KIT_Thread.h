// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

#include <orvlang/platform/kit/KIT_Export.h>

/// What a thread can know about itself.
class CMD_API KIT_Thread {
public:
    /// 0 for the thread that asks first, 1 for the next one that does, and so on; the same as long as the thread
    /// lives, and not given again when it has ended.
    static int getMySequentialThreadIndex();

    /// Bytes left on the stack of this thread. On a stack that is not the thread's own (a coroutine's, a signal
    /// handler's) nothing is known: then it is the largest size_t, so that nobody is refused for it.
    static size_t stackLeft();
};
