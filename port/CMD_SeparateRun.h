// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/fml/FML_ErrorScope.h>
#include <orvlang/platform/kit/KIT_Nesting.h>

/// Separates a run of the language from a statement that waits during it: when one of the two nests too deep, or leaves
/// an expression error, the other is not affected.
class CMD_SeparateRun {
    const KIT_Nesting::Scope apart{ KIT_Nesting::Scope::Apart };
    const FML_ErrorScope pendingError{ FML_ErrorScope::Always };
};
