// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/kit/KIT_Exit.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <utility>
#include <vector>

#include <orvlang/platform/osl/KIT_Immortal.h>

namespace {

using Registration = std::pair<KIT_Exit::Callback, void *>;

constinit KIT_Immortal<std::vector<Registration>> theCallbacks;

}   // namespace

void KIT_Exit::exit(int code) {
    runExitCallbacks();
    std::cout.flush();
    std::cerr.flush();
    std::clog.flush();
    std::exit(code);
}

void KIT_Exit::exitWithSpecificCode(int code) {
    exit(code);
}

void KIT_Exit::addExitCallback(Callback callback, void *data) {
    std::vector<Registration> &callbacks = theCallbacks.object;
    const Registration added(callback, data);
    if (callback && std::find(callbacks.begin(), callbacks.end(), added) == callbacks.end())
        callbacks.push_back(added);
}

void KIT_Exit::runExitCallbacks() {
    std::vector<Registration> &callbacks = theCallbacks.object;
    while (!callbacks.empty()) {
        const Registration latest = callbacks.back();
        callbacks.pop_back();
        latest.first(latest.second);
    }
}
