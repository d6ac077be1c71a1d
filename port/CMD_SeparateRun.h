// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/fml/FML.h>
#include <orvlang/platform/kit/KIT_Nesting.h>

/// Separates a run of the language from a statement that waits during it: when one of the two nests too deep, or leaves
/// an expression error, the other is not affected.
class CMD_SeparateRun {
public:
    CMD_SeparateRun() = default;
    ~CMD_SeparateRun() { FML::theErrNo = pendingError; }
    CMD_SeparateRun(const CMD_SeparateRun &) = delete;
    CMD_SeparateRun &operator=(const CMD_SeparateRun &) = delete;

private:
    const KIT_Nesting::Scope apart{ KIT_Nesting::Scope::Apart };
    const int pendingError = FML::theErrNo;
};
