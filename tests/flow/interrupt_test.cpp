// SPDX-License-Identifier: Apache-2.0
// An interrupt from another thread ends every loop at once, and what a person types next runs.
#include "EngineFixture.h"

#include <atomic>
#include <optional>
#include <thread>

#include <orvlang/platform/osl/KIT_Interrupt.h>

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

class Interrupt : public EngineFixture {
protected:
    Interrupt() {
        install("tick", [](CMD_Args &) {
            ++theTicks;
            theTicks.notify_one();
        });
        install("nested", [](CMD_Args &) {
            CMD_Manager::getContext()->execute("while 1 == 1\ntick\nend\necho never", 0, nullptr, nullptr, 1,
                                               true);
        });
    }

    void expectEnd(const std::string &lines) {
        SCOPED_TRACE(lines);
        std::optional<Interrupter> interrupter(std::in_place);
        EXPECT_EQ(type(lines), "");
        interrupter.reset();
        EXPECT_EQ(manager.getSourceLevel(), 0);
        EXPECT_EQ(manager.getSource()->getIfNestLevel(), 0);
        EXPECT_EQ(type("for i = 1 to 2\necho $i\nend"), "1\n2\n");
    }
};

TEST_F(Interrupt, EndsLoops) {
    const std::string endless = "while 1 == 1\ntick\nend\n";
    folder.write("loop.cmd", "foreach x ( a b )\n" + endless + "end\necho never\n");
    expectEnd(endless);
    expectEnd("source loop.cmd; echo never");
    expectEnd("nested; echo never");
    expectEnd("for i = 1 to 1000\nnested\necho never\nend");
    // Where only heads of loops run, and in skipped code.
    expectEnd("while 1\ntick\nwhile 1\ntick\nfor i = 2 to 1\nend\nend\nend");
    expectEnd("for i = 1 to 2 step 0\ntick\nif $i == 2\nelse if 1\nif "
              "0\ncontinue\nelse\ntick\nendif\nelse\nendif\nend");
    expectEnd("while 1\nif 0\nelse\ntick\nif 1\ntick\ncontinue\nendif\nendif\nend");
}

TEST_F(Interrupt, OfALoopThatIsCollectedIsNoMistakeInIt) {
    install("cut", [](CMD_Args &) {
        CMD_Manager::getContext()->execute("while 1", 0, nullptr, nullptr, 1, true);
        KITgetInterrupt()->interrupt();
    });
    EXPECT_EQ(script("cut\necho never\nend\n", "; echo never"), "");
}

}   // namespace
