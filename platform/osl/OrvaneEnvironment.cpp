// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/osl/OrvaneEnvironment.h>

#include <orvlang/platform/osl/OSL_System.h>

const char *OrvaneGetenv(const char *name) {
    return name ? OSLsystem().getEnvironment(name) : nullptr;
}

int OrvaneSetenv(const char *name, const char *value) {
    return name && OSLsystem().setEnvironment(name, value ? value : "");
}

int OrvaneUnsetenv(const char *name) {
    return name && OSLsystem().unsetEnvironment(name);
}
