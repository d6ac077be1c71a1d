// SPDX-License-Identifier: Apache-2.0
#include <cstdlib>
#include <iostream>
#include <string>

#include <gtest/gtest.h>

#include <orvlang/platform/kit/KIT_Exit.h>
#include <orvlang/platform/kit/KIT_Performance.h>

#include "TestSystem.h"

namespace {

constexpr long long theMillisecond = 1000000;

/// A log whose time the test tells, and whose table comes into a text.
class PerformanceTest : public testing::Test, private TestSystem {
protected:
    PerformanceTest() {
        log.setWindow([](const char *table, void *text) { static_cast<std::string *>(text)->append(table); },
                      &shown);
    }

    void piece(long long duration, const char *name, const char *file, int line) {
        log.begin();
        now += duration;
        log.end(name, file, line);
    }
    /// `outer` has 3 ms of its own and 5 ms inside.
    void nestedPieces() {
        log.begin();
        now += theMillisecond;
        piece(4 * theMillisecond, "inner", "a.cmd", 2);
        piece(theMillisecond, "", "", 0);
        now += 2 * theMillisecond;
        log.end("outer", "a.cmd", 1);
    }

    long long getMonotonicTime() override { return now; }

    long long now = 0;
    std::string shown;
    KIT_Performance log;
};

}   // namespace

TEST_F(PerformanceTest, CountsForATable) {
    log.logType(KIT_Performance::logWindow);
    log.logEnable(1);
    nestedPieces();
    piece(6 * theMillisecond, "inner", "", 0);
    for (int i = 0; i < 3; ++i)
        piece(400000, "often", "b.cmd", 7);
    piece(999999, "once", "", 0);
    log.timeFilter = KIT_Performance::filterMilliseconds;
    log.logEnable(1);
    EXPECT_EQ(shown, "");
    log.logEnable(0);
    EXPECT_EQ(shown, "       count     total s       own s   longest s  command\n"
                     "           2    0.010000    0.010000    0.006000  inner\n"
                     "           1    0.008000    0.003000    0.008000  outer\n"
                     "           3    0.001200    0.001200    0.000400  often\n"
                     "       count     total s       own s   longest s  script line\n"
                     "           1    0.008000    0.003000    0.008000  a.cmd (1): outer\n"
                     "           1    0.004000    0.004000    0.004000  a.cmd (2): inner\n"
                     "           3    0.001200    0.001200    0.000400  b.cmd (7): often\n");
}

TEST_F(PerformanceTest, TellsEachPieceAsItEnds) {
    testing::internal::CaptureStdout();
    log.logType(KIT_Performance::logStdout);
    nestedPieces();
    log.logEnable(1);
    nestedPieces();
    for (const auto &[filter, least] : { std::pair{ KIT_Performance::filterMilliseconds, theMillisecond },
                                         std::pair{ KIT_Performance::filterSeconds, 1000 * theMillisecond } }) {
        log.timeFilter = filter;
        piece(least - 1, "short", "", 0);
        piece(least, "long", "", 0);
    }
    log.begin();
    log.logEnable(0);
    log.end("switched off", "", 0);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "a.cmd (2): inner 0.004000 s, own 0.004000 s\n"
                                                      "a.cmd (1): outer 0.008000 s, own 0.003000 s\n"
                                                      "long 0.001000 s, own 0.001000 s\n"
                                                      "long 1.000000 s, own 1.000000 s\n");
}

TEST(Performance, ShowsWhatIsLeftWhenTheProcessEnds) {
    const auto work = [](void (*leave)(int)) {
        KIT_Performance &log = *KITgetPerformance();
        log.setWindow([](const char *, void *) { std::cerr << "in the window"; }, nullptr);
        log.logType(KIT_Performance::logWindow);
        log.logEnable(1);
        log.begin();
        log.end("work", "", 0);
        leave(0);
    };
    EXPECT_EXIT(work(KIT_Exit::exit), testing::ExitedWithCode(0), "^in the window$");
    EXPECT_EXIT(work(std::exit), testing::ExitedWithCode(0), "  command\n.*  work\n$")
        << "the window is gone by then";
}
