// SPDX-License-Identifier: Apache-2.0
#include <orvlang/symbols/CMD_SaveLines.h>

#include <ostream>

#include <orvlang/engine/CMD_Manager.h>
#include <orvlang/platform/kit/KIT_ErrorManager.h>
#include <orvlang/symbols/CMD_SymbolList.h>

void CMDsaveLines(CMD_Manager &manager, std::ostream &os, const CMD_SymbolList &list,
                  const KIT_StringArray &names, const CMD_SaveForm &form) {
    KIT_String value;
    for (int i = 0; i < names.entries(); ++i) {
        list.getValue(names[i], value);   // empty for one that another thread has just removed
        os << form.beforeName << names[i] << form.beforeValue;
        manager.saveCommandString(os, value);
        os << std::endl;
        if (KITgetErrorSeverity() < KIT_ErrorManager::Failure)
            KITcheckOutStream(os, form.what, 0);
        if (KITgetErrorSeverity() >= KIT_ErrorManager::Failure)
            return;
    }
}
