// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

/// What the words behind the program's name ask for. Borrows them from `main`.
struct ConsoleOptions {
    enum class Action {
        Lines,    // take lines from standard input
        Script,   // run the script that `words` begins with
        Text,     // run `text`
        Nothing   // all is said and done: end with `status`
    };

    /// Reads them; answers --help, --version and wrong options itself.
    static ConsoleOptions parse(int argc, char **argv);

    Action action = Action::Lines;
    int status = 0;
    /// A command written in Python; the texts stay as long as the process.
    struct PythonCommand {
        const char *name;
        const char *options;
    };

    bool safeMode = false;
    std::vector<PythonCommand> pythonCommands;
    const char *managerName = "orvlang";
    const char *text = nullptr;
    int port = 0;   // of the program to run lines or text in; 0 for this one
    std::string host = "127.0.0.1";
    char **words = nullptr;   // the script and its arguments, null-terminated
};
