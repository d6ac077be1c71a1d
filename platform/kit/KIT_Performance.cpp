// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/kit/KIT_Performance.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <utility>

#include <orvlang/platform/kit/KIT_Exit.h>
#include <orvlang/platform/osl/KIT_Immortal.h>
#include <orvlang/platform/osl/OSL_System.h>

namespace {

KIT_Immortal<KIT_Performance> thePerformance;

void showAtExit(void *) {
    thePerformance.object.showTable();
}

/// For a program that ends without KIT_Exit. Its windows can be gone by then.
void showAtReturn() {
    thePerformance.object.setWindow(nullptr, nullptr);
    thePerformance.object.showTable();
}

/// Appends a number to the right of a column.
void appendColumn(std::string &text, const std::string &number) {
    constexpr size_t theWidth = 12;
    text.append(number.size() < theWidth ? theWidth - number.size() : 1, ' ').append(number);
}

/// Returns seconds with six digits after the point, whatever the host's locale is.
std::string seconds(long long nanoseconds) {
    char text[40];
    std::snprintf(text, sizeof text, "%lld.%06lld", nanoseconds / 1000000000, nanoseconds / 1000 % 1000000);
    return text;
}

}   // namespace

KIT_Performance *KITgetPerformance() {
    return &thePerformance.object;
}

void KIT_Performance::logType(int newType) {
    if (type == logWindow && newType != logWindow)
        showTable();
    type = newType;
}

void KIT_Performance::logEnable(int on) {
    if (!on) {
        showTable();
        flags &= ~flagEnabled;
        return;
    }
    flags |= flagEnabled;
    KIT_Exit::addExitCallback(showAtExit, nullptr);
    [[maybe_unused]] static const int isRegistered = std::atexit(showAtReturn);
}

void KIT_Performance::setWindow(ShowFunction function, void *functionData) {
    show = function;
    showData = functionData;
}

void KIT_Performance::begin() {
    pieces.push_back({ OSLsystem().getMonotonicTime() });
}

void KIT_Performance::end(std::string_view name, std::string_view file, int line) {
    const Piece piece = pieces.back();
    pieces.pop_back();
    const long long total = OSLsystem().getMonotonicTime() - piece.start;
    const long long own = total - piece.inside;
    if (!pieces.empty())
        pieces.back().inside += total;
    if (name.empty() || !isEnabled())
        return;
    std::string place;
    if (!file.empty())
        place.append(file).append(" (").append(std::to_string(line)).append("): ");
    if (type == logStdout)
        return write(place, name, total, own);
    if (type != logWindow)
        return;
    const auto count = [&](Row &row) {
        ++row.count;
        row.total += total;
        row.own += own;
        row.longest = std::max(row.longest, total);
    };
    count(names[std::string(name)]);
    if (!place.empty())
        count(places[place.append(name)]);
}

bool KIT_Performance::isFiltered(long long time) const {
    if (timeFilter == filterMilliseconds)
        return time < 1000000;
    return timeFilter == filterSeconds && time < 1000000000;
}

void KIT_Performance::write(const std::string &place, std::string_view name, long long total,
                            long long own) const {
    if (!isFiltered(total))
        std::cout << place << name << ' ' << seconds(total) << " s, own " << seconds(own) << " s" << std::endl;
}

void KIT_Performance::showTable() {
    std::string text;
    appendRows(std::exchange(names, {}), "command", text);
    appendRows(std::exchange(places, {}), "script line", text);
    if (text.empty())
        return;
    if (show)
        show(text.c_str(), showData);
    else
        std::cerr << text << std::flush;
}

/// The row that took the longest time first.
void KIT_Performance::appendRows(const Table &table, std::string_view heading, std::string &text) const {
    std::vector<const Table::value_type *> rows;
    for (const Table::value_type &row : table)
        if (!isFiltered(row.second.total))
            rows.push_back(&row);
    if (rows.empty())
        return;
    std::sort(rows.begin(), rows.end(), [](const auto *a, const auto *b) {
        return a->second.total != b->second.total ? a->second.total > b->second.total : a->first < b->first;
    });
    for (const char *column : { "count", "total s", "own s", "longest s" })
        appendColumn(text, column);
    text.append("  ").append(heading).append("\n");
    for (const auto *row : rows) {
        appendColumn(text, std::to_string(row->second.count));
        for (const long long time : { row->second.total, row->second.own, row->second.longest })
            appendColumn(text, seconds(time));
        text.append("  ").append(row->first).append("\n");
    }
}
