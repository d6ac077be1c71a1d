// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/kit/KIT_Export.h>

/// Starts a program as a child process and returns its process id; negative, with errno set, when it does not start. The
/// words are argv of the program, ended by a null; the first one is looked for on $PATH unless it has a slash.
///
/// The child has the environment and the streams of this process, default signal dispositions and no signal blocked.
/// With a non-zero `detached` it gets a session of its own and the null device as input: what is typed at the terminal,
/// interrupts included, does not reach it. Otherwise it stays on the terminal, and when standard input can seek, the
/// child reads on after the last line that was read from KIT_StandardInput. With `discardOutput` what it writes to
/// its standard streams is lost.
///
/// Every child must be waited for, by KITwait or by KITisRunning until that returns false.
CMD_API int KITspawnvp(const char *const *argv, int detached, bool discardOutput);

/// Waits for the end of a child and returns its exit code, or 128 plus the signal that ended it. -1 when that is unknown:
/// it is not a child, was waited for already, or the host ignores SIGCHLD, so that the system drops the results of its
/// children; in the last case the end of the child is still waited for.
CMD_API int KITwait(int pid);

/// Returns whether a child has not ended yet. At its end the status, unless null, is set to the result of KITwait, once:
/// the child has been waited for then, and later calls return false with the status -1.
CMD_API bool KITisRunning(int pid, int *status);
