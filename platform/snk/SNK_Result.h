// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/kit/KIT_Export.h>
#include <orvlang/platform/kit/KIT_String.h>
#include <orvlang/platform/kit/KIT_StringArray.h>

/// What a call into Python came to. `kind` tells which of the values counts; the others are as they start.
struct CMD_API SNK_Result {
    enum Type {
        None = 0,          // statements have run; there is no value
        Float = 1,         // asked for and given: doubleValue
        String = 2,        // asked for and given: stringValue
        StringArray = 5,   // asked for and given: stringArray
        WrongType = 8,     // the value is not of the kind asked for and does not convert to it
        Exit = 9,          // the code called sys.exit; the process goes on
        Exception = 10     // the code raised an exception, or could not run at all: errorText and detailText
    };

    Type kind = None;
    double doubleValue = 0;
    KIT_String stringValue;
    KIT_StringArray stringArray;
    KIT_String errorText;    // the exception in short, `ValueError: no such lamp`; no line end behind it
    KIT_String detailText;   // the exception in full: the traceback as Python shows it, ended by a line end
};
