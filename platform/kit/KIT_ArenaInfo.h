// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <iosfwd>

#include <orvlang/platform/kit/KIT_Export.h>

/// What memory the process uses.
class CMD_API KIT_ArenaInfo {
public:
    /// Writes a line for each arena of the allocator, for what is mapped outside of them, for what is in use of all of
    /// it, and for what of the process lies in main memory. In bytes.
    static void outputUsage(std::ostream &os);
};
