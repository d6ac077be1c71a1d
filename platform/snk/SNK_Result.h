// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/kit/KIT_Export.h>
#include <orvlang/platform/kit/KIT_String.h>
#include <orvlang/platform/kit/KIT_StringArray.h>

/// The result of a call into Python. `kind` decides which of the values is set; the others have their first values.
struct CMD_API SNK_Result {
    enum Type {
        None = 0,          // statements have run; there is no value
        Float = 1,         // as asked for: doubleValue
        String = 2,        // as asked for: stringValue
        StringArray = 5,   // as asked for: stringArray
        WrongType = 8,     // the value is not of the kind asked for and does not convert to it
        Exit = 9,          // the code called sys.exit; the process continues
        Exception = 10     // the code raised an exception, or could not run at all: errorText and detailText
    };

    Type kind = None;
    double doubleValue = 0;
    KIT_String stringValue;
    KIT_StringArray stringArray;
    KIT_String errorText;    // the exception in short, `ValueError: no such lamp`; without a line end
    KIT_String detailText;   // the exception in full: the traceback as Python shows it, ended by a line end
};
