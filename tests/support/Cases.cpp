// SPDX-License-Identifier: Apache-2.0
#include "Cases.h"

#include <fstream>
#include <regex>

#include <gtest/gtest.h>

namespace {

std::string withBytes(std::string field) {
    static const std::regex number("<([0-9a-f]{2})>");
    for (std::smatch match; std::regex_search(field, match, number);)
        field.replace(static_cast<size_t>(match.position()), 4, 1,
                      static_cast<char>(std::stoi(match.str(1), nullptr, 16)));
    return field;
}

}   // namespace

std::vector<std::vector<std::string>> casesOf(const std::string &path) {
    static const std::regex separator(" =>(?: |$)");
    std::vector<std::vector<std::string>> rows;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        if (line.empty() || line.starts_with("# "))
            continue;
        std::vector<std::string> &row = rows.emplace_back();
        for (std::smatch match; std::regex_search(line, match, separator); line = match.suffix())
            row.push_back(withBytes(match.prefix()));
        row.push_back(withBytes(line));
    }
    EXPECT_FALSE(rows.empty()) << path;
    return rows;
}
