// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>

/// The lines of the past, as the line editor gives them back. Oldest first.
class KIT_Recall {
public:
    static constexpr std::size_t None = -1;

    /// Adds a line, unless it is empty or the same as the latest one. The oldest of very many goes.
    void add(std::string_view line);
    std::size_t size() const { return lines.size(); }
    const std::string &operator[](std::size_t i) const { return lines[i]; }

    /// The nearest line before `from`, or behind it, that begins with the text and is not the one that is shown; None if
    /// there is none.
    std::size_t findOlderAlike(std::string_view start, std::string_view shown, std::size_t from) const;
    std::size_t findNewerAlike(std::string_view start, std::string_view shown, std::size_t from) const;
    /// The nearest line from `from` on, towards the oldest or the newest, that holds the text.
    std::size_t searchOlder(std::string_view part, std::size_t from) const;
    std::size_t searchNewer(std::string_view part, std::size_t from) const;

private:
    template <class Matches>
    std::size_t older(std::size_t from, Matches matches) const;
    template <class Matches>
    std::size_t newer(std::size_t from, Matches matches) const;

    std::deque<std::string> lines;
};
