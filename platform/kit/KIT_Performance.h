// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <orvlang/platform/kit/KIT_Export.h>

/// Measures how long pieces of work take, such as the statements of a language. Pieces nest. Of each there is the total
/// time and its own, which is the total without the pieces inside. Not for several threads at a time.
///
/// The type of the log is its destination. With the type "stdout" each piece is reported on standard output at its end;
/// with the type "window" they are counted, and a table is shown when that type is left, logging is switched off or the
/// process ends.
class CMD_API KIT_Performance {
public:
    enum : int { logOff = 0, logWindow = 1, logStdout = 2 };
    enum : int { filterNone = 0, filterMilliseconds = 1, filterSeconds = 2 };
    enum : unsigned { flagEnabled = 1 };

    // For the caller that controls the log: to be read, the filter also to be set.

    int type = logOff;
    /// Pieces that took less than that unit, all together in a row of the table, are left out.
    int timeFilter = filterNone;
    unsigned flags = 0;

    void logType(int newType);
    void logEnable(int on);
    bool isEnabled() const { return flags & flagEnabled; }

    /// Brackets a piece of work; an end must follow each begin, whether logging is still on or not. The end has
    /// the name of the piece and its line in a script. Without a script (an empty file) it counts for its name alone, and
    /// without a name only as time that passed inside of another piece.
    void begin();
    void end(std::string_view name, std::string_view file, int line);

    /// Sets a function of the host that shows the table in a window of its own. With null, and at the end of a process that
    /// does not end through KIT_Exit, the table goes to standard error.
    using ShowFunction = void (*)(const char *table, void *data);
    void setWindow(ShowFunction function, void *functionData);
    /// Shows the table, unless it is empty, and begins a new one.
    void showTable();

private:
    struct Piece {
        long long start;
        long long inside = 0;   // time of the pieces inside
    };
    /// Times are nanoseconds.
    struct Row {
        long long count = 0;
        long long total = 0;
        long long own = 0;
        long long longest = 0;
    };
    using Table = std::unordered_map<std::string, Row>;

    bool isFiltered(long long time) const;
    void write(const std::string &place, std::string_view name, long long total, long long own) const;
    void appendRows(const Table &table, std::string_view heading, std::string &text) const;

    std::vector<Piece> pieces;   // those under way
    Table names;
    Table places;
    ShowFunction show = nullptr;
    void *showData = nullptr;   // borrowed
};

/// The one of the process.
CMD_API KIT_Performance *KITgetPerformance();
