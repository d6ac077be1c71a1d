// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <iosfwd>

#include <orvlang/platform/kit/KIT_Export.h>

/// Reports the memory that the process uses.
class CMD_API KIT_ArenaInfo {
public:
    /// Writes a line for each arena of the allocator, one for what is mapped outside of them, one for what is in use of all
    /// of it, and one for the part of the process in main memory. In bytes.
    static void outputUsage(std::ostream &os);
};
