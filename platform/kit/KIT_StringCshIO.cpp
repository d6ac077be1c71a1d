// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/kit/KIT_StringCshIO.h>

void KIT_StringCshIO::clear() {
    outName.clear();
    errName.clear();
    inName.clear();
    appendOut = false;
    appendErr = false;
    missingName = false;
}
