// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/kit/KIT_LinkList.h>

#include <ostream>
#include <utility>

KIT_LinkNode::~KIT_LinkNode() = default;

const char *KIT_LinkNode::className() const {
    return "KIT_LinkNode";
}

void KIT_LinkNode::outTo(std::ostream &os) const {
    os << className();
}

KIT_LinkList::~KIT_LinkList() {
    destroyAll();
}

void KIT_LinkList::reverse() {
    for (KIT_LinkNode *node = first; node; node = node->previous)
        std::swap(node->next, node->previous);
    std::swap(first, last);
}

const char *KIT_LinkList::className() const {
    return "KIT_LinkList";
}

void KIT_LinkList::outTo(std::ostream &os) const {
    os << className() << '\n';
    for (const KIT_LinkNode *node : *this) {
        node->outTo(os);
        os << '\n';
    }
}

void KIT_LinkList::append(std::unique_ptr<KIT_LinkNode> node) {
    KIT_LinkNode *const added = node.release();
    added->previous = last;
    (last ? last->next : first) = added;
    last = added;
    ++count;
}

void KIT_LinkList::destroy(KIT_LinkNode *node) {
    if (!node)
        return;
    (node->previous ? node->previous->next : first) = node->next;
    (node->next ? node->next->previous : last) = node->previous;
    --count;
    delete node;
}

void KIT_LinkList::destroyAll() {
    while (first)
        destroy(first);
}
