// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/osl/KIT_Interrupt.h>

static constinit KIT_Interrupt theInterrupt;

KIT_Interrupt *KITgetInterrupt() {
    return &theInterrupt;
}
