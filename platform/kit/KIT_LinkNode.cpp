// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/kit/KIT_LinkNode.h>

#include <ostream>

KIT_LinkNode::~KIT_LinkNode() = default;

const char *KIT_LinkNode::className() const {
    return "KIT_LinkNode";
}

void KIT_LinkNode::outTo(std::ostream &os) const {
    os << className();
}
