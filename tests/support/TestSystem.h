// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/osl/OSL_System.h>

/// The real system, except for what a test overrides. It is in place as long as it lives.
class TestSystem : public OSL_System {
protected:
    TestSystem() : before(OSLsetSystem(this)) {}
    ~TestSystem() override { OSLsetSystem(before); }

private:
    OSL_System *const before;
};
