// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include <poll.h>

#include <orvlang/platform/kit/KIT_Export.h>

// The waits of the thread that runs commands, and what standard input has to say. Times are milliseconds; those below 0
// count as 0. A signal ends each wait.

/// Whether reading standard input would give something at once: bytes (those held by KIT_StandardInput too), the end,
/// or an error.
CMD_API bool KITisDataAvailableOnStdin();
/// False when descriptor 0 is not open.
CMD_API bool KITisStdinValid();

/// Sleeps until the time is over, standard input has something to read, or a due descriptor has (see below).
CMD_API void KITwaitForTimeoutOrDataOnStdin(int milliseconds);
/// The same without standard input.
CMD_API void KITnap(int milliseconds);

/// Appends the descriptors that may end a wait, with what is wanted of them: those whose owner would be served at once.
/// Gives the microseconds until the next owner will be; negative when there is no further.
using KIT_DueDescriptors = long long (*)(std::vector<pollfd> &wanted);
/// For the event loop of the process, so that nothing that arrives waits longer than need be. A descriptor may be given
/// only if the loop, after the wait, really serves it: else the loop would spin. Null for none.
CMD_API void KITsetDueDescriptors(KIT_DueDescriptors function);
