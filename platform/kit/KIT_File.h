// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

#include <orvlang/platform/kit/KIT_Export.h>

/// Stores the current directory and gives the buffer. When it cannot be told or does not fit, the text is empty.
CMD_API char *getUnixCwd(char *buffer, size_t size);
