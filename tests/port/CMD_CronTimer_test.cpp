// SPDX-License-Identifier: Apache-2.0
// Timed jobs under a clock and a loop of the test's own: what is listed, when jobs run, and what they may do to the list
// of jobs and to the loop.
#include "Cases.h"
#include "EngineFixture.h"

#include <algorithm>
#include <vector>

#include <orvlang/platform/net/VIO_EventGenerator.h>
#include <orvlang/platform/osl/OSL_Time.h>

namespace {

class Clock : public TestSystem {
public:
    int getTimeOfDay(OSL_TimeVal &now) override {
        now = { seconds, 999999 };
        return 0;
    }
    bool isTerminal(int) override { return false; }

    long seconds = 4000000000;   // beyond what an int holds
};

class Jobs : public EngineFixture {
protected:
    Jobs() {
        VIO_EventGenerator::setInstaller([](VIO_EventGenerator *generator, int install) {
            if (install)
                theGenerators.push_back(generator);
            return install ? 1 : static_cast<int>(std::erase(theGenerators, generator));
        });
        install("note", [](CMD_Args &args) { theNotes += std::string(args.argv(1)) + ' '; });
        // Lets time pass within a job.
        install("wait", [](CMD_Args &args) { turn(std::stoi(args.argv(1))); });
        theClock = &clock;
        theNotes.clear();
    }
    ~Jobs() override {
        type("atjob -r all");
        pass(0);
        EXPECT_TRUE(theGenerators.empty());
        VIO_EventGenerator::setInstaller(nullptr);
    }

    static void turn(int seconds) {
        theClock->seconds += seconds;
        for (size_t i = theGenerators.size(); i-- > 0;)
            theGenerators[i]->processEvents();
    }
    /// What the jobs note when so many seconds have passed.
    static std::string pass(int seconds) {
        turn(seconds);
        return std::exchange(theNotes, {});
    }
    /// Types `atjob` lines; gives the number of the first job, with which the others go on.
    int add(const std::string &lines) {
        EXPECT_EQ(type(lines), "");
        const std::string listing = type("atjob -l");
        const size_t last = listing.rfind("JobId(");
        return last == std::string::npos ? 0 : std::stoi(listing.substr(last + 6));
    }
    /// The listing with the numbers counted from the first one.
    std::string listing(int first) {
        std::string text = type("atjob -l");
        for (int i = 0; i < 9; ++i) {
            const std::string number = "JobId(" + std::to_string(first + i) + ")";
            if (const size_t place = text.find(number); place != std::string::npos)
                text.replace(place, number.size(), "#" + std::to_string(i));
        }
        return text;
    }

    Clock clock;
    static inline Clock *theClock = nullptr;
    static inline std::string theNotes;
    static inline std::vector<VIO_EventGenerator *> theGenerators;
};

TEST_F(Jobs, Words) {
    const std::string usage = type("atjob -p 5");
    EXPECT_TRUE(usage.starts_with("{")) << usage;
    EXPECT_EQ(type("atjob 5"), usage);
    EXPECT_EQ(type("atjob -l; atjob -l -r 1; atjob -r 1"),
              "No pending jobs\nNo pending jobs\nNo pending jobs\n");
    EXPECT_EQ(type("atjob -r"), "{Error:  No jobs specified for removal\n}");
    EXPECT_TRUE(theGenerators.empty());
    // No second to wait is no job, and leaves a timer without jobs to its next turn.
    EXPECT_EQ(type("atjob 0 note a; atjob -- -5 note b; atjob foo note c; atjob -p 0 note d"), "");
    EXPECT_EQ(theGenerators.size(), 1u);
    EXPECT_EQ(type("atjob -l; atjob -r 1"), "Warning: no job was found matching Id(1)\n");
    EXPECT_EQ(type("atjob -r"), "{Error:  No jobs specified for removal\n}");
    EXPECT_EQ(pass(0), "");
    EXPECT_TRUE(theGenerators.empty());

    const int id = add("atjob 10 note 'a   b' \"it's\"\natjob -p 2147483647 x");
    EXPECT_EQ(theGenerators.size(), 1u);
    EXPECT_STREQ(theGenerators[0]->getClassName(), "cron");
    EXPECT_EQ(theGenerators[0]->getPollTime(), 500);
    EXPECT_LT(theGenerators[0]->getFileDescriptor(), 0);
    EXPECT_EQ(listing(id), "#1 In 2147483647 seconds, run 'x'\n#0 In 10 seconds, run 'note a   b it's'\n");
    clock.seconds += 12;
    EXPECT_EQ(listing(id), "#1 In 2147483635 seconds, run 'x'\n#0 In -2 seconds, run 'note a   b it's'\n");
    const std::string last = std::to_string(id + 1);
    EXPECT_EQ(type("atjob -r x * " + last + " 0"), "Warning: no job was found matching Id(0)\nRemoved job " +
                                                       last + "\nRemoved job Id(" + std::to_string(id) + ")\n");
    EXPECT_EQ(type("atjob -l"), "");
    EXPECT_EQ(pass(0), "");
    EXPECT_EQ(type("atjob -l"), "No pending jobs\n");

    VIO_EventGenerator::setInstaller(nullptr);
    EXPECT_EQ(script("\natjob 1 note a"), "{s.cmd (2): Unable to install event generator\n}");
    EXPECT_EQ(type("atjob -l"), "No pending jobs\n");
}

TEST_F(Jobs, RunWhenTheirTimeIsOver) {
    const int id = add("atjob 2 note a; atjob 1 note b; atjob -p 2 note c; atjob 2 note d");
    EXPECT_EQ(pass(1), "");
    EXPECT_EQ(pass(1), "b ");
    EXPECT_EQ(pass(0), "");
    EXPECT_EQ(pass(1), "d c a ");
    EXPECT_EQ(listing(id + 2), "#0 In 2 seconds, run 'note c'\n");
    EXPECT_EQ(pass(2), "");
    EXPECT_EQ(pass(100), "c ");   // what was missed is not made up for
    EXPECT_EQ(pass(2), "");
    EXPECT_EQ(pass(1), "c ");
    // Nobody sees what a job writes; a failure does not end its repetition.
    add("atjob -p 1 'echo hidden; nosuch; note f'; atjob 1 'note g; nosuch'");
    EXPECT_EQ(pass(2), "g f ");
    EXPECT_EQ(pass(2), "f c ");
    EXPECT_EQ(transcript.take(), "");
}

TEST_F(Jobs, RunInTheModeOfTheirTime) {
    install(
        "unsafe", [](CMD_Args &) { theNotes += "unsafe "; }, "", false);
    add("atjob -p 1 'unsafe; note a'");
    manager.setSafeMode(1);
    EXPECT_EQ(pass(2), "a ");
    manager.setSafeMode(0);
    EXPECT_EQ(pass(2), "unsafe a ");
}

TEST_F(Jobs, AreMetByWhatWaitsForALine) {
    add("atjob 1 note a");
    type("read x");
    EXPECT_EQ(pass(2), "");
    EXPECT_EQ(type("echo $x"), "note a\n");
}

TEST_F(Jobs, WaitForAManager) {
    add("atjob 1 note a");
    { CMD_Manager other("other"); }
    ASSERT_EQ(CMD_Manager::getContext(), nullptr);
    EXPECT_EQ(pass(2), "");
    manager.setContext();
    EXPECT_EQ(pass(0), "a ");
}

TEST_F(Jobs, MayChangeTheJobsAndPollTheLoop) {
    folder.write("adds.cmd", "note script\nfor i = 1 to 3\natjob 1 note new $i\nend\n");
    for (const auto &row : casesOf(ORVLANG_CASES "/jobs.cases")) {
        add(row[0]);
        EXPECT_EQ(pass(2), row[1]) << row[0];
        EXPECT_EQ(pass(2), row[2]) << row[0];
        type("atjob -r all");
        pass(0);
    }
    // One that removes itself by its number, beside an older one and a newer one that go on.
    const int id = add("atjob 9 note a");
    add("atjob -p 1 'note b; atjob -r " + std::to_string(id + 1) + " " + std::to_string(id) + "; atjob -r " +
        std::to_string(id + 1) + "; note c'; atjob 1 note d");
    EXPECT_EQ(pass(2), "d b c ");
    EXPECT_EQ(type("atjob -l"), "No pending jobs\n");
}

}   // namespace
