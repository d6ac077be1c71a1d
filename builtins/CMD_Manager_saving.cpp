// SPDX-License-Identifier: Apache-2.0
// Writing texts so that the language reads them back.
#include <orvlang/engine/CMD_Manager.h>

#include <cstring>
#include <ostream>
#include <string>

#include <orvlang/platform/kit/KIT_ErrorManager.h>

void CMD_Manager::saveCommandString(std::ostream &os, const KIT_String &text) {
    std::string quoted = "'";
    for (const char c : text.view()) {
        if (c == '\'')
            quoted += '\\';
        quoted += c;
    }
    quoted += '\'';
    os << quoted;
    KITcheckOutStream(os, "Save Command String", 0);
}

void CMD_Manager::saveProtectedString(std::ostream &os, const char *text) {
    if (!text || !*text) {
        os << "\"\"";
        return;
    }
    if (!std::strpbrk(text, " \t\n\"'\\$#=&><|()")) {
        os << text;
        return;
    }
    std::string quoted = "'";
    for (; *text; ++text) {
        if (*text == '\'' || *text == '\\')
            quoted += '\\';
        if (*text == '\n')
            quoted += "\\n";
        else
            quoted += *text;
    }
    quoted += '\'';
    os << quoted;
}

void CMD_Manager::expandControlSequences(KIT_String &text) {
    text.expandControlSequences();
}
