// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/kit/KIT_Export.h>
#include <orvlang/platform/kit/KIT_String.h>

class KIT_StringArray;

/// The names in one directory. Each call reads it anew.
class CMD_API KIT_Directory {
public:
    /// A relative path starts at the base; with a null base at what is the current directory now. With a non-zero
    /// `hidesPoints` names that begin with a point match only a pattern that begins with one, as in a shell.
    KIT_Directory(const char *path, const char *base, int hidesPoints);

    /// Appends the names that match, in no order, and returns how many; 0 when the directory cannot be read. Patterns are
    /// those of fnmatch(3): `*`, `?`, `[...]`, and a backslash for the next character itself. A null pattern matches
    /// every name. `.` and `..` are never among them.
    int getFiles(const char *pattern, KIT_StringArray &names) const;

private:
    KIT_String path;
    int matchFlags;
};
