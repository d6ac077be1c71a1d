// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/kit/KIT_Export.h>
#include <orvlang/platform/kit/KIT_String.h>

#include <cstddef>
#include <iterator>
#include <utility>
#include <vector>

/// A list of texts, copies of its own, of which each may be null.
class CMD_API KIT_StringArray {
public:
    /// Goes through the entries as `const char *`.
    class Iterator {
    public:
        using iterator_category = std::input_iterator_tag;
        using value_type = const char *;
        using difference_type = std::ptrdiff_t;
        using pointer = void;
        using reference = const char *;

        explicit Iterator(const KIT_String *at) : at(at) {}
        const char *operator*() const { return textOf(*at); }
        Iterator &operator++() {
            ++at;
            return *this;
        }
        bool operator==(const Iterator &) const = default;

    private:
        const KIT_String *at;
    };

    int entries() const { return static_cast<int>(texts.size()); }
    /// Returns null outside the count too. The text is valid until the entry is removed.
    const char *operator[](int i) const {
        return static_cast<unsigned>(i) < texts.size() ? textOf(texts[static_cast<unsigned>(i)]) : nullptr;
    }
    const char *last() const { return (*this)[entries() - 1]; }
    // Nothing may be added or removed while the entries are gone through.
    Iterator begin() const { return Iterator(texts.data()); }
    Iterator end() const { return Iterator(texts.data() + texts.size()); }

    /// Appends a copy; null stays null. A text that is moved in is not copied.
    void append(KIT_String text) {
        text.harden();
        texts.push_back(std::move(text));
    }
    /// Appends copies of all entries of other.
    void merge(const KIT_StringArray &other);
    /// Returns the index of the first entry that equals text, of a null one for null; -1 when there is none.
    int find(const char *text) const;
    /// Removes the entry that find returns and closes the gap; false when there is none.
    bool remove(const char *text);
    /// Removes one entry and closes the gap. Nothing happens outside the count.
    void removeAt(int i);
    /// Drops entries at the end, or appends null ones.
    void resize(int count);
    /// Drops the null entries; the others keep their order.
    void collapse();
    void clear() { texts.clear(); }

    /// Orders the entries by bytes, or, when numbered, with runs of digits by their value
    /// (KIT_String::compareNumberedString). Null entries count as less than all texts.
    void sort(bool ascending, bool numbered);

private:
    static const char *textOf(const KIT_String &text) { return text.isNull() ? nullptr : text.c_str(); }

    std::vector<KIT_String> texts;
};
