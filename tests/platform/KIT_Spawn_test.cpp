// SPDX-License-Identifier: Apache-2.0
#include <cerrno>
#include <filesystem>
#include <string>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <orvlang/platform/kit/KIT_Process.h>
#include <orvlang/platform/osl/KIT_Signal.h>
#include <orvlang/platform/osl/OSL_File.h>

#include "TestSystem.h"

namespace {

constexpr int theInterrupts[] = { SIGINT, SIGTERM, 0 };
constexpr int theChildSignal[] = { SIGCHLD, 0 };

/// Starts a line of sh; `word` is its $0.
int startShell(const std::string &line, const std::string &word = "sh") {
    const char *const argv[] = { "sh", "-c", line.c_str(), word.c_str(), nullptr };
    return KITspawnvp(argv, false, false);
}

/// A detached one writes into nothing as well.
int startSleeper(int detached) {
    static constexpr const char *argv[] = { "sleep", "1000", nullptr };
    return KITspawnvp(argv, detached, detached);
}

/// Ends the child and waits until it can be collected, which is left to the test.
void endChild(int pid) {
    kill(pid, SIGTERM);
    siginfo_t info;
    waitid(P_PID, static_cast<id_t>(pid), &info, WEXITED | WNOWAIT);
}

class BlockedSignal {
public:
    explicit BlockedSignal(int signal) {
        sigset_t set;
        sigemptyset(&set);
        sigaddset(&set, signal);
        pthread_sigmask(SIG_BLOCK, &set, &before);
    }
    ~BlockedSignal() { pthread_sigmask(SIG_SETMASK, &before, nullptr); }

private:
    sigset_t before;
};

}   // namespace

TEST(Spawn, TellsHowAChildEnded) {
    for (const int status : { 0, 3, 255 })
        EXPECT_EQ(KITwait(startShell("exit " + std::to_string(status))), status);
    EXPECT_EQ(KITwait(startShell("kill -9 $$")), 128 + 9);
    const int pid = startSleeper(0);
    int status = 7;
    EXPECT_TRUE(KITisRunning(pid, &status));
    EXPECT_EQ(status, 7);
    endChild(pid);
    EXPECT_FALSE(KITisRunning(pid, &status));
    EXPECT_EQ(status, 128 + SIGTERM);
    EXPECT_FALSE(KITisRunning(pid, &status));
    EXPECT_EQ(status, -1) << "it was waited for";
    EXPECT_EQ(KITwait(pid), -1);
}

TEST(Spawn, RefusesWhatIsNoProgram) {
    static constexpr const char *missing[] = { "no-such-program", nullptr };
    EXPECT_LT(KITspawnvp(missing, 0, false), 0);
    EXPECT_EQ(errno, ENOENT);
}

TEST(Spawn, TakesNoNumberForSeveralChildren) {
    const int other = startShell("exit 5");
    for (const int pid : { 0, -1, -getpgrp() }) {
        EXPECT_FALSE(KITisRunning(pid, nullptr)) << pid;
        EXPECT_EQ(KITwait(pid), -1) << pid;
    }
    EXPECT_EQ(KITwait(other), 5);
}

TEST(Spawn, GoesOnWaitingWhenInterrupted) {
    class Interrupted : public TestSystem {
    public:
        pid_t waitProcess(pid_t pid, int *status, int options) override {
            if (--remaining < 0)
                return OSL_System::waitProcess(pid, status, options);
            errno = EINTR;
            return -1;
        }
        int remaining = 2;
    } system;
    EXPECT_EQ(KITwait(startShell("exit 6")), 6);
}

TEST(Spawn, AHostMayBlockOrIgnoreChildSignals) {
    {
        const BlockedSignal blocked(SIGCHLD);
        EXPECT_EQ(KITwait(startShell("exit 3")), 3);
    }
    const KIT_Signal ignored(theChildSignal, SIG_IGN, false);
    EXPECT_EQ(KITwait(startShell("exit 3")), -1) << "nobody can know";
    const int pid = startSleeper(1);
    int status = 0;
    EXPECT_TRUE(KITisRunning(pid, &status));
    kill(pid, SIGTERM);
    EXPECT_EQ(KITwait(pid), -1);
    EXPECT_FALSE(KITisRunning(pid, &status));
    EXPECT_EQ(status, -1);
}

TEST(Spawn, AChildHasDefaultSignalsAndNoFilesOfOurs) {
    const KIT_Signal ignored(theInterrupts, SIG_IGN, false);
    const BlockedSignal blocked(SIGUSR1);
    const int descriptor = OSLopen("/dev/null", O_RDONLY, 0);
    // Some versions of the C library ignore two signals of their own in a child.
    EXPECT_EQ(KITwait(startShell("test $(grep -cE '^SigBlk:.0{16}$|^SigIgn:.0{7}[018]{2}0{7}$' "
                                 "/proc/$$/status) = 2 -a ! -e /proc/$$/fd/$0",
                                 std::to_string(descriptor))),
              0);
    close(descriptor);
}

TEST(Spawn, ADetachedChildHasItsOwnSessionAndStreams) {
    const int detached = startSleeper(1);
    const int attached = startSleeper(0);
    EXPECT_EQ(getsid(detached), detached);
    EXPECT_EQ(getsid(attached), getsid(0));
    for (const char *stream : { "/fd/0", "/fd/1", "/fd/2" })
        EXPECT_EQ(std::filesystem::read_symlink("/proc/" + std::to_string(detached) + stream), "/dev/null");
    for (const int pid : { detached, attached }) {
        kill(pid, SIGKILL);
        EXPECT_EQ(KITwait(pid), 128 + SIGKILL);
    }
}

TEST(Signal, PutsBackExactlyWhatWasThere) {
    struct sigaction original = {}, before, found;
    original.sa_sigaction = [](int, siginfo_t *, void *) {};
    original.sa_flags = SA_SIGINFO | SA_RESTART | SA_NODEFER;
    sigaddset(&original.sa_mask, SIGUSR2);
    sigaction(SIGINT, &original, &before);
    {
        // The same signal twice, and two that cannot be handled.
        static constexpr int signals[] = { SIGINT, SIGKILL, SIGINT, 4711, SIGTERM, 0 };
        const KIT_Signal outer(signals, SIG_IGN, false);
        const KIT_Signal inner(theInterrupts, SIG_DFL, true);
    }
    sigaction(SIGINT, &before, &found);
    EXPECT_EQ(found.sa_sigaction, original.sa_sigaction);
    EXPECT_EQ(found.sa_flags & ~0x04000000, original.sa_flags);   // without the C library's own SA_RESTORER
    EXPECT_TRUE(sigismember(&found.sa_mask, SIGUSR2));
}
