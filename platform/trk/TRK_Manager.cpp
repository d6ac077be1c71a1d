// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/trk/TRK_Manager.h>

#include <orvlang/platform/fml/FML.h>
#include <orvlang/platform/fml/FML_Registry.h>
#include <orvlang/platform/kit/KIT_Number.h>
#include <orvlang/platform/kit/KIT_String.h>
#include <orvlang/platform/osl/OrvaneEnvironment.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>

namespace {

enum LocalVariableId { FRAME, TIME, FPS };

constexpr TRK_LocalVariable theLocalVariables[] = {
    { "FRAME", FRAME },
    { "TIME", TIME },
    { "FPS", FPS },
    { nullptr, 0 },
};

// Times are shown to a thousandth, which is finer than a frame and coarser than what binary fractions add.
constexpr int theNiceDigits = 3;

double roundTo(double value, int digits) {
    const double scale = std::pow(10.0, digits);
    const double rounded = std::round(value * scale) / scale;
    return std::isfinite(rounded) ? rounded : value;
}

}   // namespace

TRK_Manager *TRK_Manager::theCurrentManager = nullptr;
unsigned TRK_Manager::theContextChoices = 0;

TRK_Manager::TRK_Manager(int /*options*/) {}

TRK_Manager::~TRK_Manager() {
    if (theCurrentManager == this)
        theCurrentManager = nullptr;
}

void TRK_Manager::setContext() {
    theCurrentManager = this;
    theContextChoices++;
}

TRK_AccessManager *TRK_Manager::getAccessManager() {
    return nullptr;
}

TRK_Channel *TRK_Manager::getChRefChannel(const TRK_ChannelRef & /*reference*/, int /*thread*/) {
    return nullptr;
}

bool TRK_Manager::isOwnerExposed(const TRK_ChannelRef & /*reference*/) {
    return false;
}

bool TRK_Manager::buildChanRef(const char * /*path*/, TRK_ChannelRef & /*reference*/, int /*thread*/) {
    return false;
}

bool TRK_Manager::buildChanRef(const TRK_Channel & /*channel*/, TRK_ChannelRef & /*reference*/) {
    return false;
}

int TRK_Manager::compareChanRefs(const TRK_ChannelRef &left, const TRK_ChannelRef &right) {
    const std::less<const TRK_ChannelRef *> isBefore;
    return isBefore(&left, &right) ? -1 : &left != &right;
}

bool TRK_Manager::getChanRefPath(const TRK_ChannelRef & /*reference*/, KIT_String & /*path*/) {
    return false;
}

// The time line.

const TRK_LocalVariable *TRK_Manager::getLocalVariableTable() {
    return theLocalVariables;
}

double TRK_Manager::localValue(int id) const {
    switch (id) {
    case FRAME:   // the first frame is at 0 seconds
        return roundTo(evaluateTime * double(framesPerSecond) + 1, theNiceDigits);
    case TIME:
        return evaluateTime;
    case FPS:
        return roundTo(double(framesPerSecond), theNiceDigits);
    default:
        return 0;
    }
}

bool TRK_Manager::getLocalVariable(const char *name, KIT_String &value) const {
    // Called for every variable that is read, so most names are refused by their first letter.
    if (*name != 'F' && *name != 'T')
        return false;
    for (const TRK_LocalVariable *local = theLocalVariables; local->name; local++) {
        if (std::strcmp(local->name, name) != 0)
            continue;
        KIT_NumberText room;
        value.assign(KITformatNumber(localValue(local->id), room));
        return true;
    }
    return false;
}

double TRK_Manager::getEvaluateTime(int /*thread*/) const {
    return evaluateTime;
}

void TRK_Manager::setEvaluateTime(double seconds) {
    if (std::isfinite(seconds))
        evaluateTime = seconds;
}

void TRK_Manager::setFramesPerSecond(float frames) {
    if (std::isfinite(frames) && frames > 0)
        framesPerSecond = frames;
}

float TRK_Manager::getVariableValue(int id, int /*thread*/) const {
    return static_cast<float>(localValue(id));
}

float TRK_Manager::niceNumber(float value, int digits) {
    return static_cast<float>(roundTo(double(value), std::clamp(digits, 0, 9)));
}

// Reading names and expressions.

bool TRK_Manager::getVariableString(const char *name, KIT_String &value, int & /*flags*/, int /*thread*/) {
    return getLocalVariable(name, value);
}

bool TRK_Manager::lookupManagerVariable(const char *name, KIT_String &value, int thread) {
    int flags = 0;
    return theCurrentManager && theCurrentManager->getVariableString(name, value, flags, thread);
}

bool TRK_Manager::lookupVariableNoThread(const char *name, KIT_String &value) {
    if (lookupManagerVariable(name, value, 0))
        return true;
    const char *text = OrvaneGetenv(name);
    if (!text)
        return false;
    value = text;
    return true;
}

bool TRK_Manager::lookupExpressionNoThread(const char *text, KIT_String &value) {
    return fml_Evaluate(text, value);
}

void TRK_Manager::initExpressionLibrary() {
    FML_NameSource &names = FML_Registry::get().getNames();
    names.fixed = [](const char *name, KIT_String &value) {
        return theCurrentManager && theCurrentManager->getLocalVariable(name, value);
    };
}

void TRK_Manager::initLibraryGlue() {
    FML_Registry::get().getNames().variable = lookupManagerVariable;
}
