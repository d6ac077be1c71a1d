// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/osl/OrvaneDirectory.h>

#include <string>
#include <string_view>

#include <orvlang/platform/osl/OSL_System.h>

namespace {

// Whoever makes a directory must be able to put the next one into it.
constexpr int theParentMode = 0300;

bool makeOne(const std::string &path, int mode) {
    OSL_FileStatus status;
    return OSLsystem().makeDirectory(path.c_str(), mode) == 0 ||
           (OSLsystem().getStatus(path.c_str(), status) && status.isDirectory);
}

}   // namespace

int OrvaneMakeDirectory(const char *path, int mode) {
    const std::string_view whole = path ? path : "";
    for (size_t end = whole.find('/', 1); end != whole.npos; end = whole.find('/', end + 1))
        if (!makeOne(std::string(whole.substr(0, end)), mode | theParentMode))
            return 0;
    return !whole.empty() && makeOne(std::string(whole), mode);
}
