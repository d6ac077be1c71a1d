// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/kit/KIT_Export.h>

/// The orderly end of the process.
class CMD_API KIT_Exit {
public:
    using Callback = void (*)(void *data);

    /// Runs the exit callbacks, the last registered first, flushes the standard streams and ends the process.
    [[noreturn]] static void exit(int code = 0);
    /// The same, with any code: `exit` is for success or failure.
    [[noreturn]] static void exitWithSpecificCode(int code);

    /// A callback with the same data counts once. It runs once, and may itself register others or end the process.
    static void addExitCallback(Callback callback, void *data);

    /// Runs and forgets the callbacks without ending anything, for a host that ends in its own way.
    static void runExitCallbacks();
};
