// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/fml/FML.h>
#include <orvlang/platform/fml/FML_Registry.h>
#include <orvlang/platform/kit/KIT_Char.h>

#include <algorithm>
#include <ostream>
#include <string>
#include <string_view>

namespace {

/// The longest usage that a list keeps in its first column.
constexpr std::size_t theUsageWidth = 30;

std::string toLower(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(), KITtoLower);
    return lower;
}

/// The two parts of an entry: how the function is called, and what it does.
std::string_view usageOf(std::string_view entry) {
    return entry.substr(0, entry.find('\n'));
}

std::string_view descriptionOf(std::string_view entry) {
    const std::size_t end = entry.find('\n');
    return end == std::string_view::npos ? std::string_view() : entry.substr(end + 1);
}

void printEntry(std::ostream &os, std::string_view name, std::string_view entry) {
    os << (entry.empty() ? name : usageOf(entry)) << '\n';
    std::string_view rest = descriptionOf(entry);
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        os << "    " << rest.substr(0, end) << '\n';
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
}

/// One line of a list: the usage, and the first line of what the function does.
void printLine(std::ostream &os, std::string_view name, std::string_view entry) {
    const std::string_view usage = entry.empty() ? name : usageOf(entry);
    const std::string_view description = descriptionOf(entry);
    os << usage;
    if (!description.empty())
        os << std::string(usage.size() < theUsageWidth ? theUsageWidth - usage.size() : 0, ' ') << "  "
           << description.substr(0, description.find('\n'));
    os << '\n';
}

}   // namespace

void fml_PrintHelp(std::ostream &os, const char *name, const char *keyword) {
    const auto entries = FML_Registry::get().getHelp();
    if (name) {
        const auto found = entries.find(name);
        if (found != entries.end())
            printEntry(os, found->first, found->second);
        else
            os << "No expression function is called " << name << '\n';
    } else {
        const std::string wanted = toLower(keyword ? keyword : "");
        for (const auto &[function, entry] : entries)
            if (toLower(function + '\n' + entry).find(wanted) != std::string::npos)
                printLine(os, function, entry);
    }
    os.flush();
}
