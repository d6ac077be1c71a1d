// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

#include <orvlang/platform/kit/KIT_Export.h>
#include <orvlang/platform/kit/KIT_String.h>

/// Stores the current directory and gives the buffer. When it cannot be told or does not fit, the text is empty.
CMD_API char *getUnixCwd(char *buffer, size_t size);
/// Returns the current directory; an empty text when it cannot be determined.
CMD_API KIT_String KITgetCurrentDirectory();

/// The path with the base, a directory, in front when it is relative; a null base means the current directory. Null and
/// empty paths are the base itself. Nothing is tidied up: links may stand behind a `..`. When the current directory
/// cannot be told, because it was removed for instance, the path begins with `./` instead.
CMD_API KIT_String KITmakeAbsoluteFilePath(const char *path, const char *base);

/// Whether an absolute path is the root by its looks alone: nothing but slashes and the names `.` and `..`.
CMD_API bool KITisRootPath(const char *path);
