// SPDX-License-Identifier: Apache-2.0
#pragma once

/// The buffers of std::cout and std::cerr. They wait for a descriptor that does not block (O_NONBLOCK). After output
/// was lost, because a disk is full for instance, the stream stays usable for later output, and the program ends with a
/// message and status 1. What Python loses counts too.
class StandardOutput {
public:
    /// Must be called once, before anything is written and before any other atexit function is registered.
    static void install();
};
