// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/kit/KIT_DSO.h>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <map>
#include <string>
#include <vector>

#include <orvlang/platform/kit/KIT_PathSearch.h>
#include <orvlang/platform/osl/KIT_Immortal.h>
#include <orvlang/platform/osl/OSL_System.h>

namespace {

using Function = void (*)(void *);

const char *theRunningFile = nullptr;   // borrowed from the table of libraries

/// Path to handle, null for one that did not load. Paths stay where they are: the manager keeps none of them, but
/// a function that runs may ask for its own at any time.
std::map<std::string, void *> &libraries() {
    static KIT_Immortal<std::map<std::string, void *>> table;
    return table.object;
}

std::vector<std::string> findLibraries() {
    std::vector<std::string> paths;
    for (const std::string &directory : KIT_PathSearch::getInstance(0)->getTrustedDirectories()) {
        const std::string folder = directory + "/dso";
        std::vector<std::string> names;
        OSLsystem().listDirectory(folder.c_str(), names);
        std::sort(names.begin(), names.end());
        for (const std::string &name : names)
            if (name.ends_with(".so"))
                paths.push_back(folder + "/" + name);
    }
    return paths;
}

void reportFailure(const char *failure, const char *path, const char *reason) {
    std::fprintf(stderr, "%s %s: %s\n", failure, path, reason);
}

void *loadLibrary(const std::string &path) {
    void *const handle = OSLsystem().loadLibrary(path.c_str(), false);
    if (!handle)
        reportFailure("Can't load plug-in library", path.c_str(), OSLsystem().getLoaderError().c_str());
    return handle;
}

void run(Function function, void *argument, const char *path) {
    struct RunningFile {
        const char *const before = theRunningFile;
        ~RunningFile() { theRunningFile = before; }
    } const restored;
    theRunningFile = path;
    try {
        function(argument);
    } catch (const std::exception &exception) {
        reportFailure("Error in plug-in library", path, exception.what());
    } catch (...) {
        reportFailure("Error in plug-in library", path, "");
    }
}

}   // namespace

int KIT_DSO::runReverse(const char *function, void *argument, int load) {
    const std::vector<std::string> paths = findLibraries();
    std::vector<void *> done;   // two paths may lead to one library
    for (auto path = paths.rbegin(); path != paths.rend(); ++path) {
        auto library = libraries().find(*path);
        if (library == libraries().end()) {
            if (!load)
                continue;
            library = libraries().emplace(*path, loadLibrary(*path)).first;
        }
        void *const handle = library->second;
        void *const address = handle ? OSLsystem().findSymbol(handle, function) : nullptr;
        if (!address || std::find(done.begin(), done.end(), handle) != done.end())
            continue;
        done.push_back(handle);
        run(reinterpret_cast<Function>(address), argument, library->first.c_str());
    }
    return static_cast<int>(done.size());
}

const char *KIT_DSO::getRunningFile() {
    return theRunningFile;
}
