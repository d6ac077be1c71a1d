// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/kit/KIT_File.h>

#include <orvlang/platform/osl/OSL_System.h>

char *getUnixCwd(char *buffer, size_t size) {
    if (size > 0 && !OSLsystem().getCurrentDirectory(buffer, size))
        *buffer = 0;
    return buffer;
}

KIT_String KITgetCurrentDirectory() {
    char buffer[8192];
    return getUnixCwd(buffer, sizeof buffer);
}

KIT_String KITmakeAbsoluteFilePath(const char *path, const char *base) {
    const std::string_view name = path ? path : "";
    if (name.starts_with('/'))
        return name;
    KIT_String whole = base ? KIT_String(base) : KITgetCurrentDirectory();
    if (whole.isEmpty())
        whole = ".";
    if (!name.empty() && !whole.view().ends_with('/'))
        whole.append('/');
    return whole.append(name);
}

bool KITisRootPath(const char *path) {
    std::string_view rest = path ? path : "";
    if (!rest.starts_with('/'))
        return false;
    while (!rest.empty()) {
        rest.remove_prefix(1);
        const std::string_view name = rest.substr(0, rest.find('/'));
        if (!name.empty() && name != "." && name != "..")
            return false;
        rest.remove_prefix(name.size());
    }
    return true;
}
