// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

class KIT_CmdLineReader;

/// The file that keeps the typed lines for later runs, $XDG_STATE_HOME/orvlang/history. Several programs may use it at
/// once: each appends its lines, and none is lost. Only the user can read it. Errors are ignored: the program works
/// without it.
class RecallFile {
public:
    RecallFile();

    /// Adds the lines of the file to the recall of the reader.
    void seed(KIT_CmdLineReader &reader);
    /// Adds an entry of one or more lines to the file and to the recall of the reader. An entry that starts with a
    /// blank is a secret and is not kept.
    void add(KIT_CmdLineReader &reader, std::string text);

private:
    void makeFolder() const;
    void shorten(std::string_view kept) const;

    const std::string path;   // empty when no folder for it is known
    std::string latest;       // entry of this run
};
