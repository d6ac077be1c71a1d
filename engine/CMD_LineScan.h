// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

/// What the scan of a line finds: its first statement, and where the next one begins.
struct CMD_LineScan {
    /// The first statement, without a comment, its operators set apart by blanks. Lies in the line, or in the
    /// buffer when blanks had to be put in.
    std::string_view statement;
    /// The offset in the line behind the `;` that ends the statement; npos when there is none.
    size_t restOffset = std::string_view::npos;
};

/// Cuts a line at its first `;` or comment and sets the operators in front of that apart. A pure function of the
/// line: one pass, and nothing behind the `;` is looked at. The buffer is room to work in.
CMD_LineScan CMDscanLine(std::string_view line, std::string &buffer);

/// The first word of a line and what follows it; white space in front is dropped. Both are empty when there is
/// no word.
struct CMD_FirstWord {
    std::string_view word;
    std::string_view rest;
};
CMD_FirstWord CMDfirstWord(std::string_view line);

/// The offset of the first byte that is no white space; the length when there is none.
size_t CMDskipWhiteSpace(std::string_view line);
