// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

/// The result of scanning a line: its first statement, and where the next one begins.
struct CMD_LineScan {
    /// The first statement, without a comment, with blanks around its operators. A view of the line, or of the
    /// buffer when blanks had to be inserted.
    std::string_view statement;
    /// The offset in the line after the `;` that ends the statement; npos when there is none.
    size_t restOffset = std::string_view::npos;
};

/// Cuts a line at its first `;` or comment and puts blanks around the operators before that. A pure function of the
/// line in one pass, which stops at the `;`. The buffer is working memory.
CMD_LineScan CMDscanLine(std::string_view line, std::string &buffer);

/// The first word of a line, without the white space before it, and the rest. Both are empty when there is no
/// word.
struct CMD_FirstWord {
    std::string_view word;
    std::string_view rest;
};
CMD_FirstWord CMDfirstWord(std::string_view line);

/// Returns the offset of the first byte that is not white space; the length when there is none.
size_t CMDskipWhiteSpace(std::string_view line);
