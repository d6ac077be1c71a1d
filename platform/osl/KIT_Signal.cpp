// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/osl/KIT_Signal.h>

KIT_Signal::KIT_Signal(const int *signals, void (*handler)(int), bool restart) {
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = restart ? SA_RESTART : 0;
    for (const int *signal = signals; *signal != 0; ++signal) {
        struct sigaction before;
        if (sigaction(*signal, &action, &before) == 0)
            former.emplace_back(*signal, before);
    }
}

KIT_Signal::~KIT_Signal() {
    for (auto entry = former.rbegin(); entry != former.rend(); ++entry)
        sigaction(entry->first, &entry->second, nullptr);
}
