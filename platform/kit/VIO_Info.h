// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include <orvlang/platform/kit/KIT_Export.h>

/// The status of the file of a name. Each operation asks the system anew. A null name is a file that does not exist.
class CMD_API VIO_Info {
public:
    explicit VIO_Info(const char *name) : path(name ? name : "") {}

    /// Returns whether this process may use the file: 1 read, 2 write, 3 both. False when there is no file.
    bool hasAccess(int mode) const;
    bool getIsDirectory() const;

private:
    std::string path;
};
