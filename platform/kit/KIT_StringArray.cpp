// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/kit/KIT_StringArray.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>

KIT_StringArray::KIT_StringArray(const KIT_StringArray &other) {
    merge(other);
}

KIT_StringArray &KIT_StringArray::operator=(const KIT_StringArray &other) {
    KIT_StringArray copy(other);
    texts.swap(copy.texts);
    return *this;
}

KIT_StringArray &KIT_StringArray::operator=(KIT_StringArray &&other) noexcept {
    texts.swap(other.texts);
    return *this;
}

void KIT_StringArray::merge(const KIT_StringArray &other) {
    const int count = other.entries();   // other may be this one
    texts.reserve(texts.size() + static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        append(other[i]);
}

int KIT_StringArray::find(const char *text) const {
    const auto same = [text](const char *entry) {
        return text && entry ? std::strcmp(entry, text) == 0 : text == entry;
    };
    const auto place = std::find_if(texts.begin(), texts.end(), same);
    return place == texts.end() ? -1 : static_cast<int>(place - texts.begin());
}

bool KIT_StringArray::remove(const char *text) {
    const int i = find(text);
    removeAt(i);
    return i >= 0;
}

void KIT_StringArray::removeAt(int i) {
    if (i < 0 || i >= entries())
        return;
    std::free(texts[static_cast<unsigned>(i)]);
    texts.erase(texts.begin() + i);
}

void KIT_StringArray::resize(int count) {
    const std::size_t size = static_cast<std::size_t>(std::max(count, 0));
    for (std::size_t i = size; i < texts.size(); ++i)
        std::free(texts[i]);
    texts.resize(size, nullptr);
}

void KIT_StringArray::collapse() {
    std::erase(texts, nullptr);
}

void KIT_StringArray::clear() {
    resize(0);
}

void KIT_StringArray::sort(bool ascending, bool numbered) {
    const auto before = [numbered](const char *a, const char *b) {
        if (!a || !b)
            return !a && b;
        return (numbered ? KIT_String::compareNumberedString(a, b, true) : std::strcmp(a, b)) < 0;
    };
    if (ascending)
        std::stable_sort(texts.begin(), texts.end(), before);
    else
        std::stable_sort(texts.begin(), texts.end(),
                         [&](const char *a, const char *b) { return before(b, a); });
}
