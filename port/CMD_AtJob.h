// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/kit/KIT_String.h>

/// One pending job of CMD_CronTimer.
struct CMD_AtJob {
    int id;
    long long time;   // when it is due, in seconds as in OSL_TimeVal
    int period;       // in seconds; 0 for a job that runs once
    KIT_String command;
    bool isRunning = false;
};
