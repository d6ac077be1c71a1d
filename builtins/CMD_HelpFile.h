// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <iosfwd>
#include <string_view>

/// Writes the entry of that name out of one help file: the lines below the heading that equals the name, as far as
/// they are empty or indented. Nothing when the file cannot be read or has no such heading.
void CMDprintHelpEntry(std::ostream &os, const char *path, const char *name);

/// Tells the heading of each entry in one help file that holds the keyword, which is in lower case; letters of the
/// file match in either case. The heading itself counts as part of its entry.
void CMDsearchHelpFile(const char *path, std::string_view keyword,
                       const std::function<void(const char *heading)> &found);
