// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/kit/VIO_ReaderStream.h>

#include <orvlang/platform/osl/OSL_File.h>

size_t VIO_ReaderStream::read(void *buffer, size_t count) {
    return isGood() ? OSLreadAll(descriptor, buffer, count, failed) : 0;
}
