// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/kit/KIT_StringArray.h>

#include <algorithm>
#include <cstring>

void KIT_StringArray::merge(const KIT_StringArray &other) {
    const int count = other.entries();   // other may be this one
    texts.reserve(texts.size() + static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        append(other[i]);
}

int KIT_StringArray::find(const char *text) const {
    const auto same = [text](const KIT_String &entry) {
        return text && !entry.isNull() ? std::strcmp(entry.c_str(), text) == 0 : !text && entry.isNull();
    };
    const auto found = std::find_if(texts.begin(), texts.end(), same);
    return found == texts.end() ? -1 : static_cast<int>(found - texts.begin());
}

bool KIT_StringArray::remove(const char *text) {
    const int i = find(text);
    removeAt(i);
    return i >= 0;
}

void KIT_StringArray::removeAt(int i) {
    if (i >= 0 && i < entries())
        texts.erase(texts.begin() + i);
}

void KIT_StringArray::resize(int count) {
    texts.resize(static_cast<std::size_t>(std::max(count, 0)));
}

void KIT_StringArray::collapse() {
    std::erase_if(texts, [](const KIT_String &text) { return text.isNull(); });
}

void KIT_StringArray::sort(bool ascending, bool numbered) {
    const auto before = [numbered](const KIT_String &a, const KIT_String &b) {
        if (a.isNull() || b.isNull())
            return a.isNull() && !b.isNull();
        return (numbered ? KIT_String::compareNumberedString(a.c_str(), b.c_str(), true)
                         : std::strcmp(a.c_str(), b.c_str())) < 0;
    };
    if (ascending)
        std::stable_sort(texts.begin(), texts.end(), before);
    else
        std::stable_sort(texts.begin(), texts.end(),
                         [&](const KIT_String &a, const KIT_String &b) { return before(b, a); });
}
