// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/osl/KIT_StopWatch.h>

#include <orvlang/platform/osl/OSL_System.h>

void KIT_StopWatch::start() {
    begin = OSLsystem().getMonotonicTime();
}

double KIT_StopWatch::lap() const {
    return static_cast<double>(OSLsystem().getMonotonicTime() - begin) * 1e-9;
}
