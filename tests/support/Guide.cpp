// SPDX-License-Identifier: Apache-2.0
#include "Guide.h"

#include <fstream>
#include <sstream>

#include <gtest/gtest.h>

#include "Program.h"

namespace {

std::vector<std::string> linesOf(const std::string &text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line.starts_with('\r') ? line.substr(1) : line);
    // The messages about commands end in a newline and a carriage return.
    if (!lines.empty() && lines.back().empty() && text.ends_with('\r'))
        lines.pop_back();
    return lines;
}

}   // namespace

std::vector<Fence> fencesOf(const std::filesystem::path &document) {
    std::vector<Fence> fences;
    std::ifstream file(document);
    bool isInside = false;
    int number = 0;
    for (std::string line; std::getline(file, line);) {
        ++number;
        if (!line.starts_with("```")) {
            if (isInside)
                fences.back().text += line + "\n";
            continue;
        }
        isInside = !isInside;
        if (isInside) {
            fences.push_back({ "", "", "", number });
            std::istringstream(line.substr(3)) >> fences.back().kind >> fences.back().name;
        }
    }
    return fences;
}

void compareLines(const char *what, const std::string &expected, const std::string &actual) {
    compareLines(what, linesOf(expected), linesOf(actual));
}
