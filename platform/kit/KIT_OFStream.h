// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ostream>
#include <streambuf>

#include <orvlang/platform/kit/KIT_Export.h>

/// A stream that writes into a file through a descriptor of its own, close-on-exec. One is made for every redirected
/// statement, so it allocates nothing and writes once when the output is short. A new file may be read and written
/// by all, less the process's mask.
class CMD_API KIT_OFStream : public std::ostream {
public:
    /// Opens the file, made when it is missing, emptied unless append is set. A null name does not open.
    KIT_OFStream(const char *name, bool append);
    /// Writes what is left and closes.
    ~KIT_OFStream() override;

    bool isOpen() const { return buffer.descriptor >= 0; }
    /// Writes what is left and closes; badbit is set when that fails, which the destructor cannot report.
    void close();

private:
    class CMD_API Buffer : public std::streambuf {
    public:
        Buffer() { setp(bytes, bytes + sizeof bytes); }
        bool close();

        int descriptor = -1;

    protected:
        int_type overflow(int_type byte) override;
        std::streamsize xsputn(const char *data, std::streamsize count) override;
        int sync() override { return drain() ? 0 : -1; }

    private:
        bool drain();
        bool writeAll(const char *data, size_t count);

        char bytes[4096];
    };

    Buffer buffer;
};
