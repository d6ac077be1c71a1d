// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <ostream>
#include <streambuf>
#include <string_view>

#include <orvlang/platform/kit/KIT_Export.h>

/// A stream that writes into memory. Short texts need no allocation.
class CMD_API KIT_OStrStream : public std::ostream {
public:
    KIT_OStrStream();
    ~KIT_OStrStream() override;

    /// What was written, up to the first NUL (`std::ends` writes one). Valid until the next output.
    const char *text() { return buffer.terminated(); }
    /// All bytes that were written. Valid until the next output.
    std::string_view view() const { return buffer.view(); }
    /// Forgets what was written and any failure; keeps the memory.
    void reset();

private:
    class CMD_API Buffer : public std::streambuf {
    public:
        Buffer() { forget(); }
        const char *terminated();
        std::string_view view() const { return { start, used() }; }
        void forget() { setp(start, limit); }

    protected:
        int_type overflow(int_type byte) override;
        std::streamsize xsputn(const char *data, std::streamsize count) override;

    private:
        size_t used() const { return static_cast<size_t>(pptr() - start); }
        void reserve(size_t more);

        char embedded[256];
        std::unique_ptr<char[]> grown;
        char *start = embedded;
        char *limit = embedded + sizeof embedded;
    };

    Buffer buffer;
};
