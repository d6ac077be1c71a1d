// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/osl/KIT_Lock.h>

/// Holds a lock for the length of a block.
class CMD_API KIT_LockHolder {
public:
    explicit KIT_LockHolder(KIT_Lock &held) : lock(held) { lock.lockLW(); }
    ~KIT_LockHolder() { lock.unlock(); }
    KIT_LockHolder(const KIT_LockHolder &) = delete;
    KIT_LockHolder &operator=(const KIT_LockHolder &) = delete;

private:
    KIT_Lock &lock;
};
