// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

/// Memory for the texts that one evaluation makes. All of it is freed at once, by clear.
class FML_TextArena {
public:
    explicit FML_TextArena(std::size_t blockSize) : blockSize(blockSize) {}

    /// Returns room for `size` bytes, valid until clear. Throws std::bad_alloc.
    char *allocate(std::size_t size) {
        if (size > static_cast<std::size_t>(limit - cursor))
            addBlock(size);
        char *room = cursor;
        cursor += size;
        return room;
    }

    std::string_view copy(std::string_view text);

    /// Returns `left` followed by `right`. When `left` is the last text that was made here it grows in place, so that
    /// building a text piece by piece takes linear time.
    std::string_view join(std::string_view left, std::string_view right);

    /// Frees all texts; the first block is kept for the next ones.
    void clear();

private:
    void addBlock(std::size_t atLeast);

    struct Block {
        std::unique_ptr<char[]> bytes;
        std::size_t size;
    };
    std::size_t blockSize;   // of each block, unless one text needs more
    std::vector<Block> blocks;
    char *cursor = nullptr;   // the next free byte of the last block
    char *limit = nullptr;    // its end
};
