// SPDX-License-Identifier: Apache-2.0
#include <orvlang/port/cmd_PollingEvtGeneratorWrapper.h>

#include <algorithm>

#include <orvlang/platform/net/VIO_EventGenerator.h>

namespace {

constexpr int theDescriptorPollTime =
    20;   // milliseconds, for a generator that has a descriptor and no poll time

}   // namespace

void cmd_PollingEvtGeneratorWrapper::poll(const OSL_TimeVal &now) {
    if (!isDue(now, getPollTime()))
        return;
    lastRun = now;
    generator->processEvents();
    // Here this object may be gone.
}

long long cmd_PollingEvtGeneratorWrapper::getTimeToTurn(const OSL_TimeVal &now) const {
    const int pollTime = getPollTime();
    if (isDue(now, pollTime))
        return 0;
    const long long elapsed =
        (now.seconds - lastRun.seconds) * 1000000LL + now.microseconds - lastRun.microseconds;
    return std::max(1LL, pollTime * 1000LL + 1 - elapsed);
}

int cmd_PollingEvtGeneratorWrapper::getPollTime() const {
    const int pollTime = generator->getPollTime();
    return pollTime < 1 && generator->getFileDescriptor() >= 0 ? theDescriptorPollTime : pollTime;
}

bool cmd_PollingEvtGeneratorWrapper::isDue(const OSL_TimeVal &now, int pollTime) const {
    const float elapsed =
        static_cast<float>(static_cast<double>(now.microseconds - lastRun.microseconds) * 0.001 +
                           static_cast<double>(now.seconds - lastRun.seconds) * 1000);
    // A clock that was set back must not keep a generator waiting until it has caught up.
    return static_cast<float>(pollTime) < elapsed || elapsed < 0;
}
