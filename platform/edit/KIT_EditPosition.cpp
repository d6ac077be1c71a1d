// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/edit/KIT_EditPosition.h>

#include <orvlang/platform/kit/KIT_Utf8.h>

namespace {

constexpr int theTabWidth = 8;

}   // namespace

void KIT_EditPosition::advance(std::wstring_view text) {
    for (const wchar_t character : text)
        advance(character);
}

void KIT_EditPosition::advance(wchar_t character) {
    if (character == L'\n') {
        nextRow();
    } else if (character == L'\t') {
        do
            advanceColumns(1);
        while (column % theTabWidth != 0);
    } else if (character < L' ' || character == L'\x7f') {
        advanceColumns(1);   // shown as ^X
        advanceColumns(1);
    } else {
        advanceColumns(KITcolumnsOf(static_cast<char32_t>(character)));
    }
}

/// The cursor leaves a full row at once.
void KIT_EditPosition::advanceColumns(int columns) {
    if (column + columns > columnCount)
        nextRow();
    column += columns;
    if (column >= columnCount)
        nextRow();
}

void KIT_EditPosition::nextRow() {
    ++row;
    column = 0;
}
