// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/kit/KIT_Export.h>

#include <string>
#include <string_view>
#include <vector>

/// A row of numbers: the value of a symbol of the type FML_VECTOR.
class CMD_API fml_Vector {
public:
    /// Replaces the entries by the numbers in `text`: numbers with blanks or commas between them, with or without
    /// one pair of square brackets around them all. Returns non-zero on success; 0, with the entries unchanged, when
    /// `text` is null or anything else. Nothing but blanks is not a vector, while `[]` is the empty one.
    int scan(std::string_view text);
    int scan(const char *text) { return scan(std::string_view(text ? text : "")); }

    int entries() const { return static_cast<int>(values.size()); }
    /// Grows to at least `count` entries; new ones are 0.
    void grow(int count);
    /// Stores at `index`; an index outside the vector is ignored.
    void setValue(int index, double value);
    /// Returns the entry at `index`; 0 outside the vector.
    double getValue(int index) const;
    void append(double value) { values.push_back(value); }
    void clear() { values.clear(); }

    /// Appends the text that scan reads back: `[1, 2, 3]`.
    void appendText(std::string &out) const;

    std::vector<double>::const_iterator begin() const { return values.begin(); }
    std::vector<double>::const_iterator end() const { return values.end(); }

private:
    std::vector<double> values;
};
