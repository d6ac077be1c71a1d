// SPDX-License-Identifier: Apache-2.0
// An interrupt from another thread ends every loop at once, and what a person types next runs.
#include "FlowFixture.h"

#include <atomic>
#include <thread>

#include <orvlang/platform/kit/KIT_Interrupt.h>

namespace {

std::atomic<int> theTicks;

/// Interrupts once the loop under test has come round a few times.
class Interrupter {
public:
    Interrupter() {
        theTicks = 0;
        thread = std::thread([] {
            for (int seen = 0; seen < 20; seen = theTicks)
                theTicks.wait(seen);
            KITgetInterrupt()->interrupt();
        });
    }
    ~Interrupter() { thread.join(); }

private:
    std::thread thread;
};

class Interrupt : public FlowFixture {
protected:
    Interrupt() {
        manager.installCommand(
            "tick", "",
            [](CMD_Args &) {
                ++theTicks;
                theTicks.notify_one();
            },
            true);
        manager.installCommand(
            "nested", "",
            [](CMD_Args &) {
                CMD_Manager::getContext()->execute("while 1 == 1\ntick\nend\necho never", 0, nullptr, nullptr,
                                                   1, true);
            },
            true);
    }

    void expectEnd(const std::string &lines) {
        SCOPED_TRACE(lines);
        {
            const Interrupter interrupter;
            type(lines);
        }
        EXPECT_EQ(written(), "");
        EXPECT_EQ(manager.getSourceLevel(), 0);
        EXPECT_EQ(manager.getSource()->getIfNestLevel(), 0);
        type("for i = 1 to 2\necho $i\nend");
        EXPECT_EQ(written(), "1|2|");
    }
};

TEST_F(Interrupt, EndsLoops) {
    const std::string endless = "while 1 == 1\ntick\nend\n";
    script("loop.cmd", "foreach x ( a b )\n" + endless + "end\necho never\n");
    expectEnd(endless);
    expectEnd("source " + folder + "/loop.cmd; echo never");
    expectEnd("nested; echo never");
    expectEnd("for i = 1 to 1000\nnested\necho never\nend");
    // Where only heads of loops run, and in skipped code.
    expectEnd("while 1\ntick\nwhile 1\ntick\nfor i = 2 to 1\nend\nend\nend");
    expectEnd("for i = 1 to 2 step 0\ntick\nif $i == 2\nelse if 1\nif "
              "0\ncontinue\nelse\ntick\nendif\nelse\nendif\nend");
    expectEnd("while 1\nif 0\nelse\ntick\nif 1\ntick\ncontinue\nendif\nendif\nend");
}

TEST_F(Interrupt, OfALoopThatIsCollectedIsNoMistakeInIt) {
    manager.installCommand(
        "cut", "",
        [](CMD_Args &) {
            CMD_Manager::getContext()->execute("while 1", 0, nullptr, nullptr, 1, true);
            KITgetInterrupt()->interrupt();
        },
        true);
    script("cut.cmd", "cut\necho never\nend\n");
    type("source " + folder + "/cut.cmd; echo never");
    EXPECT_EQ(written(), "");
}

}   // namespace
