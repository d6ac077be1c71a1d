// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/kit/KIT_Export.h>
#include <orvlang/platform/kit/KIT_String.h>

/// The redirections of one statement. Of several for output the last one counts, and it alone is recorded.
class CMD_API KIT_StringCshIO {
public:
    /// Back to no redirection.
    void clear() {
        outName.clear();
        errName.clear();
        inName.clear();
        appendOut = false;
        appendErr = false;
        missingName = false;
    }

    KIT_String outName;         // behind > or >>
    KIT_String errName;         // behind >& or >>&: output and errors
    KIT_String inName;          // behind <
    bool appendOut = false;     // outName came with >>
    bool appendErr = false;     // errName came with >>&
    bool missingName = false;   // some operator had no name behind it, or an empty one
};
