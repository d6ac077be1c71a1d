// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>
#include <string>
#include <vector>

/// One fenced block of a document.
struct Fence {
    std::string kind;   // the first word behind the fence
    std::string name;   // the second one
    std::string text;
    int line;
};

std::vector<Fence> fencesOf(const std::filesystem::path &document);

/// Fails the test with the differing lines when the texts do not have the same ones.
void compareLines(const char *what, const std::string &expected, const std::string &actual);
