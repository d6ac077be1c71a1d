// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/kit/KIT_EnvControl.h>

#include <atomic>
#include <climits>
#include <cstring>

#include <orvlang/platform/kit/KIT_Number.h>
#include <orvlang/platform/osl/OSL_System.h>

namespace {

constexpr long NotRead = LONG_MIN;

struct Control {
    int number;
    const char *variable;
    int byDefault;
    std::atomic<long> value{ NotRead };
};

constexpr char Prefix[] = "ORVANE_";   // of every variable in the table

constinit Control theControls[] = {
    { KIT_EnvControl::PlainInput, "ORVANE_PLAIN_INPUT", 0 },
};

}   // namespace

int KIT_EnvControl::getInt(int number) {
    for (Control &control : theControls) {
        if (control.number != number)
            continue;
        long value = control.value.load(std::memory_order_relaxed);
        if (value == NotRead) {
            const char *const text = OSLsystem().getEnvironment(control.variable);
            value = text ? KITatoi(text) : control.byDefault;
            control.value.store(value, std::memory_order_relaxed);
        }
        return static_cast<int>(value);
    }
    return 0;
}

void KIT_EnvControl::varChanged(const char *name) {
    // Called for each exported variable that is set, of which hardly any is in the table.
    if (!name || std::strncmp(name, Prefix, sizeof Prefix - 1) != 0)
        return;
    for (Control &control : theControls)
        if (std::strcmp(name, control.variable) == 0)
            control.value.store(NotRead, std::memory_order_relaxed);
}
