// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/kit/KIT_Export.h>

/// Makes a directory and those above it that are missing; the system takes its file creation mask off the mode.
/// Non-zero when the directory is there then, also when it was before; 0 for a null or empty path.
CMD_API int OrvaneMakeDirectory(const char *path, int mode);
