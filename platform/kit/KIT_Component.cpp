// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/kit/KIT_Component.h>

#include <unistd.h>

#include <orvlang/platform/kit/KIT_PathSearch.h>
#include <orvlang/platform/osl/OSL_System.h>

namespace {

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
    OSL_System &system = OSLsystem();
    void *address = nullptr;
    if (!globalLibrary || system.loadLibrary(globalLibrary, true)) {
        void *const component = system.loadLibrary(path.c_str(), false);
        address = component ? system.findSymbol(component, function) : nullptr;
    }
    if (!address)
        failure = system.getLoaderError();
    return address;
}
