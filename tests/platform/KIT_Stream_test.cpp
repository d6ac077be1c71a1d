// SPDX-License-Identifier: Apache-2.0
#include <string>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <orvlang/platform/kit/KIT_IFStream.h>
#include <orvlang/platform/kit/KIT_OFStream.h>
#include <orvlang/platform/kit/KIT_OStrStream.h>
#include <orvlang/platform/kit/KIT_WorkBuffer.h>
#include <orvlang/platform/kit/VIO_Info.h>
#include <orvlang/platform/kit/VIO_Reader.h>

#include "FakeSystem.h"
#include "Program.h"

using namespace std::string_literals;

TEST(IStream, GivesLines) {
    static const struct {
        std::string text;
        int readType;
        std::vector<std::string> lines;
    } theCases[] = {
        { "", 1, {} },
        { "a", 1, { "a" } },
        { "a\n", 1, { "a" } },
        { "\na\r\n\nb", 1, { "", "a\r", "", "b" } },
        { "a\n\0"s, 1, { "a", "" } },   // the end of a C text is a line, an empty one
        { "a\0b\nc\0"s, 1, { "a", "c" } },
        { "a\0b\nc\0"s, 0, { "a\0b"s, "c\0"s } },
    };
    for (const auto &c : theCases) {
        KIT_IStream copying(c.text.data(), c.text.size(), c.readType);
        KIT_IStream viewing(c.text.data(), c.text.size(), c.readType);
        std::vector<std::string> copied, viewed;
        KIT_WorkBuffer line;
        for (; copying.getLine(line, '\n'); copied.emplace_back(line.view()))
            ;
        EXPECT_TRUE(line.isEmpty()) << c.text;
        for (std::string_view view; viewing.getLine(view, '\n'); viewed.emplace_back(view))
            ;
        EXPECT_EQ(copied, c.lines) << c.text;
        EXPECT_EQ(viewed, c.lines) << c.text;
    }
    KIT_IStream bytes("one:two", 7, 1);
    std::string_view view;
    char buffer[8] = "";
    EXPECT_TRUE(bytes.getLine(view, ':'));
    EXPECT_EQ(bytes.bread(buffer, sizeof buffer), 3u);
    EXPECT_STREQ(buffer, "two");
}

TEST(IFStream, ReadsFilesOfAnySizeAndKind) {
    const TemporaryFolder folder;
    const std::string path = folder.path() + "/f";
    KIT_WorkBuffer line;
    for (const size_t size : { 0, 1, 4095, 4096, 100000 }) {
        folder.write("f", std::string(size, 'x'));
        FakeSystem system;
        system.planned = { 1, -EINTR };
        KIT_IFStream file(path.c_str(), 0);
        EXPECT_TRUE(file.isOpen());
        file.getLine(line, '\n');
        EXPECT_EQ(line.length(), size);
    }
    KIT_IFStream madeUp("/proc/self/status", 0);   // its size is given as 0
    EXPECT_TRUE(madeUp.getLine(line, '\n'));
    EXPECT_FALSE(KIT_IFStream(folder.path().c_str(), 0).isOpen());
}

TEST(OStrStream, KeepsWhatIsWritten) {
    KIT_OStrStream os;
    os << "n=" << 12 << std::ends << "rest";
    EXPECT_STREQ(os.text(), "n=12");
    EXPECT_EQ(os.view(), "n=12\0rest"s);
    os.reset();
    std::string expected;
    for (int i = 0; i < 3000; ++i) {
        os << i << 'c';
        expected += std::to_string(i) + 'c';
    }
    EXPECT_EQ(os.view(), expected);
}

TEST(OFStream, WritesOnceAndSurvivesFaults) {
    const TemporaryFolder folder;
    const std::string path = folder.path() + "/f";
    FakeSystem system;
    {
        KIT_OFStream os(path.c_str(), false);
        ASSERT_TRUE(os.isOpen());
        os << "some" << ' ' << "words " << 7 << '\n';
    }
    EXPECT_EQ(system.calls, 3) << "open, write, close";
    {
        KIT_OFStream os(path.c_str(), true);
        system.planned = { 1, -EINTR, 2, -EINTR };
        os << "appended" << std::flush;
        EXPECT_EQ(folder.read("f"), "some words 7\nappended");
        const std::string large(10000, 'x');
        os << 'a' << large << 'b';
        system.planned = { 3000, 1 };
        os.close();
        EXPECT_TRUE(os.good());
        EXPECT_EQ(folder.read("f"), "some words 7\nappendeda" + large + "b");
    }
}

TEST(OFStream, TellsFailures) {
    const TemporaryFolder folder;
    const std::string path = folder.path() + "/f";
    {
        FakeSystem system;
        KIT_OFStream os(path.c_str(), false);
        os << "lost";
        system.planned = { -ENOSPC };
        os.flush();
        EXPECT_TRUE(os.bad());
        os.clear();
        os << std::string(5000, 'x');
        EXPECT_TRUE(os.good()) << "what was lost does not come again";
        system.closeError = EIO;
        os.close();
        EXPECT_TRUE(os.bad());
    }
    for (const std::string &bad : { folder.path(), folder.path() + "/no/f" })
        EXPECT_TRUE(KIT_OFStream(bad.c_str(), false).fail()) << bad;
    if (access("/dev/full", W_OK) == 0) {
        KIT_OFStream full("/dev/full", false);
        full << "x" << std::endl;
        EXPECT_TRUE(full.bad());
    }
}

TEST(VIO, ReaderTellsLengthAndReads) {
    const TemporaryFolder folder;
    folder.write("script", "echo a\n");
    folder.write("empty", "");
    ASSERT_EQ(mkfifo((folder.path() + "/pipe").c_str(), 0600), 0);
    static const struct {
        const char *name;
        long long length;
        bool hasStream, isDirectory;
    } theCases[] = {
        { "/script", 7, true, false }, { "/empty", 0, true, false }, { "/pipe", 0, true, false },
        { "/none", 0, false, false },  { "", 0, false, true },
    };
    for (const auto &c : theCases) {
        const std::string path = folder.path() + c.name;
        VIO_Reader reader(path.c_str());
        EXPECT_EQ(reader.getLength(), c.length) << c.name;
        EXPECT_EQ(reader.getStream() != nullptr, c.hasStream) << c.name;
        EXPECT_EQ(VIO_Info(path.c_str()).getIsDirectory(), c.isDirectory) << c.name;
        EXPECT_EQ(VIO_Info(path.c_str()).hasAccess(1), c.hasStream || c.isDirectory) << c.name;
    }
    FakeSystem system;
    char text[8] = "";
    {
        VIO_Reader reader((folder.path() + "/script").c_str());
        EXPECT_EQ(reader.getStream()->read(text, 7), 7u);
    }
    EXPECT_STREQ(text, "echo a\n");
    EXPECT_EQ(system.calls, 4) << "open, status, read, close";
    VIO_Reader failing((folder.path() + "/script").c_str());
    system.planned = { -EINTR, 2, -EIO };
    EXPECT_EQ(failing.getStream()->read(text, 7), 2u);
    EXPECT_FALSE(failing.getStream()->isGood());
}
