// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <iosfwd>
#include <string_view>
#include <vector>

/// Writes names in columns that read downward, as many as fit on a line of 78 characters. Each cell is padded to
/// the width of its column. Writes nothing without names.
void CMDprintColumns(std::ostream &os, const std::vector<std::string_view> &names);
