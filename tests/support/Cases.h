// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

/// Returns the rows of a file of cases, each split at its ` => `. Empty lines and lines that start with `# ` are left
/// out; `<09>` is the byte with that hexadecimal number. Fails the test when there is no row.
std::vector<std::vector<std::string>> casesOf(const std::string &path);
