// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string_view>

/// The position on the terminal after a text that starts at the left edge of a row, as libedit lays it out.
struct KIT_EditPosition {
    explicit KIT_EditPosition(int columnCount) : columnCount(columnCount) {}

    void advance(std::wstring_view text);

    std::size_t row = 0;
    int column = 0;

private:
    void advance(wchar_t character);
    void advanceColumns(int columns);
    void nextRow();

    const int columnCount;
};
