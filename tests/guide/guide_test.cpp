// SPDX-License-Identifier: Apache-2.0
// What is shown to authors of scripts and hosts runs as it is shown: the examples of the pages and the example scripts.
#include "Guide.h"
#include "Program.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

#include <gtest/gtest.h>

namespace {

/// The text of a file, empty when there is none.
std::string readFile(const std::filesystem::path &path) {
    return std::filesystem::exists(path) ? TemporaryFolder::readFile(path) : "";
}

// A block `orv` is a script that runs, and a block `cpp NAME.cpp` a host, which is built as NAME. The blocks `input`,
// `output` and `errors` after it are what it reads and writes. Any other block with a name is a file beside those that
// follow.
void runExamples(const std::string &guide, const std::vector<std::string> &options, int fewest) {
    const std::vector<Fence> fences = fencesOf(std::filesystem::path(ORVLANG_TREE) / guide);
    const TemporaryFolder folder;
    std::vector<std::string> script = { ORVLANG_PROGRAM };
    script.insert(script.end(), options.begin(), options.end());
    script.push_back("example.cmd");
    int examples = 0;
    for (size_t i = 0; i < fences.size(); ++i) {
        const Fence &fence = fences[i];
        const bool isHost = fence.kind == "cpp" && !fence.name.ends_with("_plugin.cpp");
        folder.write(fence.name.empty() ? "example.cmd" : fence.name, fence.text);
        if (!isHost && (fence.kind != "orv" || !fence.name.empty()))
            continue;
        SCOPED_TRACE(guide + ":" + std::to_string(fence.line));
        std::string input, output, errors;
        for (size_t k = i + 1; k < fences.size() && fences[k].name.empty() && fences[k].kind != "orv"; ++k) {
            const std::string &kind = fences[k].kind;
            ASSERT_TRUE(kind == "input" || kind == "output" || kind == "errors") << fences[k].line;
            (kind == "input" ? input : kind == "output" ? output : errors) = fences[k].text;
        }
        const std::string host = ORVLANG_HOSTS "/" + fence.name.substr(0, fence.name.find('.'));
        const std::string path = isHost ? "ORVANE_PATH=" ORVLANG_HOSTS : "PYTHONPATH=" + folder.path();
        const Outcome outcome =
            Program{ isHost ? std::vector{ host } : script, folder.path(), input, { path } }.run();
        compareLines("output", output, outcome.out);
        compareLines("errors", errors, outcome.err);
        ++examples;
    }
    EXPECT_GE(examples, fewest);
}

TEST(LanguageGuide, ExamplesWriteWhatTheyShow) {
    runExamples("docs/language.md", {}, 20);
}

TEST(ExpressionGuide, ExamplesWriteWhatTheyShow) {
    runExamples("docs/expressions.md", {}, 3);
}

TEST(HostingGuide, ExamplesWriteWhatTheyShow) {
    runExamples("docs/hosting.md", {}, 5);
}

TEST(PythonGuide, ExamplesWriteWhatTheyShow) {
    runExamples("docs/python.md", { "-P", "lamp=c:" }, 4);
}

// Beside the script lie what it writes (.out) and, if it reads, what it is answered (.in).
TEST(ExampleScripts, WriteWhatLiesBesideThem) {
    int scripts = 0;
    for (const auto &entry :
         std::filesystem::directory_iterator(std::filesystem::path(ORVLANG_TREE) / "examples/scripts")) {
        std::filesystem::path path = entry.path();
        if (path.extension() != ".cmd")
            continue;
        SCOPED_TRACE(path.filename());
        const TemporaryFolder folder;
        folder.write(path.filename(), readFile(path));
        const std::string input = readFile(path.replace_extension(".in"));
        const Outcome outcome =
            Program{ { ORVLANG_PROGRAM, entry.path().filename() }, folder.path(), input, {} }.run();
        compareLines("output", readFile(path.replace_extension(".out")), outcome.out);
        compareLines("errors", "", outcome.err);
        EXPECT_EQ(outcome.status, 0);
        ++scripts;
    }
    EXPECT_GT(scripts, 0);
}

}   // namespace
