// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/kit/VIO_Reader.h>

#include <fcntl.h>

#include <orvlang/platform/osl/OSL_File.h>
#include <orvlang/platform/osl/OSL_System.h>

VIO_Reader::VIO_Reader(const char *name) {
    if (!name)
        return;
    // Not blocking, since a named pipe would make the opening wait for a writer.
    const int descriptor = OSLopen(name, O_RDONLY | O_NONBLOCK, 0);
    if (descriptor < 0)
        return;
    OSL_FileStatus status;
    OSLsystem().getStatus(descriptor, status);
    if (status.isDirectory) {
        OSLsystem().close(descriptor);
        return;
    }
    stream.descriptor = descriptor;
    if (status.isRegular)
        length = status.size;
}

VIO_Reader::~VIO_Reader() {
    if (stream.descriptor >= 0)
        OSLsystem().close(stream.descriptor);
}

size_t VIO_ReaderStream::read(void *buffer, size_t count) {
    return isGood() ? OSLreadAll(descriptor, buffer, count, failed) : 0;
}
