// SPDX-License-Identifier: Apache-2.0
//
// The guide for script authors: what it shows must come out, and what there is must be in it.
#include "ExpressionTest.h"

#include <orvlang/platform/fml/FML_Library.h>

#include <fstream>
#include <sstream>
#include <vector>

namespace {

using FML_Guide = ExpressionTest;

/// The pieces of a row of a table that stand between backquotes.
std::vector<std::string> codeIn(const std::string &row) {
    std::vector<std::string> pieces;
    std::istringstream stream(row);
    std::string piece;
    for (bool isCode = false; std::getline(stream, piece, '`'); isCode = !isCode)
        if (isCode)
            pieces.push_back(piece);
    return pieces;
}

TEST_F(FML_Guide, ExamplesAndFunctions) {
    std::ifstream guide(ORVLANG_GUIDE);
    ASSERT_TRUE(guide);
    std::string all;
    std::size_t examples = 0;
    std::string heading;
    for (std::string line; std::getline(guide, line);) {
        all += line + '\n';
        if (!line.starts_with("|"))
            heading.clear();
        else if (heading.empty())
            heading = line;
        const std::vector<std::string> code = codeIn(line);
        const bool isFunction = heading.ends_with("| example | result |");
        if (code.size() < 2 || (!isFunction && !heading.starts_with("| expression | result |")))
            continue;
        const std::size_t example = isFunction ? code.size() - 2 : 0;
        EXPECT_EQ(evaluate(code[example]), code[example + 1]) << code[example];
        examples++;
    }
    EXPECT_GT(examples, 90u);
    for (const FML_LibraryRows &rows :
         { theMathFunctions, theTextFunctions, theWordFunctions, theValueFunctions })
        for (const FML_LibraryFunction &row : rows)
            EXPECT_NE(all.find("| `" + std::string(row.usage) + "` |"), std::string::npos) << row.usage;
    for (int number = 1; number < FML_ERROR_COUNT; number++) {
        const std::string row = "| " + std::to_string(number) + " | " + fml_GetErrorText(number) + " |";
        EXPECT_NE(all.find(row), std::string::npos) << row;
    }
}

}   // namespace
