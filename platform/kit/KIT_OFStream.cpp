// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/kit/KIT_OFStream.h>

#include <cstring>

#include <fcntl.h>

#include <orvlang/platform/osl/OSL_File.h>
#include <orvlang/platform/osl/OSL_System.h>

KIT_OFStream::KIT_OFStream(const char *name, bool append) : std::ostream(nullptr) {
    rdbuf(&buffer);
    if (name)
        buffer.descriptor = OSLopen(name, O_WRONLY | O_CREAT | (append ? O_APPEND : O_TRUNC), 0666);
    if (!isOpen())
        setstate(failbit);
}

KIT_OFStream::~KIT_OFStream() {
    buffer.close();
}

void KIT_OFStream::close() {
    if (!buffer.close())
        setstate(badbit);
}

bool KIT_OFStream::Buffer::close() {
    if (descriptor < 0)
        return true;
    const bool written = drain();
    // Never a second time: after an interrupted close the descriptor is gone all the same.
    const bool closed = OSLsystem().close(descriptor) == 0;
    descriptor = -1;
    return written && closed;
}

KIT_OFStream::Buffer::int_type KIT_OFStream::Buffer::overflow(int_type byte) {
    if (!drain())
        return traits_type::eof();
    if (traits_type::eq_int_type(byte, traits_type::eof()))
        return traits_type::not_eof(byte);
    return sputc(traits_type::to_char_type(byte));
}

std::streamsize KIT_OFStream::Buffer::xsputn(const char *data, std::streamsize count) {
    const size_t size = static_cast<size_t>(count);
    if (size > static_cast<size_t>(epptr() - pptr())) {
        if (!drain())
            return 0;
        if (size >= sizeof bytes)
            return writeAll(data, size) ? count : 0;
    }
    std::memcpy(pptr(), data, size);
    pbump(static_cast<int>(size));
    return count;
}

/// Writes what is held, which is gone afterwards, also when that fails.
bool KIT_OFStream::Buffer::drain() {
    const size_t held = static_cast<size_t>(pptr() - pbase());
    setp(bytes, bytes + sizeof bytes);
    return held == 0 || writeAll(bytes, held);
}

bool KIT_OFStream::Buffer::writeAll(const char *data, size_t count) {
    return descriptor >= 0 && OSLwriteAll(descriptor, data, count);
}
