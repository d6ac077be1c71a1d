// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cassert>
#include <type_traits>
#include <vector>

/// A list of pointers, of which each may be null. The list does not own what they point to; the comment at each
/// field of this type says what does.
template <class T>
class KIT_PtrArray {
    static_assert(std::is_pointer_v<T>);

public:
    int entries() const { return static_cast<int>(pointers.size()); }
    /// i must be inside the count.
    T &operator[](int i) {
        assert(i >= 0 && i < entries());
        return pointers[static_cast<unsigned>(i)];
    }
    T operator[](int i) const {
        assert(i >= 0 && i < entries());
        return pointers[static_cast<unsigned>(i)];
    }
    /// Returns null when the list is empty.
    T last() const { return pointers.empty() ? nullptr : pointers.back(); }
    auto begin() { return pointers.begin(); }
    auto end() { return pointers.end(); }
    auto begin() const { return pointers.begin(); }
    auto end() const { return pointers.end(); }

    void append(T pointer) { pointers.push_back(pointer); }
    /// Returns the index of the first entry that is pointer; -1 when there is none.
    int find(T pointer) const {
        const auto found = std::find(pointers.begin(), pointers.end(), pointer);
        return found == pointers.end() ? -1 : static_cast<int>(found - pointers.begin());
    }
    /// Removes the first entry that is pointer and closes the gap; false when there is none.
    bool remove(T pointer) {
        const int i = find(pointer);
        removeAt(i);
        return i >= 0;
    }
    /// Removes one entry and closes the gap. Nothing happens outside the count.
    void removeAt(int i) {
        if (i >= 0 && i < entries())
            pointers.erase(pointers.begin() + i);
    }
    /// Drops entries at the end, or adds null ones.
    void resize(int count) { pointers.resize(static_cast<unsigned>(count), nullptr); }
    /// Drops the null entries; the others keep their order.
    void collapse() { std::erase(pointers, nullptr); }
    void clear() { pointers.clear(); }

    /// Orders the entries by a function of two of them, whose result is negative, 0 or positive as for strcmp.
    /// Entries for which it is 0 keep their order.
    template <class Compare>
    void sort(Compare compare) {
        std::stable_sort(pointers.begin(), pointers.end(), [&](T a, T b) { return compare(a, b) < 0; });
    }

private:
    std::vector<T> pointers;
};

using KIT_PtrArrayRaw = KIT_PtrArray<void *>;
