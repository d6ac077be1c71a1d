// SPDX-License-Identifier: Apache-2.0
// The event reader in a world whose time passes only in its waits.
#include <orvlang/port/CMD_EvtMonitoringReader.h>

#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "TestSystem.h"
#include <orvlang/engine/CMD_Manager.h>
#include <orvlang/platform/edit/KIT_CmdLineReader.h>
#include <orvlang/platform/kit/KIT_EnvControl.h>
#include <orvlang/platform/kit/KIT_StandardInput.h>
#include <orvlang/platform/kit/KIT_Wait.h>
#include <orvlang/platform/kit/KIT_WorkBuffer.h>
#include <orvlang/platform/net/VIO_EventGenerator.h>
#include <orvlang/platform/osl/KIT_Interrupt.h>
#include <orvlang/platform/osl/OrvaneEnvironment.h>

using namespace std::string_literals;

namespace {

constexpr long long theEnd = 1LL << 50;   // microseconds; a time that never comes

/// A clock and descriptors that have something to read from a planned time on. Microseconds.
class FakeWorld : public TestSystem {
public:
    struct Piece {
        long long time;
        std::string text;   // empty for the end
    };
    std::deque<Piece> input;              // of descriptor 0; what is not planned never comes
    std::map<int, long long> readable;    // from when on, by descriptor
    long long now = 1000 * 1000000LL;     // since some fixed moment
    long long ahead = 0;                  // of the time of day; changes when that is set
    std::vector<long long> waits;         // how long each lasted, those of no time not counted
    std::function<void()> whileWaiting;   // runs in each of those
    bool inputClosed = false;

    void inputAt(long long milliseconds, const std::string &text) {
        input.push_back({ now + milliseconds * 1000, text });
    }

    int getTimeOfDay(OSL_TimeVal &time) override {
        time = { static_cast<long>((now + ahead) / 1000000), static_cast<long>((now + ahead) % 1000000) };
        return 0;
    }
    long long getMonotonicTime() override { return now * 1000; }
    ssize_t read(int descriptor, void *buffer, size_t count) override {
        EXPECT_EQ(descriptor, 0);
        const std::string text = input.at(0).text;
        EXPECT_LE(text.size(), count);
        text.copy(static_cast<char *>(buffer), count);
        input.pop_front();
        return static_cast<ssize_t>(text.size());
    }
    int waitReadable(int descriptor, int) override {
        pollfd wanted = { descriptor, POLLIN, 0 };
        return markReady(&wanted, 1);
    }
    int waitAny(pollfd *wanted, size_t count, long long nanoseconds) override {
        const long long start = now;
        const long long end = now + (nanoseconds + 999) / 1000;
        int ready = markReady(wanted, count);
        if (nanoseconds == 0)
            return ready;
        if (whileWaiting)
            whileWaiting();
        while (ready == 0 && now < end) {
            now += 10;
            ready = markReady(wanted, count);
        }
        waits.push_back(now - start);
        return ready;
    }

private:
    int markReady(pollfd *wanted, size_t count) {
        int ready = 0;
        for (size_t i = 0; i < count; ++i) {
            wanted[i].revents = 0;
            if (wanted[i].fd == 0 && inputClosed)
                wanted[i].revents = POLLNVAL;
            else if (now >= readableFrom(wanted[i].fd))
                wanted[i].revents = POLLIN;
            ready += wanted[i].revents != 0;
        }
        return ready;
    }
    long long readableFrom(int descriptor) const {
        if (descriptor == 0)
            return input.empty() ? theEnd : input[0].time;
        const auto found = readable.find(descriptor);
        return found == readable.end() ? theEnd : found->second;
    }
};

class Generator : public VIO_EventGenerator {
public:
    Generator(int descriptor, int pollTime) : descriptor(descriptor), pollTime(pollTime) { installGenerator(); }
    ~Generator() override { uninstallGenerator(); }

    int getFileDescriptor() const override { return descriptor; }
    int getPollTime() const override { return pollTime; }
    int processEvents() override {
        ++turns;
        if (const std::function<void()> call = turn)
            call();   // may destroy this
        return 1;
    }

    std::function<void()> turn;
    int turns = 0;

private:
    const int descriptor, pollTime;
};

/// The first one is made while a generator waits for it.
CMD_EvtMonitoringReader &makeReader() {
    const Generator early(-1, 0);
    return CMD_EvtMonitoringReader::inst();
}

class EventReaderTest : public testing::Test {
protected:
    EventReaderTest() { KIT_StandardInput::inst().discard(); }

    /// What getline gives, "(end)" at the end.
    std::string getline() {
        KIT_WorkBuffer line("left over");
        return reader.getline(commands, line) == CMD_EvtMonitoringReader::GotLine ? line.c_str() : "(end)";
    }
    /// Waits for a line for so long.
    void runFor(long long milliseconds) {
        world.inputAt(milliseconds, "\n");
        EXPECT_EQ(getline(), "");
    }
    /// How long a nap lasts, in microseconds.
    long long nap(int milliseconds) const {
        const long long start = world.now;
        KITnap(milliseconds);
        return world.now - start;
    }
    static void poll() { CMD_EvtMonitoringReader::pollEventGeneratorsCallback(false); }

    CMD_EvtMonitoringReader &reader = makeReader();
    KIT_CmdLineReader commands{ nullptr, nullptr };
    FakeWorld world;
};

}   // namespace

TEST_F(EventReaderTest, PaceOfTheTurns) {
    static const struct {
        int descriptor, pollTime;
        long long milliseconds;
        int least, most;   // turns
    } theCases[] = {
        { -1, 500, 3000, 6, 7 },                            // 500 is not enough, it must be more
        { -1, 0, 100, 99, 101 },                            // each pass
        { -1, -5, 100, 99, 101 }, { 7, 0, 1000, 48, 50 },   // never more often than every 20
        { 7, 1, 100, 49, 100 },   { 7, 30, 3000, 96, 100 },
    };
    for (const auto &c : theCases) {
        Generator generator(c.descriptor, c.pollTime);
        runFor(c.milliseconds);
        EXPECT_GE(generator.turns, c.least) << c.descriptor << " " << c.pollTime;
        EXPECT_LE(generator.turns, c.most) << c.descriptor << " " << c.pollTime;
    }
}

TEST_F(EventReaderTest, WaitsOneMillisecondWithGeneratorsAndTenWithout) {
    runFor(95);
    EXPECT_EQ(world.waits,
              std::vector<long long>({ 10000, 10000, 10000, 10000, 10000, 10000, 10000, 10000, 10000, 5000 }));
    world.waits.clear();
    Generator generator(-1, 500);
    runFor(3);
    EXPECT_EQ(world.waits, std::vector<long long>({ 1000, 1000, 1000 }));
}

TEST_F(EventReaderTest, GeneratorsAreNotPolledWhileInputIsThere) {
    Generator generator(-1, 0);
    world.inputAt(0, "one\ntwo\n");
    EXPECT_EQ(getline(), "one");
    EXPECT_EQ(getline(), "two");
    EXPECT_EQ(generator.turns, 0);
}

TEST_F(EventReaderTest, AHalfTypedLineGrowsBetweenTheTurns) {
    Generator generator(-1, 0);
    for (const auto &[time, text] :
         std::vector<FakeWorld::Piece>{ { 0, "ec" }, { 5, "ho " }, { 10, "a\nnext" } })
        world.inputAt(time, text);
    EXPECT_EQ(getline(), "echo a");
    EXPECT_GT(generator.turns, 5);
    world.inputAt(20, "");
    EXPECT_EQ(getline(), "next") << "the end completes the line before it";
    EXPECT_EQ(getline(), "(end)");
}

TEST_F(EventReaderTest, ThreePassesWithoutAWaitFollowACommand) {
    CMD_Manager manager("events");
    Generator generator(-1, 500);
    generator.turn = [&] { manager.execute("echo -n", 0, nullptr, nullptr, 1, true); };
    Generator counter(-1, -1);   // a turn in each pass
    runFor(1);
    // The pass of the command goes on without a wait, and so do the three behind it; the one wait is in the next.
    EXPECT_EQ(generator.turns, 1);
    EXPECT_EQ(counter.turns, 4);
    EXPECT_EQ(world.waits.size(), 1u);
}

TEST_F(EventReaderTest, UninstallsOnceForEachInstallation) {
    Generator generator(-1, 0);
    generator.installGenerator();
    poll();
    EXPECT_EQ(generator.turns, 2);
    EXPECT_EQ(generator.uninstallGenerator(), 1);
    EXPECT_EQ(generator.uninstallGenerator(), 1);
    EXPECT_EQ(generator.uninstallGenerator(), 0);
}

TEST_F(EventReaderTest, ATurnMayChangeTheListOfGenerators) {
    std::string order;
    std::vector<std::unique_ptr<Generator>> all;
    const auto add = [&](char name, std::function<void()> act = nullptr) {
        all.push_back(std::make_unique<Generator>(-1, 500));
        all.back()->turn = [&order, name, act] {
            order += name;
            if (act)
                act();
        };
    };
    // From the last to the first, and a second time only when the time has come.
    add('a'), add('b'), add('c');
    poll();
    poll();
    EXPECT_EQ(order, "cba");
    all.clear();

    // The one in its turn goes, with one that had its turn and one that had none; a new one waits for the next walk.
    order.clear();
    add('a'), add('b');
    add('c', [&] {
        all[0].reset();
        all[3].reset();
        all[2].reset();
        add('n');
    });
    add('d');
    poll();
    EXPECT_EQ(order, "dcb");
    poll();
    EXPECT_EQ(order, "dcbn");
    all.clear();

    // All go, and more come.
    order.clear();
    add('a'), add('b');
    add('c', [&] {
        all.clear();
        add('x'), add('y'), add('z');
    });
    poll();
    EXPECT_EQ(order, "c");
    poll();
    EXPECT_EQ(order, "czyx");
}

TEST_F(EventReaderTest, ATurnMayPoll) {
    std::string order;
    Generator first(-1, 1000);
    first.turn = [&] { order += 'a'; };
    auto second = std::make_unique<Generator>(-1, 1000);
    Generator third(-1, 1000);
    second->turn = [&] {
        order += 'b';
        poll();   // has nothing to do for the one in its turn, and the first is done now
        second.reset();
    };
    third.turn = [&] {
        order += 'c';
        poll();
        poll();
    };
    poll();
    EXPECT_EQ(order, "cba");
}

TEST_F(EventReaderTest, AClockThatIsSetBackKeepsNobodyWaiting) {
    Generator generator(-1, 500);
    poll();
    world.ahead = -3600 * 1000000LL;
    poll();
    poll();
    EXPECT_EQ(generator.turns, 2);
}

TEST_F(EventReaderTest, ADueDescriptorEndsANap) {
    Generator generator(7, 4);
    static const struct {
        long long readable;   // milliseconds from the start of the nap, which follows a turn
        int nap;
        long long lasts;   // microseconds
    } theCases[] = {
        { 6, 10, 6000 },                                      // within the nap
        { 0, 10, 4010 },                                      // not before the generator is due
        { 0, 4, 4000 },  { 0, 3, 3000 }, { 50, 10, 10000 },   // at the end of the nap
    };
    for (const auto &c : theCases) {
        world.now += 1000000;
        world.readable.erase(7);
        poll();
        world.readable[7] = world.now + c.readable * 1000;
        EXPECT_EQ(nap(c.nap), c.lasts) << c.readable << " " << c.nap;
        const int turns = generator.turns;
        poll();
        EXPECT_EQ(generator.turns - turns, c.lasts > 4000) << "an early end without a turn would be a spin";
    }
}

TEST_F(EventReaderTest, NobodyEndsTheNapsOfHisOwnTurn) {
    world.readable[7] = world.readable[8] = 0;
    Generator other(8, 30);
    Generator generator(7, 1);
    std::vector<long long> naps;
    generator.turn = [&] {
        generator.turn = nullptr;
        for (int i = 0; i < 4; ++i)
            naps.push_back(nap(10));
    };
    poll();
    // The other one has had no turn at all yet, so it is due; the first one is not in its way.
    EXPECT_EQ(naps.size(), 4u);
    EXPECT_EQ(naps[0], 0);
    poll();
    generator.turn = [&] { naps.push_back(nap(10)); };
    world.now += 2000;
    poll();
    EXPECT_EQ(naps.back(), 10000);
}

TEST_F(EventReaderTest, EndsWhenNoLineWillCome) {
    world.inputAt(0, "");
    EXPECT_EQ(getline(), "(end)");

    world.inputClosed = true;
    Generator generator(-1, 0);
    EXPECT_EQ(getline(), "(end)");
    EXPECT_EQ(generator.turns, 1) << "the test comes behind the poll";
    world.inputClosed = false;

    KIT_Interrupt &interrupt = *KITgetInterrupt();
    interrupt.opStart("test", 0, 0, nullptr);
    world.whileWaiting = [&] { interrupt.interrupt(); };
    EXPECT_EQ(getline(), "(end)");
    interrupt.opEnd(-1);
}

TEST_F(EventReaderTest, PlainReadingIsThatOfFgets) {
    OrvaneSetenv("ORVANE_PLAIN_INPUT", "1");
    KIT_EnvControl::varChanged("ORVANE_PLAIN_INPUT");
    Generator generator(-1, 0);
    const std::string full(1023, 'x');
    // The rest of a line comes later; nobody is served meanwhile.
    world.inputAt(3, "par");
    world.inputAt(5, "t\n");
    EXPECT_EQ(getline(), "part\n");
    EXPECT_EQ(generator.turns, 3);
    world.inputAt(0, full + "\n" + full + full + "y\n" + "a\0b\n"s + "last");
    EXPECT_EQ(getline(), full + "\n");
    EXPECT_EQ(getline(), full + full + "y\n");
    EXPECT_EQ(getline(), "a");
    world.inputAt(0, "");
    EXPECT_EQ(getline(), "last");
    EXPECT_EQ(getline(), "(end)");
    OrvaneUnsetenv("ORVANE_PLAIN_INPUT");
    KIT_EnvControl::varChanged("ORVANE_PLAIN_INPUT");
}
