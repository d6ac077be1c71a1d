// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/kit/KIT_Export.h>
#include <orvlang/platform/kit/KIT_String.h>

#include <string_view>
#include <utility>
#include <vector>

/// A list of texts, copies of its own, of which each may be null.
class CMD_API KIT_StringArray {
public:
    KIT_StringArray() = default;
    KIT_StringArray(const KIT_StringArray &other);
    KIT_StringArray(KIT_StringArray &&other) noexcept : texts(std::move(other.texts)) { other.texts.clear(); }
    KIT_StringArray &operator=(const KIT_StringArray &other);
    KIT_StringArray &operator=(KIT_StringArray &&other) noexcept;
    ~KIT_StringArray() { clear(); }

    int entries() const { return static_cast<int>(texts.size()); }
    /// Null outside the count too. Good until the entry is removed.
    const char *operator[](int i) const {
        return static_cast<unsigned>(i) < texts.size() ? texts[static_cast<unsigned>(i)] : nullptr;
    }
    const char *last() const { return texts.empty() ? nullptr : texts.back(); }
    /// A walk through the entries; nothing may be added or removed meanwhile.
    const char *const *begin() const { return texts.data(); }
    const char *const *end() const { return texts.data() + texts.size(); }

    /// Appends a copy; null stays null. The copy is saved when text is about to go anyway.
    void append(KIT_String text) { texts.push_back(text.steal()); }
    /// Appends copies of all entries of other.
    void merge(const KIT_StringArray &other);
    /// The first entry that equals text, a null one for null; -1 when there is none.
    int find(const char *text) const;
    /// Removes the entry that find gives and closes the gap; false when there is none.
    bool remove(const char *text);
    /// Removes one entry and closes the gap. Nothing happens outside the count.
    void removeAt(int i);
    /// Drops entries at the end, or adds null ones.
    void resize(int count);
    /// Drops the null entries; the others keep their order.
    void collapse();
    void clear();

    /// Orders the entries by bytes, or, when numbered, with runs of digits by their value
    /// (KIT_String::compareNumberedString). Null entries count as less than all texts.
    void sort(bool ascending, bool numbered);

private:
    std::vector<char *> texts;   // owned, from malloc
};
