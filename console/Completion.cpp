// SPDX-License-Identifier: Apache-2.0
#include "Completion.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <filesystem>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <unistd.h>

#include <orvlang/engine/CMD_Manager.h>
#include <orvlang/platform/fml/FML.h>
#include <orvlang/platform/kit/KIT_PathSearch.h>
#include <orvlang/platform/kit/KIT_StringArray.h>
#include <orvlang/symbols/CMD_AliasTable.h>

#include "CompletionWord.h"

namespace {

constexpr char theLettersOfNames[] = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_";

using Names = std::set<std::string>;   // sorted, each once

void append(const Names &names, KIT_StringArray &candidates) {
    for (const std::string &name : names)
        candidates.append(name.c_str());
}

bool isBare(std::string_view name) {
    return std::all_of(name.begin(), name.end(), [](char c) {
        return (c & 0x80) || std::isalnum(static_cast<unsigned char>(c)) ||
               std::string_view("_-./,:+@%").find(c) != std::string_view::npos;
    });
}

/// The name within quotes that are open already, or with an opening one; closed unless the word goes on. Backslashes at
/// the end stand behind the closing quote, which they would otherwise keep open.
std::string quoted(std::string_view name, char open, bool goesOn) {
    const char quote = open ? open : '\'';
    const std::string_view special = quote == '"' ? "\"\\$`" : "'\\";
    const size_t end = goesOn ? name.size() : name.find_last_not_of('\\') + 1;
    std::string text(open ? "" : "'");
    for (const char c : name.substr(0, end)) {
        if (special.find(c) != special.npos)
            text += '\\';
        text += c;
    }
    if (goesOn)
        return text;
    return text + quote + std::string(2 * (name.size() - end), '\\');
}

/// The text for a name that ends its word, within the quotes that are open.
std::string asWord(const CompletionWord &typed, std::string_view name) {
    const bool isQuoted = typed.partQuote || !isBare(name);
    return (isQuoted ? quoted(name, typed.partQuote, false) : std::string(name)) + " ";
}

void addCommands(const CMD_Manager &manager, const CompletionWord &typed, Names &names) {
    KIT_StringArray found;
    manager.matchCommands(typed.word.c_str(), found);
    for (const char *name : found)
        names.insert(asWord(typed, name));
}

void addMatching(const KIT_StringArray &found, const CompletionWord &typed, Names &names) {
    for (const char *name : found)
        if (std::string_view(name).starts_with(typed.word))
            names.insert(asWord(typed, name));
}

/// The names are what the lines of their list begin with.
void addFunctions(std::string_view prefix, const char *after, Names &names) {
    std::stringstream list;
    fml_PrintHelp(list, nullptr, nullptr);
    for (std::string line; std::getline(list, line);)
        if (line.starts_with(prefix))
            names.insert(line.substr(0, line.find_first_of("( ")) + after);
}

bool isFolder(const std::string &path) {
    std::error_code unknown;
    return std::filesystem::is_directory(path, unknown);
}

/// Behind the name of a folder the path may go on.
void addVariables(const CMD_Manager &manager, const CompletionWord &typed, std::string_view prefix,
                  Names &names) {
    const auto add = [&](const std::string &name) {
        if (!name.starts_with(prefix))
            return;
        KIT_String value;
        manager.getEnv(name.c_str(), value);
        const std::string text = typed.hasBrace ? "${" + name + "}" : "$" + name;
        names.insert(text + (isFolder(value.c_str()) ? "/" : typed.quote ? "" : " "));
    };
    KIT_StringArray found;
    manager.getVariableNames(found, 0);
    for (const char *name : found)
        add(name);
    for (char **entry = environ; *entry; ++entry)
        add(std::string(*entry, std::strcspn(*entry, "=")));
}

/// Each letter of the command's option string that no value is told of by.
void addOptions(CMD_Manager &manager, const CompletionWord &typed, Names &names) {
    KIT_String alias;
    std::string command = typed.before[0];
    if (manager.getAlias(command.c_str(), alias)) {
        command = alias.c_str();
        command = command.substr(0, command.find(' '));
    }
    const char *const options = manager.getOptions(command.c_str());
    for (const char *letter = options; letter && *letter; ++letter) {
        const std::string option = { '-', *letter };
        if (*letter != ':' && option.starts_with(typed.word))
            names.insert(option + " ");
    }
}

/// Whether nothing but options comes before the word.
bool isFirstArgument(const CompletionWord &typed) {
    return std::all_of(typed.before.begin() + 1, typed.before.end(),
                       [](const std::string &word) { return word.starts_with('-'); });
}

bool isOptionAwaited(const CompletionWord &typed) {
    return typed.isPlain && typed.word.starts_with('-') && isFirstArgument(typed);
}

struct File {
    std::string name;
    bool isFolder;
};

/// Those whose names begin so; hidden ones only when that is asked for.
std::vector<File> listFolder(const std::string &folder, std::string_view prefix) {
    namespace fs = std::filesystem;
    std::vector<File> files;
    std::error_code failed;
    for (fs::directory_iterator entry(folder.empty() ? "." : folder, failed), end; !failed && entry != end;
         entry.increment(failed)) {
        const std::string name = entry->path().filename();
        if (!name.starts_with(prefix) || (prefix.empty() && name[0] == '.') || name.find('\n') != name.npos)
            continue;
        std::error_code unknown;
        files.push_back({ name, entry->is_directory(unknown) });
    }
    return files;
}

/// What the last part of the word could be.
std::vector<File> listPart(const CompletionWord &typed) {
    return listFolder(typed.word.substr(0, typed.partOffset),
                      std::string_view(typed.word).substr(typed.partOffset));
}

void addFiles(const CompletionWord &typed, Names &names) {
    const std::vector<File> found = listPart(typed);
    const bool areBare =
        typed.partQuote == '\0' &&
        std::all_of(found.begin(), found.end(), [](const File &file) { return isBare(file.name); });
    for (const auto &[name, goesOn] : found) {
        const std::string text = areBare ? name : quoted(name, typed.partQuote, goesOn);
        names.insert(text + (goesOn ? "/" : " "));
    }
}

/// Each may be the last part, so no quote is left open.
void addFolders(const CompletionWord &typed, Names &names) {
    for (const auto &[name, isFolder] : listPart(typed)) {
        std::string text = asWord(typed, name);
        text.back() = '/';
        if (isFolder)
            names.insert(text);
    }
}

void addScripts(const CompletionWord &typed, Names &names) {
    std::vector<std::string> folders = KIT_PathSearch::getInstance(7)->getDirectories();
    folders.push_back(".");
    for (const std::string &folder : folders)
        for (const auto &[name, isFolder] : listFolder(folder, typed.word))
            if (!isFolder)
                names.insert(asWord(typed, name));
}

/// The word is an argument.
void addArguments(CMD_Manager &manager, const CompletionWord &typed, Names &names) {
    const std::string &command = typed.before[0];
    KIT_StringArray found;
    if (isOptionAwaited(typed)) {
        addOptions(manager, typed, names);
    } else if (command == "help") {
        addCommands(manager, typed, names);
    } else if (command == "exhelp") {
        addFunctions(typed.word, " ", names);
    } else if (command == "ucd") {
        addFolders(typed, names);
    } else if (command == "set" && isFirstArgument(typed)) {
        manager.getVariableNames(found, 0);
        addMatching(found, typed, names);
    } else if (command == "alias" && typed.before.size() > 1 && typed.before[1] == "-u") {
        manager.getAliases()->getAliasNames(found);
        addMatching(found, typed, names);
    } else {
        addFiles(typed, names);
    }
}

}   // namespace

int Completion::complete(CMD_Manager &manager, const char *line, int cursor, KIT_StringArray &candidates) {
    const std::string_view text(line, static_cast<size_t>(cursor));
    CompletionWord typed(manager, text);
    while (!typed.before.empty() && typed.before[0] == "time")
        typed.before.erase(typed.before.begin());   // a command of its own comes after it
    Names names;
    size_t start = typed.partStart;
    if (typed.isComment)
        return cursor;
    if (typed.dollar != text.npos) {
        start = typed.dollar;
        addVariables(manager, typed, text.substr(start + (typed.hasBrace ? 2 : 1)), names);
    } else if (typed.quote == '`') {
        start = text.find_last_not_of(theLettersOfNames) + 1;
        addFunctions(text.substr(start), "(", names);
    } else if (!typed.before.empty()) {
        addArguments(manager, typed, names);
    } else if (typed.word.find('/') != typed.word.npos) {
        addFiles(typed, names);
    } else {
        addCommands(manager, typed, names);
        addScripts(typed, names);
    }
    append(names, candidates);
    return static_cast<int>(start);
}
