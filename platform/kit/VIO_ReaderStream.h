// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

#include <orvlang/platform/kit/KIT_Export.h>

/// The bytes of an open file, read once from front to back. Only VIO_Reader makes one.
class CMD_API VIO_ReaderStream {
public:
    VIO_ReaderStream(const VIO_ReaderStream &) = delete;
    VIO_ReaderStream &operator=(const VIO_ReaderStream &) = delete;

    /// False when the file did not open or a read failed.
    bool isGood() const { return descriptor >= 0 && !failed; }
    /// Reads up to count bytes and gives how many came: fewer only at the end of the file and at a failure.
    size_t read(void *buffer, size_t count);

private:
    friend class VIO_Reader;

    VIO_ReaderStream() = default;

    int descriptor = -1;   // owned by the reader
    bool failed = false;
};
