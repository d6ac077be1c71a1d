// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/kit/KIT_CshReference.h>

#include <orvlang/platform/kit/KIT_Char.h>

#include <algorithm>

namespace {

bool isNameStart(char c) {
    return KITisAlpha(c) || c == '_';
}

}   // namespace

bool KIT_CshReference::read(std::size_t at, bool quoted) {
    std::size_t start = at + 1;
    const bool braced = start < text.size() && text[start] == '{';
    if (braced)
        ++start;
    if (start >= text.size() || !isNameStart(text[start]))
        return false;
    std::size_t end = start + 1;
    while (end < text.size() && (isNameStart(text[end]) || KITisDigit(text[end])))
        ++end;
    foundName = text.substr(start, end - start);
    foundFallback = {};
    foundForm = braced ? Form::braced : Form::plain;
    if (!braced) {
        foundLength = end - at;
        return true;
    }
    if (text.substr(end, 2) == ":-") {
        if (!readFallback(end + 2, quoted))
            return false;
        end += 2 + foundFallback.size();
        foundForm = Form::withFallback;
    } else if (end >= text.size() || text[end] != '}') {
        return false;
    }
    foundLength = end + 1 - at;
    return true;
}

bool KIT_CshReference::readFallback(std::size_t start, bool quoted) {
    if (start < noBraceBefore)
        return false;
    const std::size_t end = std::min(text.find_first_of(quoted ? "}\"" : "}", start), text.size());
    if (end == text.size() || text[end] != '}') {
        noBraceBefore = end;
        return false;
    }
    foundFallback = text.substr(start, end - start);
    return true;
}
