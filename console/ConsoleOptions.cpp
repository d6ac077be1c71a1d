// SPDX-License-Identifier: Apache-2.0
#include "ConsoleOptions.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstring>
#include <iostream>
#include <string_view>

#include <getopt.h>

#include <orvlang/version.h>

namespace {

constexpr char theHelp[] = R"(Usage: orvlang [OPTION...] [SCRIPT [ARGUMENT...]]
Runs a script, or the lines of standard input when there is none.

  -c TEXT     run TEXT, which may have several lines
  -s          safe mode: only commands that are marked safe, no redirection
  -n NAME     name of the command manager (orvlang)
  -P NAME[=OPTIONS]
              installs the command NAME, which the Python module
              orvlang_commands implements; OPTIONS are its option letters,
              with a `:` after each that takes a value; repeatable
  --connect [HOST:]PORT
              run TEXT, or the lines of standard input, in the program that
              has opened that command port, and show what comes of it
  -h, --help  show this text
  --version   show the version

The exit status is that of the last statement, or what `quit` says; 1 when the
script can't be opened, the input ends too early, output is lost or the port
does not answer, 2 for wrong options.
)";

constexpr std::string_view theByteOrderMark = "\xEF\xBB\xBF";

enum LongOption { optionHelp = 256, optionVersion, optionConnect };

constexpr option theLongOptions[] = {
    { "connect", required_argument, nullptr, optionConnect },
    { "help", no_argument, nullptr, optionHelp },
    { "version", no_argument, nullptr, optionVersion },
    {},
};

ConsoleOptions ended(int status) {
    ConsoleOptions options;
    options.action = ConsoleOptions::Action::Nothing;
    options.status = status;
    return options;
}

ConsoleOptions refused() {
    std::cerr << "Try 'orvlang --help'.\n";
    return ended(2);
}

/// Adds the command of NAME or NAME=OPTIONS, and ends the name with a NUL in the text itself. Returns false when the
/// name cannot be one of Python's.
bool addPythonCommand(char *text, std::vector<ConsoleOptions::PythonCommand> &commands) {
    char *const end = text + std::strcspn(text, "=");
    const bool isNamed = end != text && !(text[0] >= '0' && text[0] <= '9') &&
                         std::all_of(text, end, [](char c) { return std::isalnum(c & 0xff) || c == '_'; });
    if (!isNamed)
        return false;
    const char *const options = *end ? end + 1 : end;
    *end = '\0';
    commands.push_back({ text, options });
    return true;
}

/// Parses [HOST:]PORT. A HOST that contains colons is in brackets.
bool parseAddress(std::string_view text, ConsoleOptions &options) {
    const size_t colon = text.rfind(':');
    if (colon != text.npos) {
        std::string_view host = text.substr(0, colon);
        if (host.starts_with('[') && host.ends_with(']'))
            host = host.substr(1, host.size() - 2);
        if (host.empty())
            return false;
        options.host = host;
        text.remove_prefix(colon + 1);
    }
    const char *const end = text.data() + text.size();
    const auto [last, error] = std::from_chars(text.data(), end, options.port);
    return error == std::errc() && last == end && options.port > 0;
}

}   // namespace

ConsoleOptions ConsoleOptions::parse(int argc, char **argv) {
    ConsoleOptions options;
    bool isLocal = false;   // an option was given that --connect has no use for
    static char name[] = "orvlang";
    argv[0] = name;   // messages of getopt_long start with it
    // "+": the options end at the script; what follows are its own arguments.
    for (int letter; (letter = getopt_long(argc, argv, "+c:hsn:P:", theLongOptions, nullptr)) != -1;) {
        isLocal |= letter == 's' || letter == 'n' || letter == 'P';
        switch (letter) {
        case 'c':
            options.action = Action::Text;
            options.text =
                optarg + (std::string_view(optarg).starts_with(theByteOrderMark) ? theByteOrderMark.size() : 0);
            break;
        case 's':
            options.safeMode = true;
            break;
        case 'n':
            options.managerName = optarg;
            break;
        case 'P':
            if (!addPythonCommand(optarg, options.pythonCommands)) {
                std::cerr << "orvlang: no name for a Python command: " << optarg << "\n";
                return refused();
            }
            break;
        case optionConnect:
            if (!parseAddress(optarg, options)) {
                std::cerr << "orvlang: no port: " << optarg << "\n";
                return refused();
            }
            break;
        case 'h':
        case optionHelp:
            std::cout << theHelp;
            return ended(0);
        case optionVersion:
            std::cout << "orvlang " ORVLANG_VERSION_STRING "\n";
            return ended(0);
        default:
            return refused();
        }
    }
    if (options.port && (isLocal || optind < argc)) {
        std::cerr << "orvlang: of the options, --connect goes with -c alone\n";
        return refused();
    }
    if (optind == argc)
        return options;
    if (options.action == Action::Text) {
        std::cerr << "orvlang: with -c there is no script to run: " << argv[optind] << "\n";
        return refused();
    }
    options.action = Action::Script;
    options.words = argv + optind;
    return options;
}
