// SPDX-License-Identifier: Apache-2.0
// What is shown to script authors runs as it is shown: the examples of the language guide and the example scripts.
#include "Guide.h"
#include "Program.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

#include <gtest/gtest.h>

namespace {

std::string readFile(const std::filesystem::path &path) {
    const std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

// A block `orv` is a script that runs; the blocks `input`, `output` and `errors` behind it say with what and what it
// writes. A block `orv NAME` or `python NAME` is a file that lies beside those that follow.
void runExamples(const std::string &guide, const std::vector<std::string> &options, int fewest) {
    const std::vector<Fence> fences = fencesOf(std::filesystem::path(ORVLANG_TREE) / guide);
    const TemporaryFolder folder;
    std::vector<std::string> words = { ORVLANG_PROGRAM };
    words.insert(words.end(), options.begin(), options.end());
    words.push_back("example.cmd");
    int examples = 0;
    for (size_t i = 0; i < fences.size(); ++i) {
        const Fence &fence = fences[i];
        if (fence.kind != "orv" && fence.kind != "python")
            continue;
        folder.write(fence.name.empty() ? "example.cmd" : fence.name, fence.text);
        if (!fence.name.empty())
            continue;
        SCOPED_TRACE(guide + ":" + std::to_string(fence.line));
        std::string input, output, errors;
        for (size_t k = i + 1; k < fences.size() && fences[k].kind != "orv" && fences[k].kind != "python";
             ++k) {
            const std::string &kind = fences[k].kind;
            ASSERT_TRUE(kind == "input" || kind == "output" || kind == "errors") << fences[k].line;
            (kind == "input" ? input : kind == "output" ? output : errors) = fences[k].text;
        }
        const Outcome outcome = Program{ words, folder.path(), input, { "PYTHONPATH=" + folder.path() } }.run();
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
