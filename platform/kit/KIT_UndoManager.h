// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/kit/KIT_Export.h>

/// Whether changes are recorded so that they can be taken back. They are from the start.
class CMD_API KIT_UndoManager {
public:
    static void enableUndoCreation() { theCreationEnabled = true; }
    static void disableUndoCreation() { theCreationEnabled = false; }
    static bool isUndoCreationEnabled() { return theCreationEnabled; }

    /// Back to the state of the start, for when the last user is gone.
    void clearUndoFlags() { theCreationEnabled = true; }

private:
    static bool theCreationEnabled;
};

/// The one of the process.
CMD_API KIT_UndoManager *KITgetUndoManager();
