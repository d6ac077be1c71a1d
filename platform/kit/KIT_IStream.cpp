// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/kit/KIT_IStream.h>

#include <algorithm>
#include <cstring>

#include <orvlang/platform/kit/KIT_WorkBuffer.h>

KIT_IStream::KIT_IStream(const char *buffer, size_t length, int readType) : KIT_IStream(readType) {
    setMemory(buffer, length);
}

KIT_IStream::~KIT_IStream() = default;

void KIT_IStream::setMemory(const char *buffer, size_t length) {
    next = buffer;
    end = buffer ? buffer + length : nullptr;
}

bool KIT_IStream::getLine(KIT_WorkBuffer &line, char terminator) {
    std::string_view text;
    const bool found = getLine(text, terminator);
    line.strcpy(text);
    return found;
}

bool KIT_IStream::getLine(std::string_view &line, char terminator) {
    line = {};
    if (next == end)
        return false;
    const char *const start = next;
    const auto find = [start](char byte, size_t count) {
        return static_cast<const char *>(std::memchr(start, byte, count));
    };
    const char *stop = find(terminator, remaining());
    next = stop ? stop + 1 : end;
    if (!stop)
        stop = end;
    if (cutAtNul)
        if (const char *nul = find(0, static_cast<size_t>(stop - start)))
            stop = nul;
    line = { start, static_cast<size_t>(stop - start) };
    return true;
}

size_t KIT_IStream::bread(void *buffer, size_t count) {
    count = std::min(count, remaining());
    if (count > 0)
        std::memcpy(buffer, next, count);
    next += count;
    return count;
}
