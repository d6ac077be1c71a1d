// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/edit/KIT_Recall.h>

#include <algorithm>

namespace {

constexpr std::size_t theMostLines = 10000;

}   // namespace

void KIT_Recall::add(std::string_view line) {
    if (line.empty() || (!lines.empty() && lines.back() == line))
        return;
    if (lines.size() == theMostLines)
        lines.pop_front();
    lines.emplace_back(line);
}

/// The nearest line before `from` that matches.
template <class Matches>
std::size_t KIT_Recall::older(std::size_t from, Matches matches) const {
    for (std::size_t i = std::min(from, lines.size()); i-- > 0;)
        if (matches(lines[i]))
            return i;
    return None;
}

/// The nearest line from `from` on that matches.
template <class Matches>
std::size_t KIT_Recall::newer(std::size_t from, Matches matches) const {
    for (std::size_t i = from; i < lines.size(); ++i)
        if (matches(lines[i]))
            return i;
    return None;
}

std::size_t KIT_Recall::findOlderAlike(std::string_view start, std::string_view shown, std::size_t from) const {
    return older(from, [=](const std::string &line) { return line.starts_with(start) && line != shown; });
}

std::size_t KIT_Recall::findNewerAlike(std::string_view start, std::string_view shown, std::size_t from) const {
    return newer(from + 1, [=](const std::string &line) { return line.starts_with(start) && line != shown; });
}

std::size_t KIT_Recall::searchOlder(std::string_view part, std::size_t from) const {
    return older(from + 1, [part](const std::string &line) { return line.find(part) != line.npos; });
}

std::size_t KIT_Recall::searchNewer(std::string_view part, std::size_t from) const {
    return newer(from, [part](const std::string &line) { return line.find(part) != line.npos; });
}
