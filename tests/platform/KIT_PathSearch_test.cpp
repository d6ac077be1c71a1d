// SPDX-License-Identifier: Apache-2.0
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <orvlang/platform/kit/KIT_DSO.h>
#include <orvlang/platform/kit/KIT_PathSearch.h>
#include <orvlang/platform/kit/KIT_String.h>
#include <orvlang/platform/kit/KIT_StringArray.h>
#include <orvlang/platform/osl/OrvaneEnvironment.h>

#include "Program.h"

namespace {

/// A folder with the directories a, b, orp, job and home on the general path.
class PathTest : public testing::Test {
protected:
    PathTest() {
        for (const char *directory :
             { "a/scripts/dir", "b/scripts", "orp/dso", "job", "home/.orvane/dso", "b/dso" })
            std::filesystem::create_directories(root + "/" + directory);
        OrvaneSetenv("ORVANE_PATH", (root + "/a::" + root + "/b/:" + root + "/a").c_str());
        OrvaneSetenv("ORP", (root + "/orp").c_str());
        OrvaneSetenv("JOB", (root + "/orp/").c_str());
        OrvaneSetenv("HOME", (root + "/home").c_str());
        KIT_PathSearch::rehashAll();
    }
    ~PathTest() override { KIT_PathSearch::rehashAll(); }

    /// The directories of the path below the folder, without it; the share folder is left out.
    std::string below(const std::vector<std::string> &directories) const {
        std::string text;
        for (const std::string &directory : directories)
            if (directory.starts_with(root))
                text += directory.substr(root.size()) + " ";
        return text;
    }

    const TemporaryFolder folder;
    const std::string root = folder.path();
};

using DSO = PathTest;

}   // namespace

TEST_F(PathTest, HasItsDirectoriesInOrderAndOnce) {
    KIT_PathSearch *const general = KIT_PathSearch::getInstance(0);
    EXPECT_EQ(below(general->getDirectories()), "/a /b /orp /home/.orvane ");
    EXPECT_EQ(below(general->getTrustedDirectories()), "/a /b /home/.orvane ");
    EXPECT_EQ(below(KIT_PathSearch::getInstance(7)->getDirectories()),
              "/a/scripts /b/scripts /orp/scripts /home/.orvane/scripts ");
    EXPECT_EQ(KIT_PathSearch::getHomeOrvane(), root + "/home/.orvane");

    OrvaneUnsetenv("ORVANE_PATH");
    OrvaneUnsetenv("HOME");
    OrvaneSetenv("JOB", (root + "/job").c_str());
    EXPECT_EQ(below(general->getDirectories()), "/a /b /orp /home/.orvane ") << "until it is told";
    KIT_PathSearch::rehashAll();
    EXPECT_EQ(below(general->getDirectories()), "/orp /job ");
    EXPECT_EQ(below(general->getTrustedDirectories()), "");
}

TEST_F(PathTest, FindsFilesAndDirectories) {
    folder.write("b/scripts/x", "b");
    folder.write("orp/x", "orp");
    folder.write("b/x", "b");
    folder.write("b/dir", "a file here, a directory before");
    std::filesystem::create_directories(root + "/a/dir");
    std::filesystem::create_directories(root + "/orp/dir");
    KIT_PathSearch *const general = KIT_PathSearch::getInstance(0);
    static const struct {
        int path;
        bool directory;
        std::string name, found;
    } theCases[] = {
        { 0, false, "x", "/b/x" },     { 7, false, "x", "/b/scripts/x" },
        { 0, false, "dir", "/b/dir" }, { 0, true, "dir", "/a/dir" },
        { 0, true, "x", "" },          { 0, false, "none", "" },
    };
    for (const auto &c : theCases) {
        KIT_PathSearch *const search = KIT_PathSearch::getInstance(c.path);
        KIT_String found(c.name);
        const int result = c.directory ? search->orvaneFindDirectory(found.c_str(), found)
                                       : search->orvaneFindFile(found.c_str(), found);
        EXPECT_EQ(result, c.found.empty() ? 0 : 1) << c.name;
        EXPECT_EQ(found, c.found.empty() ? c.name : root + c.found) << c.name;
    }
    KIT_String found;
    EXPECT_TRUE(general->orvaneFindFile((root + "/orp/x").c_str(), found));
    EXPECT_EQ(found, root + "/orp/x");

    std::filesystem::create_symlink(root + "/orp/x", root + "/home/.orvane/x");   // the same again
    KIT_StringArray all;
    EXPECT_EQ(general->findAllFiles("x", all), 2);
    EXPECT_EQ(general->findAllDirectories("dir", all), 2);
    const std::vector<std::string> expected = { root + "/b/x", root + "/orp/x", root + "/a/dir",
                                                root + "/orp/dir" };
    EXPECT_EQ(std::vector<std::string>(all.begin(), all.end()), expected);
}

namespace {

std::string theVisits;

void noteVisit() {
    const std::string file = KIT_DSO::getRunningFile();
    theVisits += file.substr(file.rfind('/') + 1) + " ";
}

/// A visitor that has the libraries run once more from within the first of them.
void nestVisit() {
    const std::string outside = KIT_DSO::getRunningFile();
    void (*visitor)() = noteVisit;
    if (theVisits.empty())
        KIT_DSO::runReverse("visitPlugin", &visitor, 0);
    EXPECT_EQ(KIT_DSO::getRunningFile(), outside);
}

}   // namespace

TEST_F(DSO, RunsFromTheLastToTheFirst) {
    for (const char *copy : { "/b/dso/one.so", "/b/dso/two.so", "/b/dso/two.txt", "/home/.orvane/dso/three.so",
                              "/orp/dso/foreign.so" })
        std::filesystem::copy_file(PLUGIN_FILE, root + copy);
    std::filesystem::create_symlink(root + "/b/dso/two.so", root + "/b/dso/again.so");
    folder.write("b/dso/broken.so", "no library");

    void (*visitor)() = noteVisit;
    theVisits.clear();
    testing::internal::CaptureStderr();
    EXPECT_EQ(KIT_DSO::runReverse("visitPlugin", &visitor, 0), 0) << "none is loaded yet";
    EXPECT_EQ(KIT_DSO::runReverse("visitPlugin", &visitor, 1), 3);
    EXPECT_EQ(KIT_DSO::runReverse("missingFunction", &visitor, 1), 0);
    const std::string complaint = testing::internal::GetCapturedStderr();
    EXPECT_EQ(theVisits, "three.so two.so one.so ");
    const std::string start = "Can't load plug-in library " + root + "/b/dso/broken.so: ";
    EXPECT_TRUE(complaint.starts_with(start)) << complaint;
    EXPECT_EQ(complaint.find(start, 1), complaint.npos) << complaint;

    theVisits.clear();
    visitor = nestVisit;
    KIT_DSO::runReverse("visitPlugin", &visitor, 1);
    EXPECT_EQ(theVisits, "three.so two.so one.so ");
    EXPECT_EQ(KIT_DSO::getRunningFile(), nullptr);

    theVisits.clear();
    visitor = [] {
        noteVisit();
        throw std::runtime_error("no more");
    };
    testing::internal::CaptureStderr();
    KIT_DSO::runReverse("visitPlugin", &visitor, 1);
    EXPECT_EQ(theVisits, "three.so two.so one.so ");
    EXPECT_TRUE(testing::internal::GetCapturedStderr().ends_with("one.so: no more\n"));
    EXPECT_EQ(KIT_DSO::getRunningFile(), nullptr);
}
