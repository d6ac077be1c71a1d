// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

#include <orvlang/platform/kit/KIT_Export.h>

/// The bytes of an open file, read once from front to back. Only VIO_Reader makes one.
class CMD_API VIO_ReaderStream {
public:
    VIO_ReaderStream(const VIO_ReaderStream &) = delete;
    VIO_ReaderStream &operator=(const VIO_ReaderStream &) = delete;

    /// Returns false when the file did not open or a read failed.
    bool isGood() const { return descriptor >= 0 && !failed; }
    /// Reads up to count bytes and returns how many came: fewer only at the end of the file and at a failure.
    size_t read(void *buffer, size_t count);

private:
    friend class VIO_Reader;

    VIO_ReaderStream() = default;

    int descriptor = -1;   // owned by the reader
    bool failed = false;
};

/// A file opened for reading as a whole, closed with this object. It makes one open, one status, one close and the reads
/// of its caller, so that sourcing a short script is cheap. It never waits for a writer of a named pipe.
class CMD_API VIO_Reader {
public:
    /// A null name is a file that does not open.
    explicit VIO_Reader(const char *name);
    ~VIO_Reader();
    VIO_Reader(const VIO_Reader &) = delete;
    VIO_Reader &operator=(const VIO_Reader &) = delete;

    /// Returns the bytes in the file at the time of opening. 0 for a file that is not regular or did not open.
    long long getLength() const { return length; }
    /// Returns null when the file did not open or is a directory. Owned by the reader.
    VIO_ReaderStream *getStream() { return stream.descriptor >= 0 ? &stream : nullptr; }

private:
    VIO_ReaderStream stream;
    long long length = 0;
};
