// SPDX-License-Identifier: Apache-2.0
#include <orvlang/builtins/CMD_HelpFile.h>

#include <algorithm>
#include <ostream>
#include <string>

#include <orvlang/platform/kit/KIT_Char.h>
#include <orvlang/platform/kit/KIT_IFStream.h>

namespace {

bool isBodyLine(std::string_view line) {
    return line.empty() || KITisSpace(line[0]);
}

}   // namespace

void CMDprintHelpEntry(std::ostream &os, const char *path, const char *name) {
    KIT_IFStream file(path, 0);
    std::string_view line;
    bool inEntry = false;
    while (file.getLine(line, '\n')) {
        if (inEntry && !isBodyLine(line))
            break;
        if (inEntry)
            os << line << '\n';
        else
            inEntry = line == name && (line.empty() || !KITisSpace(line[0]));
    }
    os.flush();
}

void CMDsearchHelpFile(const char *path, std::string_view keyword,
                       const std::function<void(const char *heading)> &found) {
    KIT_IFStream file(path, 0);
    std::string heading;
    std::string lower;
    bool matched = false;
    std::string_view line;
    while (file.getLine(line, '\n')) {
        if (!line.empty() && KITisAlnum(line[0])) {
            heading = line;
            matched = false;
        }
        if (heading.empty() || matched)
            continue;
        lower.resize(line.size());
        std::transform(line.begin(), line.end(), lower.begin(), KITtoLower);
        if (lower.find(keyword) != std::string::npos) {
            matched = true;
            found(heading.c_str());
        }
    }
}
