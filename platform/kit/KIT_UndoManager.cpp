// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/kit/KIT_UndoManager.h>

static KIT_UndoManager theUndoManager;

bool KIT_UndoManager::theCreationEnabled = true;

KIT_UndoManager *KITgetUndoManager() {
    return &theUndoManager;
}
