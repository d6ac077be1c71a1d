// SPDX-License-Identifier: Apache-2.0
// The help texts: each command and each of its options is described, and the examples write what they show.
//
// An entry shows an example as an indented block after theScript or theTypedLines, and its output as blocks after the
// other lines below.
#include "Terminal.h"

#include <algorithm>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>

#include <gtest/gtest.h>

#include <orvlang/engine/CMD_Manager.h>
#include <orvlang/platform/kit/KIT_StringArray.h>

namespace {

using Lines = std::vector<std::string>;

const char theScript[] = "    Example:";
const char theTypedLines[] = "    At the prompt:";
const char theOutput[] = "    It writes:";
const char theRoughOutput[] = "    It writes something like:";   // any number stands for any other
const char theDialogue[] = "    It writes, with what is typed in brackets:";
const char theErrors[] = "    On the error stream it writes:";

Lines linesOf(std::istream &&stream) {
    Lines lines;
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

std::map<std::string, Lines> entriesOf(const char *file) {
    std::map<std::string, Lines> found;
    Lines *entry = nullptr;
    for (const std::string &line : linesOf(std::ifstream(file))) {
        if (line.starts_with('#'))
            entry = nullptr;
        else if (!line.empty() && line[0] != ' ')
            entry = &found[line];
        else if (entry)
            entry->push_back(line);
    }
    return found;
}

const std::map<std::string, Lines> &entries() {
    static const std::map<std::string, Lines> theEntries = entriesOf(ORVLANG_TREE "/help/command.help");
    return theEntries;
}

/// Returns the block of lines that are indented more, after the line of that text.
Lines blockAfter(const Lines &entry, const std::string &title) {
    Lines block;
    auto line = std::find(entry.begin(), entry.end(), title);
    for (; line != entry.end() && ++line != entry.end() && (line->empty() || line->starts_with("        "));)
        block.push_back(line->empty() ? "" : line->substr(8));
    while (!block.empty() && block.back().empty())
        block.pop_back();
    if (!block.empty() && block.front().empty())
        block.erase(block.begin());
    return block;
}

bool has(const Lines &entry, const std::string &line) {
    return std::find(entry.begin(), entry.end(), line) != entry.end();
}

std::string join(const Lines &lines) {
    std::string text;
    for (const std::string &line : lines)
        text += line + '\n';
    return text;
}

/// Returns the lines without blanks at their ends; with `isRough` all numbers become equal.
Lines comparable(const std::string &text, bool isRough) {
    std::string plain = std::regex_replace(text, std::regex("[ \r]+\n"), "\n");
    if (isRough)
        plain = std::regex_replace(plain, std::regex("[0-9]+([.][0-9]+)?(e-[0-9]+)?"), "1");
    return linesOf(std::istringstream(plain));
}

/// Removes the texts in brackets at the ends of lines from a dialogue and returns them; the terminal echoes them.
std::string removeTyped(std::string &dialogue) {
    std::string typed;
    const std::regex brackets("\\[(.*)\\]\n");
    for (std::smatch match; std::regex_search(dialogue, match, brackets);) {
        typed += match.str(1) + '\n';
        dialogue.erase(static_cast<size_t>(match.position()), static_cast<size_t>(match.length()));
    }
    return typed;
}

/// Types the lines at a terminal, each at a prompt of its own, and returns their output.
std::string typeLines(const Lines &lines, const TemporaryFolder &folder) {
    const std::string prompt = "orvlang -> ";
    Terminal terminal({ { ORVLANG_PROGRAM }, folder.path(), "", {} });
    terminal.waitFor(prompt);
    std::string written;
    for (const std::string &line : lines) {
        terminal.type(line + "\n");
        terminal.waitFor(line + "\r\n");
        written += terminal.waitFor(prompt);
    }
    return written;
}

Outcome runScript(const Lines &script, const std::string &input, const TemporaryFolder &folder) {
    folder.write("example.cmd", join(script));
    return Program{ { ORVLANG_PROGRAM, "example.cmd" }, folder.path(), input, {} }.run();
}

void runExample(const Lines &entry) {
    const TemporaryFolder folder;
    const bool isRough = has(entry, theRoughOutput);
    std::string expected = join(blockAfter(entry, isRough ? theRoughOutput : theOutput));
    std::string dialogue = join(blockAfter(entry, theDialogue));
    const std::string typed = removeTyped(dialogue);
    Outcome outcome;
    if (has(entry, theTypedLines))
        outcome.out = typeLines(blockAfter(entry, theTypedLines), folder);
    else
        outcome = runScript(blockAfter(entry, theScript), typed, folder);
    compareLines("output", comparable(dialogue + expected, isRough), comparable(outcome.out, isRough));
    compareLines("errors", comparable(join(blockAfter(entry, theErrors)), false),
                 comparable(outcome.err, false));
}

/// Returns the options that the text describes, in lines such as "    -x      what it does".
std::set<char> describedOptions(const Lines &entry) {
    std::set<char> options;
    for (const std::string &line : entry) {
        if (!line.starts_with("    -"))
            continue;
        std::istringstream words(line);
        for (std::string word; words >> word && word[0] == '-' && word.size() <= 3;)
            options.insert(word[1]);
    }
    return options;
}

class HelpTexts : public testing::Test {
protected:
    HelpTexts() {
        KIT_StringArray all;
        manager.matchCommands("", all);
        for (const char *name : all)
            names.emplace_back(name);
    }
    std::string help(const std::string &line) {
        std::ostringstream out;
        manager.execute(line.c_str(), 0, &out, &out, 1, true);
        return out.str();
    }

    CMD_Manager manager{ "orvlang" };
    Lines names;
};

TEST_F(HelpTexts, DescribeEachCommandAndItsOptions) {
    EXPECT_EQ(names.size(), 44u);
    for (const std::string &name : names) {
        SCOPED_TRACE(name);
        const auto entry = entries().find(name);
        if (entry == entries().end()) {
            ADD_FAILURE() << "no entry";
            continue;
        }
        const Lines &lines = entry->second;
        ASSERT_FALSE(lines.empty());
        EXPECT_TRUE(lines[0] == "    " + name || lines[0].starts_with("    " + name + " ")) << lines[0];
        std::set<char> options;
        for (const char *option = manager.getOptions(name.c_str()); *option; ++option)
            if (*option != ':')
                options.insert(*option);
        EXPECT_EQ(describedOptions(lines), options);
        EXPECT_TRUE(has(lines, theScript) || has(lines, theTypedLines));
        for (const std::string &line : lines)
            EXPECT_LT(line.size(), 80u) << line;
        // What is shown is what stands in the file.
        EXPECT_EQ(help("help " + name), name + "\n" + join(lines));
    }
}

TEST_F(HelpTexts, NameOnlyWhatThereIs) {
    const std::string start = "    See also: ";
    for (const auto &[name, lines] : entries()) {
        EXPECT_TRUE(has(names, name)) << name;
        int references = 0;
        for (const std::string &line : lines) {
            if (!line.starts_with(start))
                continue;
            const std::string others = std::regex_replace(line.substr(start.size()), std::regex(", "), "\n");
            for (const std::string &other : linesOf(std::istringstream(others))) {
                ++references;
                EXPECT_TRUE(has(names, other) && other != name) << name << ": " << other;
            }
        }
        EXPECT_GT(references, 0) << name;
    }
}

TEST_F(HelpTexts, TopicsNameSectionsThatExist) {
    for (const auto &[topic, lines] : entriesOf(ORVLANG_TREE "/help/topic.help")) {
        std::smatch parts;
        ASSERT_TRUE(std::regex_match(lines.at(0), parts, std::regex("    See (.*[.]md)(, \"(.*)\")?")))
            << topic;
        const Lines page = linesOf(std::ifstream(ORVLANG_TREE "/" + parts.str(1)));
        EXPECT_TRUE(has(page, "## " + parts.str(3)) || (!parts[3].matched && !page.empty())) << topic;
        EXPECT_EQ(help("help " + topic), "No installed command matches " + topic + "\n" + join(lines));
    }
}

TEST_F(HelpTexts, ExamplesWriteWhatTheyShow) {
    for (const auto &[name, lines] : entries()) {
        SCOPED_TRACE(name);
        runExample(lines);
    }
}

TEST_F(HelpTexts, AreShownForWrongUses) {
    static const struct {
        const char *line, *command;
    } theCases[] = { { "read", "read" },        { "ucd a b", "ucd" },
                     { "atjob -p 5", "atjob" }, { "chblockbegin x", "chblockbegin" },
                     { "pyth", "python" },      { "python -c", "python" } };
    for (const auto &c : theCases) {
        const std::string name = c.command;
        EXPECT_EQ(help(c.line), name + ":  Invalid usage\n" + help("help " + name)) << c.line;
    }
}

// One without an end, which anybody can put into the folder of a job, must not hold the program up.
TEST_F(HelpTexts, ComeFromPlainFilesOnly) {
    for (const char *file : { "mkfifo", "ln -s /dev/zero", "mkdir" }) {
        const TemporaryFolder folder;
        const std::string make = "mkdir help; " + std::string(file) + " help/command.help";
        const Program program = { { ORVLANG_PROGRAM, "-c", "unix '" + make + "'; help upwd; help -k jobs" },
                                  folder.path(),
                                  "",
                                  { "JOB=" + folder.path() } };
        EXPECT_EQ(program.run().out, "upwd\n" + join(entries().at("upwd")) + help("help -k jobs")) << file;
    }
}

// 43 names, since coredump is left out: six columns of which the first has one name more.
TEST_F(HelpTexts, ListTheCommandsInColumns) {
    EXPECT_EQ(help("help"), "alias        echo         for          memory       read         uls          \n"
                            "atjob        else         foreach      message      set          umkdir       \n"
                            "break        end          help         openport     setenv       undoctrl     \n"
                            "chblockbegin endif        history      perfmon      shift        unix         \n"
                            "chblockend   exhelp       if           prompt       source       upwd         \n"
                            "closeport    exit         job          python       time         urm          \n"
                            "cmdread      filechooser  listchooser  quit         ucd          while        \n"
                            "continue     \n");
    EXPECT_EQ(help("help core").substr(0, 9), "coredump\n");
}

}   // namespace
