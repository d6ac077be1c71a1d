// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/kit/VIO_Info.h>

#include <unistd.h>

#include <orvlang/platform/osl/OSL_System.h>

bool VIO_Info::hasAccess(int mode) const {
    const int wanted = (mode & 1 ? R_OK : 0) | (mode & 2 ? W_OK : 0);
    return OSLsystem().access(path.c_str(), wanted) == 0;
}

bool VIO_Info::getIsDirectory() const {
    OSL_FileStatus status;
    return OSLsystem().getStatus(path.c_str(), status) && status.isDirectory;
}
