// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/net/VIO_EventGenerator.h>

#include <vector>

#include <orvlang/platform/osl/KIT_Immortal.h>

namespace {

constinit KIT_Immortal<std::vector<VIO_EventGenerator *>> theEarly{};   // installed before there was a loop
constinit unsigned thePass = 0;

}   // namespace

VIO_EventGenerator::Installer VIO_EventGenerator::theInstaller = nullptr;
VIO_EventGenerator::PollCallback VIO_EventGenerator::thePollCallback = nullptr;

VIO_EventGenerator::~VIO_EventGenerator() {
    while (installations > 0)
        uninstallGenerator();
    std::erase(theEarly.object, this);
}

const char *VIO_EventGenerator::getClassName() const {
    return "VIO_EventGenerator";
}

int VIO_EventGenerator::getFileDescriptor() const {
    return -1;
}

int VIO_EventGenerator::getPollTime() const {
    return getFileDescriptor() < 0 ? 0 : 1;
}

bool VIO_EventGenerator::areEventsWaiting() {
    return false;
}

int VIO_EventGenerator::installGenerator() {
    if (!theInstaller) {
        theEarly.object.push_back(this);
        return 0;
    }
    const int result = theInstaller(this, 1);
    if (result != 0)
        ++installations;
    return result;
}

int VIO_EventGenerator::uninstallGenerator() {
    std::erase(theEarly.object, this);
    if (installations > 0)
        --installations;
    return theInstaller ? theInstaller(this, 0) : 0;
}

void VIO_EventGenerator::pollEventLoop(bool flag) {
    if (thePollCallback)
        thePollCallback(flag);
}

void VIO_EventGenerator::beginPass() {
    ++thePass;
}

unsigned VIO_EventGenerator::getPass() {
    return thePass;
}

void VIO_EventGenerator::setInstaller(Installer installer) {
    theInstaller = installer;
    while (theInstaller && !theEarly.object.empty()) {
        VIO_EventGenerator *const generator = theEarly.object.front();
        theEarly.object.erase(theEarly.object.begin());
        generator->installGenerator();
    }
}

void VIO_EventGenerator::setEventLoopPollCallback(PollCallback callback) {
    thePollCallback = callback;
}

bool VIO_EventGenerator::isEventLoopPollCallbackSet() {
    return thePollCallback != nullptr;
}
