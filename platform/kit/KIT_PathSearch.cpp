// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/kit/KIT_PathSearch.h>

#include <algorithm>

#include <dlfcn.h>
#include <link.h>
#include <unistd.h>

#include <orvlang/platform/kit/KIT_String.h>
#include <orvlang/platform/kit/KIT_StringArray.h>
#include <orvlang/platform/osl/KIT_Immortal.h>
#include <orvlang/platform/osl/OSL_System.h>

namespace {

constinit KIT_Immortal<KIT_PathSearch> theGeneralPath("");
constinit KIT_Immortal<KIT_PathSearch> theScriptPath("/scripts");
unsigned int theGeneration = 1;   // the lists of an earlier one are out of date

std::string_view environmentText(const char *name) {
    const char *const text = OSLsystem().getEnvironment(name);
    return text ? text : std::string_view();
}

bool isDirectory(const std::string &path) {
    OSL_FileStatus status;
    return OSLsystem().getStatus(path.c_str(), status) && status.isDirectory;
}

/// The folder that this code was loaded from, be it in a library or in the program. The loader knows the program
/// by the name that it was started by, which may be a relative one of long ago.
std::string folderOfThisCode() {
    // Unlike dladdr this does not look for a symbol, which takes long in a large library.
    dl_find_object found;
    void *const here = &theGeneration;
    std::string path;
    if (_dl_find_object(here, &found) == 0)
        path = found.dlfo_link_map->l_name;
    if (path.empty() || path[0] != '/')
        path = OSLsystem().readLink("/proc/self/exe");
    return path.substr(0, std::min(path.rfind('/'), path.size()));
}

/// The share folder: one up from a plain `lib` or `bin`, two up from a `lib` that is divided by machine type, or
/// in the build tree itself. Empty when there is none.
const std::string &shareFolder() {
    static KIT_Immortal<const std::string> folder([] {
        const std::string &base = KIT_PathSearch::getCodeFolder();
        if (!base.empty())
            for (const char *way : { "/../share/orvlang", "/../../share/orvlang", "/share/orvlang" })
                if (isDirectory(base + way))
                    return base + way;
        return std::string();
    }());
    return folder.object;
}

}   // namespace

KIT_PathSearch *KIT_PathSearch::getInstance(int path) {
    return path == 7 ? &theScriptPath.object : &theGeneralPath.object;
}

void KIT_PathSearch::rehashAll() {
    ++theGeneration;
}

const char *KIT_PathSearch::getHomeOrvane() {
    static KIT_Immortal<std::string> path;
    path.object = environmentText("HOME");
    path.object += path.object.empty() ? ".orvane" : "/.orvane";
    return path.object.c_str();
}

const std::string &KIT_PathSearch::getCodeFolder() {
    static KIT_Immortal<const std::string> folder(folderOfThisCode());
    return folder.object;
}

int KIT_PathSearch::orvaneFindFile(const char *name, KIT_String &found) {
    return findFirst(name, Kind::File, found);
}

int KIT_PathSearch::orvaneFindDirectory(const char *name, KIT_String &found) {
    return findFirst(name, Kind::Directory, found);
}

int KIT_PathSearch::findAllFiles(const char *name, KIT_StringArray &files) {
    return findAll(name, Kind::File, files);
}

int KIT_PathSearch::findAllDirectories(const char *name, KIT_StringArray &found) {
    return findAll(name, Kind::Directory, found);
}

const std::vector<std::string> &KIT_PathSearch::getDirectories() {
    refresh();
    return directories;
}

const std::vector<std::string> &KIT_PathSearch::getTrustedDirectories() {
    refresh();
    return trustedDirectories;
}

/// Calls found with each hit and its status, until that returns false.
template <typename Found>
void KIT_PathSearch::search(const char *name, Kind kind, Found found) {
    if (!name || !*name)
        return;
    OSL_FileStatus status;
    const auto isHit = [&](const std::string &path) {
        if (!OSLsystem().getStatus(path.c_str(), status))
            return false;
        if (kind == Kind::Directory)
            return status.isDirectory;
        return !status.isDirectory && OSLsystem().access(path.c_str(), R_OK) == 0;
    };
    std::string path = name;
    if (*name == '/') {
        if (isHit(path))
            found(path, status);
        return;
    }
    for (const std::string &directory : getDirectories()) {
        path.assign(directory).append("/").append(name);
        if (isHit(path) && !found(path, status))
            return;
    }
}

int KIT_PathSearch::findFirst(const char *name, Kind kind, KIT_String &found) {
    std::string hit;
    search(name, kind, [&](const std::string &path, const OSL_FileStatus &) {
        hit = path;
        return false;
    });
    if (hit.empty())
        return 0;
    found = hit;
    return 1;
}

int KIT_PathSearch::findAll(const char *name, Kind kind, KIT_StringArray &found) {
    std::vector<OSL_FileStatus> seen;
    search(name, kind, [&](const std::string &path, const OSL_FileStatus &status) {
        const auto isSame = [&](const OSL_FileStatus &other) {
            return other.device == status.device && other.number == status.number;
        };
        if (std::none_of(seen.begin(), seen.end(), isSame)) {
            found.append(path);
            seen.push_back(status);
        }
        return true;
    });
    return static_cast<int>(seen.size());
}

void KIT_PathSearch::refresh() {
    if (generation == theGeneration)
        return;
    generation = theGeneration;
    directories.clear();
    trustedDirectories.clear();
    std::string_view own = environmentText("ORVANE_PATH");
    while (!own.empty()) {
        const size_t length = std::min(own.find(':'), own.size());
        add(own.substr(0, length), true);
        own.remove_prefix(std::min(length + 1, own.size()));
    }
    add(environmentText("ORP"), false);
    add(environmentText("JOB"), false);
    if (!environmentText("HOME").empty())
        add(getHomeOrvane(), true);
    add(shareFolder(), true);
}

/// An empty name is not a directory, least of all the current one.
void KIT_PathSearch::add(std::string_view directory, bool trusted) {
    if (directory.empty())
        return;
    while (!directory.empty() && directory.back() == '/')
        directory.remove_suffix(1);
    const auto addOnce = [](std::vector<std::string> &list, const std::string &entry) {
        if (std::find(list.begin(), list.end(), entry) == list.end())
            list.push_back(entry);
    };
    const std::string path = std::string(directory) + subfolder;
    addOnce(directories, path);
    if (trusted)
        addOnce(trustedDirectories, path);
}
