// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/kit/KIT_Export.h>

/// The plug-in libraries: the shared objects (*.so) in the folder `dso` of each directory of the general path but
/// those of $ORP and $JOB, sorted by name within a folder. They stay loaded until the process ends.
class CMD_API KIT_DSO {
public:
    /// Calls the function `extern "C" void function(void *argument)` of each plug-in library that has one, from the
    /// last library to the first, and returns the number of calls. Load: non-zero loads the libraries that are not
    /// loaded yet, 0 skips them. One that does not load is named once on standard error. One whose function throws
    /// is named there as well, and the others are called.
    static int runReverse(const char *function, void *argument, int load);
    /// Returns the path of the library whose function runs now, the innermost one; null while none runs.
    static const char *getRunningFile();
};
