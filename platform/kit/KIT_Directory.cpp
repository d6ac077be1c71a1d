// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/kit/KIT_Directory.h>

#include <string>
#include <vector>

#include <fnmatch.h>

#include <orvlang/platform/kit/KIT_File.h>
#include <orvlang/platform/kit/KIT_StringArray.h>
#include <orvlang/platform/osl/OSL_System.h>

KIT_Directory::KIT_Directory(const char *directory, const char *base, int hidesPoints)
    : path(KITmakeAbsoluteFilePath(directory, base)), matchFlags(hidesPoints ? FNM_PERIOD : 0) {}

int KIT_Directory::getFiles(const char *pattern, KIT_StringArray &names) const {
    std::vector<std::string> found;
    if (!OSLsystem().listDirectory(path.c_str(), found))
        return 0;
    const int before = names.entries();
    for (const std::string &name : found)
        if (!pattern || fnmatch(pattern, name.c_str(), matchFlags) == 0)
            names.append(name);
    return names.entries() - before;
}
