// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/fml/FML_TextArena.h>

#include <algorithm>
#include <cstring>

std::string_view FML_TextArena::copy(std::string_view text) {
    if (text.empty())
        return text;
    char *room = allocate(text.size());
    std::memcpy(room, text.data(), text.size());
    return { room, text.size() };
}

std::string_view FML_TextArena::join(std::string_view left, std::string_view right) {
    const bool isLast = !left.empty() && left.data() + left.size() == cursor;
    if (isLast && right.size() <= static_cast<std::size_t>(limit - cursor)) {
        std::memcpy(allocate(right.size()), right.data(), right.size());
        return { left.data(), left.size() + right.size() };
    }
    char *room = allocate(left.size() + right.size());
    std::copy(left.begin(), left.end(), room);
    std::copy(right.begin(), right.end(), room + left.size());
    return { room, left.size() + right.size() };
}

void FML_TextArena::addBlock(std::size_t atLeast) {
    const std::size_t size = std::max(atLeast + atLeast / 2, blockSize);
    blocks.push_back({ std::make_unique_for_overwrite<char[]>(size), size });
    cursor = blocks.back().bytes.get();
    limit = cursor + size;
}

void FML_TextArena::clear() {
    if (blocks.empty())
        return;
    // A first block of unusual size is not worth keeping.
    const std::size_t kept = blocks.front().size == blockSize ? 1 : 0;
    if (blocks.size() > kept)
        blocks.erase(blocks.begin() + static_cast<std::ptrdiff_t>(kept), blocks.end());
    cursor = kept ? blocks.front().bytes.get() : nullptr;
    limit = kept ? cursor + blockSize : nullptr;
}
