// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string_view>

/// Where on the terminal a text ends that begins at the left edge of a row, as libedit lays it out.
struct KIT_EditPosition {
    explicit KIT_EditPosition(int columnCount) : columnCount(columnCount) {}

    void advance(std::wstring_view places);

    std::size_t row = 0;
    int column = 0;

private:
    void advance(wchar_t place);
    void take(int columns);
    void nextRow();

    const int columnCount;
};
