// SPDX-License-Identifier: Apache-2.0

/// Calls the function whose address the argument points to.
extern "C" void visitPlugin(void *argument);
extern "C" __attribute__((visibility("default"))) void visitPlugin(void *argument) {
    (*static_cast<void (**)()>(argument))();
}
