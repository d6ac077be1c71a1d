// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/osl/OSL_Time.h>

class VIO_EventGenerator;

/// One event generator under watch, and when it had its latest turn.
class cmd_PollingEvtGeneratorWrapper {
public:
    explicit cmd_PollingEvtGeneratorWrapper(VIO_EventGenerator &generator) : generator(&generator) {}

    VIO_EventGenerator &getGenerator() const { return *generator; }
    /// Gives the generator a turn if its poll time has passed. The turn may destroy this object.
    void poll(const OSL_TimeVal &now);
    /// How long it is until a poll gives the generator a turn, in microseconds; 0 when one at `now` would.
    long long getTimeToTurn(const OSL_TimeVal &now) const;

private:
    int getPollTime() const;
    bool isDue(const OSL_TimeVal &now, int pollTime) const;

    VIO_EventGenerator *generator;   // borrowed; uninstalls itself before it goes
    OSL_TimeVal lastRun = { 0, 0 };
};
