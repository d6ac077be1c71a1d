// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/osl/OSL_Time.h>

class VIO_EventGenerator;

/// One installed event generator, and the time of its latest turn.
class cmd_PollingEvtGeneratorWrapper {
public:
    explicit cmd_PollingEvtGeneratorWrapper(VIO_EventGenerator &generator) : generator(&generator) {}

    VIO_EventGenerator &getGenerator() const { return *generator; }
    /// Gives the generator a turn if its poll time has passed. The turn may destroy this object.
    void poll(const OSL_TimeVal &now);
    /// Returns the microseconds until a poll would give the generator a turn; 0 when a poll at `now` would.
    long long getTimeToTurn(const OSL_TimeVal &now) const;

private:
    int getPollTime() const;
    bool isDue(const OSL_TimeVal &now, int pollTime) const;

    VIO_EventGenerator *generator;   // borrowed; uninstalls itself before its end
    OSL_TimeVal lastRun = { 0, 0 };
};
