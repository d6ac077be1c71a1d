// SPDX-License-Identifier: Apache-2.0
// Joins the command language to the expressions.
#include <orvlang/engine/CMD_Manager.h>

#include <orvlang/platform/fml/FML.h>

bool CMD_Manager::theLibraryGlueNeeded = true;

void CMD_Manager::initLibraryGlue() {
    if (!theLibraryGlueNeeded)
        return;
    theLibraryGlueNeeded = false;
    setContext();
    TRK_Manager::initExpressionLibrary();
    fml_SetOptimization(0);
    TRK_Manager::initLibraryGlue();
}
