// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

#include <orvlang/platform/kit/KIT_Export.h>
#include <orvlang/platform/kit/KIT_String.h>

/// Stores the current directory and returns the buffer. When it cannot be determined or does not fit, the text is empty.
CMD_API char *getUnixCwd(char *buffer, size_t size);
/// Returns the current directory; an empty text when it cannot be determined.
CMD_API KIT_String KITgetCurrentDirectory();

/// Returns the path, if it is relative after the base, a directory; a null base means the current directory. Null and
/// empty paths are the base itself. The path is not simplified: what comes before a `..` may be a link. When the current
/// directory cannot be determined, because it was removed for instance, the path begins with `./` instead.
CMD_API KIT_String KITmakeAbsoluteFilePath(const char *path, const char *base);

/// Returns whether the text of an absolute path means the root: nothing but slashes and the names `.` and `..`.
CMD_API bool KITisRootPath(const char *path);
