// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/kit/KIT_Process.h>

#include <cerrno>

#include <sys/wait.h>

#include <orvlang/platform/kit/KIT_StandardInput.h>
#include <orvlang/platform/osl/OSL_System.h>
#include <orvlang/platform/osl/OSL_Terminal.h>

namespace {

constexpr int theUnknownStatus = -1;

int statusOf(int waitStatus) {
    return WIFSIGNALED(waitStatus) ? 128 + WTERMSIG(waitStatus) : WEXITSTATUS(waitStatus);
}

/// As KITisRunning; without WNOHANG among the options it waits for the end.
bool isRunning(int pid, int options, int &status) {
    status = theUnknownStatus;
    // Other numbers would mean any child, or those of a group.
    if (pid <= 0)
        return false;
    int waitStatus;
    pid_t ended;
    do
        ended = OSLsystem().waitProcess(pid, &waitStatus, options);
    while (ended < 0 && errno == EINTR);
    if (ended > 0)
        status = statusOf(waitStatus);
    return ended == 0;
}

}   // namespace

int KITspawnvp(const char *const *argv, int detached, bool discardOutput) {
    if (!argv || !argv[0]) {
        errno = EINVAL;
        return -1;
    }
    KIT_StandardInput &input = KIT_StandardInput::inst();
    if (!detached && input.holdsInput())
        input.seekBack();
    OSLyieldTerminal();
    OSL_SpawnOptions options;
    options.ownSession = options.nullInput = detached != 0;
    options.nullOutput = discardOutput;
    return OSLsystem().spawn(argv, options);
}

int KITwait(int pid) {
    int status;
    isRunning(pid, 0, status);
    return status;
}

bool KITisRunning(int pid, int *status) {
    int found;
    const bool running = isRunning(pid, WNOHANG, found);
    if (!running && status)
        *status = found;
    return running;
}
