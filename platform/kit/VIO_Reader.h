// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/kit/KIT_Export.h>
#include <orvlang/platform/kit/VIO_ReaderStream.h>

/// A file opened for reading as a whole, closed with this object. It costs one open, one status, one close and the
/// reads asked for, so that sourcing a short script is cheap. It never waits for a writer of a named pipe.
class CMD_API VIO_Reader {
public:
    /// A null name is a file that does not open.
    explicit VIO_Reader(const char *name);
    ~VIO_Reader();
    VIO_Reader(const VIO_Reader &) = delete;
    VIO_Reader &operator=(const VIO_Reader &) = delete;

    /// Bytes in the file at the time of opening. 0 for what is no regular file or did not open.
    long long getLength() const { return length; }
    /// Null when the file did not open or is a directory. Owned by the reader.
    VIO_ReaderStream *getStream() { return stream.descriptor >= 0 ? &stream : nullptr; }

private:
    VIO_ReaderStream stream;
    long long length = 0;
};
