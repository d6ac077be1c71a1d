// SPDX-License-Identifier: Apache-2.0
#include <orvlang/builtins/CMD_Columns.h>

#include <algorithm>
#include <ostream>
#include <string>

namespace {

constexpr size_t theLineWidth = 78;   // leaves a terminal of 80 its last column, and one for a cursor

}   // namespace

void CMDprintColumns(std::ostream &os, const std::vector<std::string_view> &names) {
    if (names.empty())
        return;
    size_t longest = 0;
    for (const std::string_view name : names)
        longest = std::max(longest, name.size());
    const size_t columns = std::max<size_t>(theLineWidth / (longest + 1), 1);
    const size_t width = theLineWidth / columns;
    // The first columns have one name more when the names do not come out even.
    const size_t shortRun = names.size() / columns;
    const size_t longRuns = names.size() % columns;
    const auto runStart = [&](size_t column) { return column * shortRun + std::min(column, longRuns); };
    const size_t rows = shortRun + (longRuns > 0 ? 1 : 0);
    for (size_t row = 0; row < rows; ++row) {
        std::string line;
        for (size_t column = 0; column < columns && runStart(column) + row < runStart(column + 1); ++column) {
            const std::string_view name = names[runStart(column) + row];
            line += name;
            line.append(width - std::min(width, name.size()), ' ');
        }
        os << line << std::endl;
    }
}
