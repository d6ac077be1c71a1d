// SPDX-License-Identifier: Apache-2.0
#pragma once

/// What std::cout and std::cerr write to. A descriptor that never blocks (O_NONBLOCK) is waited for. Output that standard
/// output does not accept is lost, but the stream stays usable, so that later output arrives when a full disk has room
/// again, and the program ends with a message and status 1.
class StandardOutput {
public:
    /// To be called once, before anything is written and before any other atexit function is registered.
    static void install();
};
