// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/kit/KIT_ByteQueue.h>

#include <algorithm>
#include <cstring>
#include <utility>

namespace {

constexpr std::size_t theSmallestBlock = 4096;
constexpr std::size_t theLargestIdleBlock = 65536;

}   // namespace

char *KIT_ByteQueue::prepare(std::size_t least) {
    if (isEmpty())
        first = last = 0;
    if (getRoom() < least)
        moveTo(
            std::max({ size() + least, size() <= capacity / 2 ? capacity : 2 * capacity, theSmallestBlock }));
    return bytes.get() + last;
}

void KIT_ByteQueue::trim() {
    if (!isEmpty() || capacity <= theLargestIdleBlock)
        return;
    bytes.reset();
    capacity = first = last = 0;
}

void KIT_ByteQueue::append(std::string_view text) {
    if (text.empty())
        return;
    std::memcpy(prepare(text.size()), text.data(), text.size());
    commit(text.size());
}

/// Moves the bytes to the start of a new block of that size.
void KIT_ByteQueue::moveTo(std::size_t newCapacity) {
    const std::size_t held = size();
    std::unique_ptr<char[]> block(new char[newCapacity]);   // not zeroed, unlike make_unique
    if (held > 0)
        std::memcpy(block.get(), bytes.get() + first, held);
    bytes = std::move(block);
    capacity = newCapacity;
    first = 0;
    last = held;
}
