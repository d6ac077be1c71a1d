// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

/// Bytes that are appended at one end and dropped at the other.
class KIT_ByteQueue {
public:
    std::string_view view() const { return { bytes.get() + first, last - first }; }
    std::size_t size() const { return last - first; }
    bool isEmpty() const { return first == last; }

    /// Returns where up to getRoom() bytes, at least `least`, can be written. Call `commit` with their number after that.
    char *prepare(std::size_t least);
    std::size_t getRoom() const { return capacity - last; }
    void commit(std::size_t count) { last += count; }

    void append(std::string_view text);
    /// Drops the first bytes. Their memory stays as it is until something is appended.
    void drop(std::size_t count) { first += count; }
    void clear() { first = last; }
    /// Frees a large block when it is empty; a small one is kept for the next bytes.
    void trim();

private:
    void moveTo(std::size_t newCapacity);

    std::unique_ptr<char[]> bytes;
    std::size_t capacity = 0;
    std::size_t first = 0;
    std::size_t last = 0;
};
