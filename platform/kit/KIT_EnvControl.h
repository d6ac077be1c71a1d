// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/kit/KIT_Export.h>

/// Switches of the library that the environment sets, known by number.
class CMD_API KIT_EnvControl {
public:
    enum {
        PlainInput = 122   // ORVANE_PLAIN_INPUT: lines of standard input are read by blocking calls; default 0
    };

    /// Returns the value of the variable as atoi reads it, its default when it is not set; 0 for an unknown number.
    static int getInt(int number);
    /// To be called when a variable of the environment was set or removed: values are kept until then.
    static void varChanged(const char *name);
};
