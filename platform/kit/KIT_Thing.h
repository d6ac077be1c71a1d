// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/kit/KIT_Export.h>

/// One borrowed pointer to anything; its user knows the type.
class CMD_API KIT_Thing {
public:
    KIT_Thing(void *to = nullptr) : pointer(to) {}

    void *get() const { return pointer; }
    template <typename T>
    T *as() const {
        return static_cast<T *>(pointer);
    }

private:
    void *pointer;
};
