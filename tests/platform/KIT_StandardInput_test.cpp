// SPDX-License-Identifier: Apache-2.0
#include <string>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <orvlang/platform/edit/KIT_CmdLineReader.h>
#include <orvlang/platform/kit/KIT_StandardInput.h>
#include <orvlang/platform/kit/KIT_WorkBuffer.h>
#include <orvlang/platform/osl/KIT_Interrupt.h>

#include "FakeSystem.h"
#include "Program.h"

using namespace std::string_literals;

namespace {

/// Descriptor 0 as a file or as the end of a pipe, set back at the end.
class StandardInputTest : public testing::Test {
protected:
    StandardInputTest() : saved(dup(0)) {}
    ~StandardInputTest() override {
        dup2(saved, 0);
        close(saved);
        if (writeEnd >= 0)
            close(writeEnd);
        input.discard();
    }

    void readFrom(const std::string &text) {
        folder.write("input", text);
        put(open((folder.path() + "/input").c_str(), O_RDONLY | O_CLOEXEC));
    }
    void readFromPipe() {
        int ends[2];
        ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
        writeEnd = ends[1];
        put(ends[0]);
    }
    void send(const std::string &text) {
        ASSERT_EQ(write(writeEnd, text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }
    std::string line() {
        KIT_WorkBuffer text;
        return KIT_CmdLineReader(nullptr, nullptr).readLine(text) ? std::string(text.view()) : "(end)";
    }

    KIT_StandardInput &input = KIT_StandardInput::inst();
    const TemporaryFolder folder;
    int writeEnd = -1;

private:
    void put(int descriptor) {
        dup2(descriptor, 0);
        close(descriptor);
        input.discard();
    }

    const int saved;
};

}   // namespace

TEST_F(StandardInputTest, GivesLinesHoweverTheyCome) {
    const std::string large(100000, 'l');
    static const struct {
        std::string text;
        std::vector<std::string> lines;
    } theCases[] = {
        { "", {} },
        { "a\nb\n", { "a", "b" } },
        { "\r\n\nlast", { "\r", "", "last" } },
        { "cut\0off\nnext\0"s, { "cut", "next" } },
        { large + "\n\n" + large, { large, "", large } },
    };
    for (const auto &c : theCases)
        for (const int piece : { 1, 3, 1 << 20 }) {
            readFrom(c.text);
            FakeSystem system;
            for (size_t i = 0; i < c.text.size() && piece < 10; i += static_cast<size_t>(piece)) {
                system.planned.push_back(piece);
                if (i % 100 == 0)
                    system.planned.push_back(-EINTR);
            }
            std::vector<std::string> lines;
            for (std::string text; input.readLine(text); lines.push_back(text))
                ;
            EXPECT_EQ(lines, c.lines) << c.text.substr(0, 30) << " in pieces of " << piece;
            EXPECT_TRUE(input.isAtEnd());
        }
}

TEST_F(StandardInputTest, GoesOnBehindAnEnd) {
    readFromPipe();
    send("a\npart");
    EXPECT_EQ(line(), "a");
    EXPECT_TRUE(input.holdsInput());
    FakeSystem system;
    system.planned = { 0 };   // as a terminal does it at Ctrl-D
    EXPECT_EQ(line(), "part");
    EXPECT_EQ(line(), "(end)") << "of the same Ctrl-D";
    send("more\n");
    system.planned = { -EAGAIN };   // another process has set it not to wait
    EXPECT_EQ(line(), "more");
    EXPECT_EQ(system.waits, 1);
    EXPECT_FALSE(input.isAtEnd());
    system.planned = { -EIO };
    EXPECT_EQ(line(), "(end)");
    EXPECT_TRUE(input.isAtEnd());
}

TEST_F(StandardInputTest, StopsAtAnInterruptAndKeepsThePart) {
    readFromPipe();
    send("par");
    FakeSystem system;
    system.planned = { 100, -EINTR };
    system.onInterrupt = [] { KITgetInterrupt()->interrupt(); };
    KITgetInterrupt()->opStart("test", 0, 0, nullptr);
    EXPECT_EQ(line(), "(end)");
    EXPECT_FALSE(input.isAtEnd());
    KITgetInterrupt()->opEnd(-1);
    send("t\n");
    EXPECT_EQ(line(), "part");
}

TEST_F(StandardInputTest, GivesBackWhatNobodyTook) {
    readFrom("one\ntwo\nthree\n");
    EXPECT_EQ(line(), "one");
    ASSERT_TRUE(input.seekBack());
    EXPECT_FALSE(input.holdsInput());
    char taken[4] = "";   // as a child process would
    ASSERT_EQ(read(0, taken, 3), 3);
    EXPECT_STREQ(taken, "two");
    EXPECT_EQ(line(), "");
    EXPECT_EQ(line(), "three");

    readFromPipe();
    send("x\ny\n");
    EXPECT_EQ(line(), "x");
    EXPECT_FALSE(input.seekBack());
    EXPECT_EQ(line(), "y");
}

TEST_F(StandardInputTest, GivesPartsBytesAndConfirmedLines) {
    readFromPipe();
    KIT_WorkBuffer text;
    bool done = false;
    const auto part = [&] {
        text.clear();
        done = false;
        return input.readPart(text, done) ? text.c_str() : "(end)";
    };
    EXPECT_STREQ(part(), "");
    send("on");
    EXPECT_STREQ(part(), "on");
    EXPECT_FALSE(done);
    send("e\ntw\0off"s);
    EXPECT_STREQ(part(), "e");
    EXPECT_TRUE(done);
    EXPECT_STREQ(part(), "tw");
    send("dropped");
    EXPECT_STREQ(part(), "");
    send("too\nabc");
    EXPECT_STREQ(part(), "");
    EXPECT_TRUE(done);

    // A child that is started behind the first byte finds the others.
    char byte = '?';
    EXPECT_TRUE(input.readByte(byte));
    EXPECT_EQ(byte, 'a');
    input.discard();
    send("def");
    EXPECT_TRUE(input.readByte(byte));
    EXPECT_EQ(byte, 'd');
    EXPECT_FALSE(input.holdsInput());

    input.confirm("first\nsecond\n");
    EXPECT_TRUE(input.holdsConfirmed());
    EXPECT_EQ(line(), "first");
    EXPECT_EQ(input.readPiece(100), "second\n");
    EXPECT_FALSE(input.holdsConfirmed());
    send("\n");
    EXPECT_EQ(line(), "ef");
    FakeSystem system;
    system.planned = { 0 };
    send("x");
    EXPECT_STREQ(part(), "(end)");
}
