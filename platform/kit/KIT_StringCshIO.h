// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/kit/KIT_Export.h>
#include <orvlang/platform/kit/KIT_String.h>

/// The redirections of one statement. Of several for output the last one counts, and it alone is recorded.
class CMD_API KIT_StringCshIO {
public:
    /// Removes all redirections.
    void clear() {
        outName.clear();
        errName.clear();
        inName.clear();
        appendOut = false;
        appendErr = false;
        missingName = false;
    }

    KIT_String outName;         // after > or >>
    KIT_String errName;         // after >& or >>&: output and errors
    KIT_String inName;          // after <
    bool appendOut = false;     // outName came with >>
    bool appendErr = false;     // errName came with >>&
    bool missingName = false;   // some operator had no name after it, or an empty one
};
