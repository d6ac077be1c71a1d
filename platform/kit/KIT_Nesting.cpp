// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/kit/KIT_Nesting.h>

#include <orvlang/platform/osl/KIT_Thread.h>

namespace {

struct Count {
    unsigned refusals = 0;
    unsigned start = 0;   // those before the innermost scope
};

// Reached without a call, also in a library that was loaded late.
constinit thread_local Count theCount __attribute__((tls_model("initial-exec")));

}   // namespace

bool KIT_Nesting::isStackShort(std::size_t reserve) {
    if (KIT_Thread::stackLeft() >= reserve)
        return false;
    countRefusal();
    return true;
}

void KIT_Nesting::countRefusal() {
    theCount.refusals++;
}

unsigned KIT_Nesting::getRefusals() {
    return theCount.refusals;
}

bool KIT_Nesting::isOver() {
    return theCount.refusals != theCount.start;
}

KIT_Nesting::Scope::Scope(Kind kind)
    : kind(kind), refusalsAround(theCount.refusals), startAround(theCount.start) {
    theCount.start = theCount.refusals;
}

KIT_Nesting::Scope::~Scope() {
    theCount.start = startAround;
    if (kind == Apart)
        theCount.refusals = refusalsAround;
}
