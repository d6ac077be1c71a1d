// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string_view>

#include <orvlang/platform/kit/KIT_Export.h>

class KIT_WorkBuffer;

/// Reads lines or bytes from front to back out of memory that is borrowed, and so must stay alive and unchanged.
class CMD_API KIT_IStream {
public:
    /// Read type 0: a NUL is a byte like any other. 1: text, in which a NUL ends its line and the rest of the line
    /// is dropped; a line that is nothing but a NUL is an empty line. Null memory counts as empty.
    KIT_IStream(const char *buffer, size_t length, int readType);
    virtual ~KIT_IStream();
    KIT_IStream(const KIT_IStream &) = delete;
    KIT_IStream &operator=(const KIT_IStream &) = delete;

    /// Reads the next line without its terminator. The last line needs none. At the end false, and the line is empty.
    bool getLine(KIT_WorkBuffer &line, char terminator);
    /// The same without a copy: the view points into the memory of the stream.
    bool getLine(std::string_view &line, char terminator);
    /// Copies up to count bytes and returns how many; 0 at the end.
    size_t bread(void *buffer, size_t count);

    /// Returns the number of bytes not read yet.
    size_t remaining() const { return static_cast<size_t>(end - next); }

protected:
    explicit KIT_IStream(int readType) : cutAtNul(readType != 0) {}
    void setMemory(const char *buffer, size_t length);

private:
    const char *next = nullptr;   // borrowed
    const char *end = nullptr;
    const bool cutAtNul;
};
