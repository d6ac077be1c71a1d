// SPDX-License-Identifier: Apache-2.0
#include <orvlang/engine/CMD_Line.h>

#include <cstring>

CMD_Line CMD_Line::copyOf(std::string_view text) {
    const std::shared_ptr<char[]> copy = std::make_shared_for_overwrite<char[]>(text.size() + 1);
    if (!text.empty())
        std::memcpy(copy.get(), text.data(), text.size());
    copy[text.size()] = '\0';
    return { { copy.get(), text.size() }, copy, false };
}

CMD_Line CMD_Line::rest(size_t offset) const {
    CMD_Line line = owner ? CMD_Line{ text.substr(offset), owner, false } : copyOf(text.substr(offset));
    line.historyExpanded = historyExpanded;
    return line;
}
