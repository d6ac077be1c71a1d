// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

class KIT_CmdLineReader;

/// The file in which the lines that were typed outlive the program, $XDG_STATE_HOME/orvlang/history. Several programs may
/// use it at once: each adds its lines at the end, and none is lost. Nobody but the user can read it. Whatever goes wrong
/// with it is passed over: it is a help and nothing more.
class RecallFile {
public:
    RecallFile();

    /// Has the reader bring the lines back that the file holds.
    void seed(KIT_CmdLineReader &reader);
    /// Keeps an entry of one or more lines, in the file and for the reader. One that begins with a blank is a secret and
    /// is not kept.
    void add(KIT_CmdLineReader &reader, std::string text);

private:
    void makeFolder() const;
    void shorten(std::string_view kept) const;

    const std::string path;   // empty when there is no place for it
    std::string latest;       // line of this run
};
