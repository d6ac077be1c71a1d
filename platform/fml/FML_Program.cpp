// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/fml/FML_Program.h>

#include <algorithm>

std::string_view FML_Program::keep(std::string_view text) {
    char *room = texts.allocate(text.size() + 1);
    *std::copy(text.begin(), text.end(), room) = '\0';
    return { room, text.size() };
}

void FML_Program::clear() {
    code.clear();
    constants.clear();
    references.clear();
    callees.clear();
    stackDepth = 0;
    texts.clear();
}
