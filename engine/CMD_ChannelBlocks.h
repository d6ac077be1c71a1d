// SPDX-License-Identifier: Apache-2.0
#pragma once

/// The channel blocks that are open in the process. Channel events are held back while there is one.
class CMD_ChannelBlocks {
public:
    static int getCount();
    static void open();
    /// Closes the newest blocks until `kept` are left. When none is left, the events that were held back are handled.
    static void closeTo(int kept);
};
