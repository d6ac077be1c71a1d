// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/edit/KIT_EditPosition.h>

#include <orvlang/platform/kit/KIT_Utf8.h>

namespace {

constexpr int theTabWidth = 8;

}   // namespace

void KIT_EditPosition::advance(std::wstring_view places) {
    for (const wchar_t place : places)
        advance(place);
}

void KIT_EditPosition::advance(wchar_t place) {
    if (place == L'\n') {
        nextRow();
    } else if (place == L'\t') {
        do
            take(1);
        while (column % theTabWidth != 0);
    } else if (place < L' ' || place == L'\x7f') {
        take(1);   // shown as ^X
        take(1);
    } else {
        take(KITcolumnsOf(static_cast<char32_t>(place)));
    }
}

/// A row that is full is followed by the next one at once.
void KIT_EditPosition::take(int columns) {
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
