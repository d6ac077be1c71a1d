// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <iosfwd>

#include <orvlang/platform/kit/KIT_Export.h>

/// A member of a KIT_LinkList, which owns it from `append` on.
class CMD_API KIT_LinkNode {
public:
    KIT_LinkNode() = default;
    virtual ~KIT_LinkNode();
    KIT_LinkNode(const KIT_LinkNode &) = delete;
    KIT_LinkNode &operator=(const KIT_LinkNode &) = delete;

    virtual const char *className() const;
    /// Writes what the node is, for people: here the class name.
    virtual void outTo(std::ostream &os) const;

    /// Null at the end of the list.
    KIT_LinkNode *getNext() const { return next; }

private:
    friend class KIT_LinkList;

    KIT_LinkNode *next = nullptr;   // both borrowed
    KIT_LinkNode *previous = nullptr;
};
