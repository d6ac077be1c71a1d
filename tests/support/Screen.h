// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// What stands on a terminal after all that was written to it: as much of an xterm as line editing needs.
class Screen {
public:
    Screen(int columnCount, int rowCount) { resize(columnCount, rowCount); }

    void write(std::string_view bytes);
    /// The upper left part stays; nothing is wrapped anew.
    void resize(int columnCount, int rowCount);

    /// The last rows down to that of the cursor, without blanks at their ends, each with a newline behind it but the last
    /// one. In that one a `|` stands where the cursor is.
    std::string lastRows(int count) const;
    /// What the terminal answers to what was written to it, once.
    std::string takeAnswer() { return std::exchange(answer, {}); }

private:
    using Row = std::vector<std::string>;   // of places; the right half of a wide one is empty

    size_t writeSequence(std::string_view text);
    void control(char final, int number);
    void put(std::string_view character, int columns);
    static void breakWide(Row &line, size_t place);
    void goDown();
    std::string textOf(const Row &row, int markAt) const;

    int columnCount = 0;
    std::vector<Row> rows;
    int row = 0, column = 0;
    bool wraps = false;       // the next character goes to the next row
    std::string unfinished;   // character or sequence
    std::string answer;
};
