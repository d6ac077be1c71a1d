// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/kit/KIT_OStrStream.h>

#include <cstring>
#include <utility>

KIT_OStrStream::KIT_OStrStream() : std::ostream(nullptr) {
    rdbuf(&buffer);
}

KIT_OStrStream::~KIT_OStrStream() = default;

void KIT_OStrStream::reset() {
    buffer.forget();
    clear();
}

const char *KIT_OStrStream::Buffer::terminated() {
    reserve(1);
    *pptr() = 0;
    return start;
}

KIT_OStrStream::Buffer::int_type KIT_OStrStream::Buffer::overflow(int_type byte) {
    if (traits_type::eq_int_type(byte, traits_type::eof()))
        return traits_type::not_eof(byte);
    reserve(1);
    return sputc(traits_type::to_char_type(byte));
}

std::streamsize KIT_OStrStream::Buffer::xsputn(const char *data, std::streamsize count) {
    const size_t size = static_cast<size_t>(count);
    reserve(size);
    std::memcpy(pptr(), data, size);
    setp(pptr() + size, limit);
    return count;
}

void KIT_OStrStream::Buffer::reserve(size_t more) {
    if (static_cast<size_t>(epptr() - pptr()) >= more)
        return;
    const size_t length = used();
    const size_t size = 2 * (length + more);
    std::unique_ptr<char[]> larger(new char[size]);   // not zeroed, unlike make_unique
    std::memcpy(larger.get(), start, length);
    grown = std::move(larger);
    start = grown.get();
    limit = start + size;
    setp(start + length, limit);
}
