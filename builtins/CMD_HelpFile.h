// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <iosfwd>
#include <string_view>

/// Writes the entry `name` of one help file: the lines below the heading that equals the name, up to the first one
/// that is neither empty nor indented. Writes nothing when the file cannot be read or has no such heading.
void CMDprintHelpEntry(std::ostream &os, const char *path, const char *name);

/// Calls `found` with the heading of each entry in one help file that contains the keyword. The keyword is in lower
/// case; letters of the file match in either case. The heading itself counts as part of its entry.
void CMDsearchHelpFile(const char *path, std::string_view keyword,
                       const std::function<void(const char *heading)> &found);
