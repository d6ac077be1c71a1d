// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/kit/KIT_Export.h>

/// A time of day, counted from the start of 1970, UTC.
struct OSL_TimeVal {
    long seconds;
    long microseconds;   // 0 to 999999
};

/// Stores the time of day. 0, or -1 when the clock cannot be read.
CMD_API int OSLgettimeofday(OSL_TimeVal *now);
