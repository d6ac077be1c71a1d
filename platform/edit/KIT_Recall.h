// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>

/// The past lines that the line editor brings back. Oldest first.
class KIT_Recall {
public:
    static constexpr std::size_t None = -1;

    /// Adds a line, unless it is empty or equal to the latest one. Drops the oldest line when there are very many.
    void add(std::string_view line);
    std::size_t size() const { return lines.size(); }
    const std::string &operator[](std::size_t i) const { return lines[i]; }

    /// Returns the index of the nearest line before `from`, or after it, that starts with the text and is not the one
    /// that is shown; None if there is none.
    std::size_t findOlderAlike(std::string_view start, std::string_view shown, std::size_t from) const;
    std::size_t findNewerAlike(std::string_view start, std::string_view shown, std::size_t from) const;
    /// Returns the index of the nearest line from `from` on, towards the oldest or the newest, that contains the text.
    std::size_t searchOlder(std::string_view part, std::size_t from) const;
    std::size_t searchNewer(std::string_view part, std::size_t from) const;

private:
    template <class Matches>
    std::size_t older(std::size_t from, Matches matches) const;
    template <class Matches>
    std::size_t newer(std::size_t from, Matches matches) const;

    std::deque<std::string> lines;
};
