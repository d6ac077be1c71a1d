// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/kit/KIT_ErrorManager.h>

#include <algorithm>
#include <ostream>

#include <orvlang/platform/kit/KIT_String.h>
#include <orvlang/platform/osl/KIT_Immortal.h>
#include <orvlang/platform/osl/KIT_Lock.h>

static constinit KIT_Immortal<KIT_ErrorManager> theErrorManager;

KIT_ErrorManager *KITgetErrorManager() {
    return &theErrorManager.object;
}

int KITgetErrorSeverity() {
    return theErrorManager.object.getSeverity();
}

int KITcheckOutStream(std::ostream &os, const char *what, int) {
    if (!os.fail())
        return 1;
    theErrorManager.object.addError(KIT_ErrorManager::Failure,
                                    std::string(what ? what : "") + ": write failed");
    return 0;
}

void KIT_ErrorManager::addError(int newSeverity, std::string_view text) {
    const KIT_LockHolder holder(lock);
    newSeverity = std::max<int>(newSeverity, Message);
    const auto isSame = [&](const Error &error) { return error.severity == newSeverity && error.text == text; };
    if (std::any_of(errors.begin(), errors.end(), isSame))
        return;
    errors.push_back({ newSeverity, std::string(text) });
    severity.store(std::max(newSeverity, getSeverity()), std::memory_order_relaxed);
}

void KIT_ErrorManager::getErrorMessages(KIT_String &text, int leastSeverity, int oldestFirst) const {
    text.clear();
    if (getSeverity() == 0)
        return;
    const KIT_LockHolder holder(lock);
    std::string joined;
    for (size_t i = 0; i < errors.size(); ++i) {
        const Error &error = errors[oldestFirst ? i : errors.size() - 1 - i];
        if (error.severity < leastSeverity)
            continue;
        if (!joined.empty())
            joined += '\n';
        joined += error.text;
    }
    text = joined;
}

void KIT_ErrorManager::clearAndDestroyErrors() {
    if (getSeverity() == 0)
        return;
    const KIT_LockHolder holder(lock);
    errors.clear();
    severity.store(0, std::memory_order_relaxed);
}
