// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include <orvlang/platform/kit/KIT_IStream.h>

/// Lines or bytes of a file, which is read whole when the object is made. A file that cannot be read is empty.
class CMD_API KIT_IFStream : public KIT_IStream {
public:
    /// Read type as for KIT_IStream.
    KIT_IFStream(const char *name, int readType);
    ~KIT_IFStream() override;

    /// False when the file did not open or a read failed; what came before the failure can be read.
    bool isOpen() const { return open; }

private:
    std::string content;
    bool open = false;
};
