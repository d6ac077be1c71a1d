// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/vio/VIO_EventGenerator.h>

VIO_EventGenerator::Installer VIO_EventGenerator::theInstaller = nullptr;
VIO_EventGenerator::PollCallback VIO_EventGenerator::thePollCallback = nullptr;

VIO_EventGenerator::~VIO_EventGenerator() = default;

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
    return theInstaller ? theInstaller(this, 1) : 0;
}

int VIO_EventGenerator::uninstallGenerator() {
    return theInstaller ? theInstaller(this, 0) : 0;
}

void VIO_EventGenerator::pollEventLoop(bool flag) {
    if (thePollCallback)
        thePollCallback(flag);
}

void VIO_EventGenerator::setInstaller(Installer installer) {
    theInstaller = installer;
}

void VIO_EventGenerator::setEventLoopPollCallback(PollCallback callback) {
    thePollCallback = callback;
}

bool VIO_EventGenerator::isEventLoopPollCallbackSet() {
    return thePollCallback != nullptr;
}
