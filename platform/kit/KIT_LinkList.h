// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <iosfwd>
#include <iterator>
#include <memory>

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

/// A list of nodes in order of appending, which it owns.
class CMD_API KIT_LinkList {
public:
    class iterator {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = KIT_LinkNode *;
        using difference_type = std::ptrdiff_t;
        using pointer = KIT_LinkNode *const *;
        using reference = KIT_LinkNode *;

        explicit iterator(KIT_LinkNode *at = nullptr) : node(at) {}
        KIT_LinkNode *operator*() const { return node; }
        iterator &operator++() {
            node = node->getNext();
            return *this;
        }
        iterator operator++(int) {
            iterator before = *this;
            ++*this;
            return before;
        }
        bool operator==(const iterator &other) const = default;

    private:
        KIT_LinkNode *node;
    };

    KIT_LinkList() = default;
    virtual ~KIT_LinkList();
    KIT_LinkList(const KIT_LinkList &) = delete;
    KIT_LinkList &operator=(const KIT_LinkList &) = delete;

    /// Turns the order round.
    virtual void reverse();
    virtual const char *className() const;
    /// Writes the class name and each node on a line of its own, for people.
    virtual void outTo(std::ostream &os) const;

    /// Puts the node at the end. It must be in no list.
    void append(std::unique_ptr<KIT_LinkNode> node);
    /// Takes the node, which must be in this list, out of it and deletes it. Null does nothing.
    void destroy(KIT_LinkNode *node);
    void destroyAll();

    size_t entries() const { return count; }
    bool isEmpty() const { return !first; }
    /// Null when the list is empty.
    KIT_LinkNode *getFirst() const { return first; }
    KIT_LinkNode *getLast() const { return last; }
    /// A node may be destroyed once the iterator has gone past it.
    iterator begin() const { return iterator(first); }
    iterator end() const { return iterator(); }

private:
    KIT_LinkNode *first = nullptr;   // the chain from here is owned
    KIT_LinkNode *last = nullptr;
    size_t count = 0;
};
