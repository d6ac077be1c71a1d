// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/kit/KIT_WorkArgs.h>

#include <algorithm>

KIT_String KIT_WorkArgs::join(int first) const {
    KIT_String text("");
    for (int i = first; i < count; ++i) {
        if (i > first)
            text.append(' ');
        text.append(std::string_view(table[i]));
    }
    return text;
}

void KIT_WorkArgs::appendSlowly(std::string_view word) {
    beginWord();
    appendPiece(word);
    endWord();
}

void KIT_WorkArgs::appendAndGrow(std::string_view piece) {
    constexpr std::size_t leastCapacity = 256;
    const std::size_t room = std::max({ leastCapacity, 2 * capacity, used + piece.size() });
    auto larger = std::make_unique_for_overwrite<char[]>(room);
    capacity = room;   // not before: the allocation can throw
    if (used)
        std::memcpy(larger.get(), buffer.get(), used);
    for (int i = 0; i < count; ++i)
        table[i] = larger.get() + (table[i] - buffer.get());
    // The piece may be in the old memory.
    buffer.swap(larger);
    std::memcpy(buffer.get() + used, piece.data(), piece.size());
    used += piece.size();
}

void KIT_WorkArgs::growTable() {
    constexpr int leastCapacity = 15;
    const int room = std::max(leastCapacity, 2 * tableCapacity);
    auto larger = std::make_unique_for_overwrite<char *[]>(static_cast<std::size_t>(room) + 1);
    std::copy_n(table.get(), count, larger.get());
    table = std::move(larger);
    tableCapacity = room;
}
