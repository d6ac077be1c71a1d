// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/kit/KIT_Component.h>

#include <dlfcn.h>
#include <unistd.h>

#include <orvlang/platform/kit/KIT_PathSearch.h>
#include <orvlang/platform/osl/OSL_System.h>

namespace {

std::string reasonOfLoader() {
    const char *const text = dlerror();
    return text ? text : "unknown error of the loader";
}

/// The component, in the library's own tree or, for a program that has the library inside, in the one around it.
std::string findFile(const char *fileName) {
    const std::string &folder = KIT_PathSearch::getCodeFolder();
    for (const char *way : { "/orvlang/", "/../lib/orvlang/" }) {
        const std::string path = folder + way + fileName;
        if (OSLsystem().access(path.c_str(), R_OK) == 0)
            return path;
    }
    return {};
}

}   // namespace

void *KIT_Component::load(const char *fileName, const char *function, const char *globalLibrary,
                          std::string &failure) {
    const std::string path = findFile(fileName);
    if (path.empty()) {
        failure =
            std::string(fileName) + " is not installed in " + KIT_PathSearch::getCodeFolder() + "/orvlang";
        return nullptr;
    }
    void *address = nullptr;
    if (!globalLibrary || dlopen(globalLibrary, RTLD_NOW | RTLD_GLOBAL)) {
        void *const component = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
        address = component ? dlsym(component, function) : nullptr;
    }
    if (!address)
        failure = reasonOfLoader();
    return address;
}
