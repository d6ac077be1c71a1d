// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

/// What the arguments of the program ask for. Borrows their texts from `main`.
struct ConsoleOptions {
    enum class Action {
        Lines,    // run the lines of standard input
        Script,   // run the script that `words` begins with
        Text,     // run `text`
        Nothing   // end with `status`
    };

    /// Parses the arguments. Answers --help, --version and wrong options itself.
    static ConsoleOptions parse(int argc, char **argv);

    Action action = Action::Lines;
    int status = 0;
    /// A command that is written in Python.
    struct PythonCommand {
        const char *name;
        const char *options;
    };

    bool safeMode = false;
    std::vector<PythonCommand> pythonCommands;
    const char *managerName = "orvlang";
    const char *text = nullptr;
    int port = 0;   // of the program that runs the lines or the text; 0: this one
    std::string host = "127.0.0.1";
    char **words = nullptr;   // the script and its arguments, null-terminated
};
