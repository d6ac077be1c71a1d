// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <utility>
#include <vector>

#include <signal.h>

#include <orvlang/platform/kit/KIT_Export.h>

/// Sets other handlers for some signals of the process for as long as it lives. Its destructor restores exactly what was
/// there before: handler, flags and mask. Objects of this class end in the reverse order of their construction.
class CMD_API KIT_Signal {
public:
    /// The table of signal numbers ends with a 0; numbers that cannot be handled are skipped. The handler may be
    /// SIG_IGN or SIG_DFL. With `restart` system calls that the handler interrupts continue.
    KIT_Signal(const int *signals, void (*handler)(int), bool restart);
    ~KIT_Signal();
    KIT_Signal(const KIT_Signal &) = delete;
    KIT_Signal &operator=(const KIT_Signal &) = delete;

private:
    std::vector<std::pair<int, struct sigaction>> former;   // by signal, in the order of the table
};
