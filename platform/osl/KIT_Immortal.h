// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <utility>

/// A process-wide object that is never destroyed: it may be used from exit callbacks, destructors of other statics
/// and threads that outlive main, and the end of the process does not spend time on it. As a `constinit` variable
/// it costs nothing at the start either.
template <typename T>
union KIT_Immortal {
    template <typename... Args>
    constexpr explicit KIT_Immortal(Args &&...args) : object(std::forward<Args>(args)...) {}
    constexpr ~KIT_Immortal() {}

    T object;
};
