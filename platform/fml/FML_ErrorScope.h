// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/fml/FML.h>

/// Sets FML::theErrNo back to its earlier value at the end of a block, so that an error that is still to be reported
/// survives what runs in between.
class FML_ErrorScope {
public:
    enum Restore {
        Always,
        IfSet,   // an error that arises within the block is kept when there was none before
    };

    explicit FML_ErrorScope(Restore restore) : restore(restore) {}
    ~FML_ErrorScope() {
        if (restore == Always || before != FML_NO_ERROR)
            FML::theErrNo = before;
    }
    FML_ErrorScope(const FML_ErrorScope &) = delete;
    FML_ErrorScope &operator=(const FML_ErrorScope &) = delete;

private:
    const Restore restore;
    const int before = FML::theErrNo;
};
