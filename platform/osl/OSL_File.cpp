// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/osl/OSL_File.h>

#include <cerrno>

#include <fcntl.h>

#include <orvlang/platform/osl/OSL_System.h>

int OSLopen(const char *path, int flags, int mode) {
    int descriptor;
    do
        descriptor = OSLsystem().open(path, flags, mode);
    while (descriptor < 0 && errno == EINTR);
    return descriptor;
}

size_t OSLreadAll(int descriptor, void *buffer, size_t count, bool &failed) {
    char *const bytes = static_cast<char *>(buffer);
    size_t done = 0;
    while (done < count) {
        const ssize_t n = OSLsystem().read(descriptor, bytes + done, count - done);
        if (n == 0)
            break;
        if (n > 0)
            done += static_cast<size_t>(n);
        else if (errno != EINTR) {
            failed = true;
            break;
        }
    }
    return done;
}

bool OSLwriteAll(int descriptor, const void *data, size_t count) {
    const char *bytes = static_cast<const char *>(data);
    while (count > 0) {
        const ssize_t n = OSLsystem().write(descriptor, bytes, count);
        if (n > 0) {
            bytes += n;
            count -= static_cast<size_t>(n);
        } else if (n < 0 && errno == EAGAIN) {
            OSLsystem().waitWritable(descriptor, -1);
        } else if (n == 0 || errno != EINTR) {
            return false;
        }
    }
    return true;
}

bool OSLreadFile(const char *path, std::string &content) {
    content.clear();
    const int descriptor = OSLopen(path, O_RDONLY, 0);
    if (descriptor < 0)
        return false;
    OSL_FileStatus status;
    bool failed = !OSLsystem().getStatus(descriptor, status);
    // One byte more than the size shows the end in the same read. What has no size (a pipe, a file that the kernel
    // makes up) is read in steps.
    size_t step = status.size > 0 ? static_cast<size_t>(status.size) + 1 : 4096;
    for (; !failed; step = 4096 + content.size()) {
        const size_t before = content.size();
        content.resize(before + step);
        const size_t n = OSLreadAll(descriptor, content.data() + before, step, failed);
        content.resize(before + n);
        if (n < step)
            break;
    }
    OSLsystem().close(descriptor);
    return !failed;
}
