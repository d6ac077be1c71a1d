// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include <poll.h>

#include <orvlang/platform/kit/KIT_Export.h>

// The waits of the thread that runs commands, and the state of standard input. Times are milliseconds; those below 0
// count as 0. A signal ends each wait.

/// Returns whether a read of standard input would end at once: with bytes (also those in KIT_StandardInput), the end, or
/// an error.
CMD_API bool KITisDataAvailableOnStdin();
/// Returns false when descriptor 0 is not open.
CMD_API bool KITisStdinValid();

/// Sleeps until the time is over, standard input has something to read, or a due descriptor has (see below).
CMD_API void KITwaitForTimeoutOrDataOnStdin(int milliseconds);
/// The same without standard input.
CMD_API void KITnap(int milliseconds);

/// Appends the descriptors that may end a wait, with the events that they wait for: those whose owner would be served at
/// once. Returns the microseconds until the next owner will be; negative when there is none.
using KIT_DueDescriptors = long long (*)(std::vector<pollfd> &wanted);
/// Sets the function of the process's event loop, so that waits end for what the loop serves. A descriptor may be
/// appended only if the loop really serves it after the wait: otherwise the loop would spin. Null for none.
CMD_API void KITsetDueDescriptors(KIT_DueDescriptors function);
