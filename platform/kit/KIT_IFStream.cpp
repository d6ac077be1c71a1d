// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/kit/KIT_IFStream.h>

#include <orvlang/platform/osl/OSL_File.h>

KIT_IFStream::KIT_IFStream(const char *name, int readType) : KIT_IStream(readType) {
    open = name && OSLreadFile(name, content);
    setMemory(content.data(), content.size());
}

KIT_IFStream::~KIT_IFStream() = default;
