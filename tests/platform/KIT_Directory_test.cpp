// SPDX-License-Identifier: Apache-2.0
#include <filesystem>
#include <string>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <orvlang/platform/kit/KIT_Directory.h>
#include <orvlang/platform/kit/KIT_File.h>
#include <orvlang/platform/kit/KIT_StringArray.h>
#include <orvlang/platform/osl/OrvaneDirectory.h>

#include "Program.h"

namespace {

class DirectoryTest : public testing::Test {
protected:
    const WorkingFolder folder;
    const std::string &root = folder.path();
};

std::string list(const KIT_Directory &directory, const char *pattern) {
    KIT_StringArray names;
    names.append("+");
    const int count = directory.getFiles(pattern, names);
    EXPECT_EQ(names.entries(), 1 + count) << "they are appended";
    names.sort(true, true);
    std::string text;
    for (const char *name : names)
        text += std::string(name) + " ";
    return text;
}

int modeOf(const std::string &path) {
    struct stat status = {};
    stat(path.c_str(), &status);
    return status.st_mode & 07777;
}

}   // namespace

TEST_F(DirectoryTest, NamesMatchAsInAShell) {
    for (const char *name : { "a1", "a10", "a2", "b", ".p", "[x]", "a b" })
        folder.write(name, "");
    static const struct {
        const char *pattern;
        std::string hidden, open;   // with and without hiding names with a point in front
    } theCases[] = {
        { nullptr, "+ .p [x] a b a1 a2 a10 b ", "+ .p [x] a b a1 a2 a10 b " },
        { "*", "+ [x] a b a1 a2 a10 b ", "+ .p [x] a b a1 a2 a10 b " },
        { "a?", "+ a1 a2 ", "+ a1 a2 " },
        { "?p", "+ ", "+ .p " },
        { ".*", "+ .p ", "+ .p " },
        { "\\[x]", "+ [x] ", "+ [x] " },
        { "[!a]", "+ b ", "+ b " },
        { "", "+ ", "+ " },
        { "../*", "+ ", "+ " },
    };
    for (const auto &c : theCases) {
        EXPECT_EQ(list(KIT_Directory("", nullptr, 1), c.pattern), c.hidden) << (c.pattern ? c.pattern : "null");
        EXPECT_EQ(list(KIT_Directory(root.c_str(), nullptr, 0), c.pattern), c.open);
    }
    std::filesystem::create_directory("sub");
    folder.write("sub/x", "");
    EXPECT_EQ(list(KIT_Directory("sub", root.c_str(), 1), "*"), "+ x ");
    EXPECT_EQ(list(KIT_Directory("sub", "/nosuch", 1), "*"), "+ ");
    EXPECT_EQ(list(KIT_Directory("b", nullptr, 1), "*"), "+ ") << "a file";
}

TEST_F(DirectoryTest, PathsBecomeAbsolute) {
    EXPECT_EQ(KITmakeAbsoluteFilePath("x/../y", nullptr), root + "/x/../y");
    EXPECT_EQ(KITmakeAbsoluteFilePath("x", "/base"), "/base/x");
    EXPECT_EQ(KITmakeAbsoluteFilePath("x", "/"), "/x");
    EXPECT_EQ(KITmakeAbsoluteFilePath("/x", "/base"), "/x");
    EXPECT_EQ(KITmakeAbsoluteFilePath(nullptr, "/base"), "/base");
    // Never the root, when the current directory is gone.
    std::filesystem::create_directory("gone");
    std::filesystem::current_path("gone");
    std::filesystem::remove(root + "/gone");
    EXPECT_EQ(KITmakeAbsoluteFilePath("x", nullptr), "./x");

    for (const char *path : { "/", "//", "/.", "/../", "/.././/." })
        EXPECT_TRUE(KITisRootPath(path)) << path;
    for (const char *path : { "", ".", "/x", "/x/..", "/...", "//x" })
        EXPECT_FALSE(KITisRootPath(path)) << path;
    EXPECT_FALSE(KITisRootPath(nullptr));
}

TEST_F(DirectoryTest, MissingParentsAreMade) {
    const mode_t mask = umask(022);
    EXPECT_TRUE(OrvaneMakeDirectory((root + "/a//b/./c/").c_str(), 0775));
    EXPECT_EQ(modeOf("a/b/c"), 0755);
    EXPECT_TRUE(OrvaneMakeDirectory("a/b/c", 0775)) << "it is there";
    EXPECT_TRUE(OrvaneMakeDirectory("p/q", 0500));
    EXPECT_EQ(modeOf("p"), 0700) << "or nothing could be made in it";
    EXPECT_EQ(modeOf("p/q"), 0500);
    folder.write("file", "");
    for (const char *path : { "file", "file/x", "" })
        EXPECT_FALSE(OrvaneMakeDirectory(path, 0775)) << path;
    umask(mask);
}
