// SPDX-License-Identifier: Apache-2.0
// Runs each script of this folder with the console program, in an empty folder of its own, and compares what it wrote
// with what its comments expect. README.md tells how a script says that.
#include "Program.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include <gtest/gtest.h>

namespace {

using Lines = std::vector<std::string>;

struct Scenario {
    std::string name;   // the script's, as the program is given it
    std::string text;
    Lines out, err;
    std::map<std::string, Lines> files;           // before the run
    std::map<std::string, Lines> expectedFiles;   // behind it
    std::string input;
    Lines options, arguments, environment;
    Lines modes;
    int status = 0;
};

Lines splitWords(const std::string &text) {
    std::istringstream stream(text);
    return Lines(std::istream_iterator<std::string>(stream), {});
}

std::string joinLines(const Lines &lines) {
    std::string text;
    for (const std::string &line : lines)
        text += line + "\n";
    return text;
}

/// The word behind `prefix` in a directive such as `expect file NAME`; empty if it is not one.
std::string nameBehind(const std::string &key, const std::string &prefix) {
    return key.starts_with(prefix) ? key.substr(prefix.size()) : "";
}

/// Takes `key: value` of one comment in; false if the key is none of ours, as in any other comment.
bool takeDirective(Scenario &scenario, const std::string &key, const std::string &value) {
    if (key == "expect")
        scenario.out.push_back(value);
    else if (key == "expect err")
        scenario.err.push_back(value);
    else if (const std::string name = nameBehind(key, "expect file "); !name.empty())
        scenario.expectedFiles[name].push_back(value);
    else if (const std::string given = nameBehind(key, "file "); !given.empty())
        scenario.files[given].push_back(value);
    else if (key == "stdin")
        scenario.input += value + "\n";
    else if (key == "status")
        scenario.status = std::stoi(value);
    else if (key == "options")
        scenario.options = splitWords(value);
    else if (key == "args")
        scenario.arguments = splitWords(value);
    else if (key == "env")
        scenario.environment.push_back(value);
    else if (key == "run")
        scenario.modes = splitWords(value);
    else
        return false;
    return true;
}

/// The directive of a line: the comment that the line is, or an expectation behind a statement.
std::string commentOf(const std::string &line) {
    const size_t start = line.find_first_not_of(" \t");
    if (start != std::string::npos && line.compare(start, 2, "# ") == 0)
        return line.substr(start + 2);
    const size_t behind = line.find(" # expect");
    return behind == std::string::npos ? "" : line.substr(behind + 3);
}

Scenario readScenario(const std::filesystem::path &path) {
    Scenario scenario;
    scenario.name = path.filename();
    std::ifstream file(path);
    int number = 0;
    for (std::string line; std::getline(file, line);) {
        ++number;
        scenario.text += line + "\n";
        const std::string comment = commentOf(line);
        const size_t colon = comment.find(':');
        if (colon == std::string::npos)
            continue;
        const size_t start = comment.compare(colon, 2, ": ") == 0 ? colon + 2 : colon + 1;
        std::string value = comment.substr(start);
        if (const size_t place = value.find("%n"); place != std::string::npos)
            value.replace(place, 2, std::to_string(number));
        const bool known = takeDirective(scenario, comment.substr(0, colon), value);
        if (!known && comment.starts_with("expect "))
            ADD_FAILURE() << path << ": no such expectation: " << comment;
    }
    if (scenario.modes.empty())
        scenario.modes = { "script" };
    return scenario;
}

/// What stands for what cannot be known when the script is written: %s its path as given, %d the folder.
std::string fillIn(const std::string &text, const std::string &script, const std::string &folder) {
    std::string result;
    for (size_t i = 0; i < text.size(); ++i) {
        const char next = text[i] == '%' && i + 1 < text.size() ? text[i + 1] : '\0';
        if (next == 's' || next == 'd')
            result += next == 's' ? script : folder;
        else if (next == '%')
            result += '%';
        else
            result += text[i];
        if (next == 's' || next == 'd' || next == '%')
            ++i;
    }
    return result;
}

Lines fillIn(Lines lines, const std::string &script, const std::string &folder) {
    for (std::string &line : lines)
        line = fillIn(line, script, folder);
    return lines;
}

std::string visible(char c) {
    static const char digits[] = "0123456789abcdef";
    const unsigned char byte = static_cast<unsigned char>(c);
    if (byte >= ' ' || c == '\t')
        return std::string(1, c);
    return { '<', digits[byte >> 4], digits[byte & 15], '>' };
}

/// Output as lines that a script can expect: a line that ends in newline and carriage return shows a <CR>, a last line
/// without an end says so, other control characters show their number, and so does a blank at the end of a line, which
/// an editor might take away.
Lines visibleLines(const std::string &text) {
    Lines lines;
    std::string line;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\n') {
            line += visible(text[i]);
            continue;
        }
        if (line.ends_with(' '))
            line.replace(line.size() - 1, 1, "<20>");
        if (i + 1 < text.size() && text[i + 1] == '\r')
            line += "<CR>", ++i;
        lines.push_back(line);
        line.clear();
    }
    if (!line.empty())
        lines.push_back(line + "<no newline>");
    return lines;
}

void compare(const char *what, const Lines &expected, const std::string &actual) {
    compareLines(what, expected, visibleLines(actual));
}

class ScenarioTest : public testing::Test {
public:
    ScenarioTest(const Scenario &scenario, const std::string &mode) : scenario(scenario), mode(mode) {}

    void TestBody() override {
        const TemporaryFolder folder;
        const std::string &place = folder.path();
        for (const auto &[name, lines] : scenario.files)
            folder.write(name, joinLines(fillIn(lines, scenario.name, place)));

        Program program = { { ORVLANG_PROGRAM },
                            place,
                            fillIn(scenario.input, scenario.name, place),
                            fillIn(scenario.environment, scenario.name, place) };
        Lines &words = program.words;
        words.insert(words.end(), scenario.options.begin(), scenario.options.end());
        if (mode == "script") {
            folder.write(scenario.name, scenario.text);
            words.push_back(scenario.name);
            const Lines arguments = fillIn(scenario.arguments, scenario.name, place);
            words.insert(words.end(), arguments.begin(), arguments.end());
        } else if (mode == "-c") {
            words.insert(words.end(), { "-c", scenario.text });
        } else {
            program.input = scenario.text + program.input;
        }

        const Outcome outcome = program.run();
        compare("standard output", fillIn(scenario.out, scenario.name, place), outcome.out);
        compare("standard error", fillIn(scenario.err, scenario.name, place), outcome.err);
        EXPECT_EQ(outcome.status, scenario.status) << "exit status";
        for (const auto &[name, lines] : scenario.expectedFiles)
            compare(name.c_str(), fillIn(lines, scenario.name, place), folder.read(name));
    }

private:
    const Scenario &scenario;
    const std::string mode;
};

}   // namespace

int main(int argc, char **argv) {
    testing::InitGoogleTest(&argc, argv);
    std::vector<std::filesystem::path> paths;
    for (const auto &entry : std::filesystem::directory_iterator(ORVLANG_SCENARIOS))
        if (entry.path().extension() == ".cmd")
            paths.push_back(entry.path());
    std::sort(paths.begin(), paths.end());

    static std::vector<Scenario> scenarios;
    for (const std::filesystem::path &path : paths)
        scenarios.push_back(readScenario(path));
    for (const Scenario &scenario : scenarios)
        for (const std::string &mode : scenario.modes)
            testing::RegisterTest("Scenario", (scenario.name + (mode == "script" ? "" : " " + mode)).c_str(),
                                  nullptr, nullptr, __FILE__, __LINE__, [&scenario, mode]() -> testing::Test * {
                                      return new ScenarioTest(scenario, mode);
                                  });
    return RUN_ALL_TESTS();
}
