// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/kit/KIT_Export.h>

/// Measures elapsed time by a clock that does not follow changes of the date.
class CMD_API KIT_StopWatch {
public:
    void start();
    /// Returns the seconds since start, with fractions. The watch keeps running.
    double lap() const;

private:
    long long begin = 0;   // nanoseconds
};
