// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/kit/KIT_File.h>

#include <orvlang/platform/osl/OSL_System.h>

char *getUnixCwd(char *buffer, size_t size) {
    if (size > 0 && !OSLsystem().getCurrentDirectory(buffer, size))
        *buffer = 0;
    return buffer;
}
