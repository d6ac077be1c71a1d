// SPDX-License-Identifier: Apache-2.0
#include "Completion.h"

#include <algorithm>
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
#include <orvlang/platform/kit/KIT_WorkBuffer.h>
#include <orvlang/symbols/CMD_AliasTable.h>

#include "TypedStatement.h"

namespace {

constexpr char theLettersOfNames[] = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_";

/// What follows a name in the line.
enum class End {
    Word,     // a blank
    Path,     // a slash, and perhaps more of the path: a quote stays open
    Folder,   // a slash, and perhaps nothing else
};

/// A name that the word at the cursor could become, without quotes.
struct Name {
    std::string text;
    End end;

    auto operator<=>(const Name &) const = default;
};

/// The candidates, sorted and each once: names, which are quoted as needed, or texts that are inserted as they are.
struct Found {
    std::set<Name> names;
    std::set<std::string> texts;
};

bool isBare(std::string_view name) {
    return std::all_of(name.begin(), name.end(),
                       [](char c) { return (c & 0x80) || KIT_WorkBuffer::isBare(c); });
}

/// The name within quotes that are open already, or after an opening one; closed unless the word continues. Backslashes
/// at the end of the name follow the closing quote, which they would otherwise keep open.
std::string quoted(std::string_view name, char open, bool continues) {
    const char quote = open ? open : '\'';
    const std::string_view special = quote == '"' ? "\"\\$`" : "'\\";
    const size_t end = continues ? name.size() : name.find_last_not_of('\\') + 1;
    std::string text(open ? "" : "'");
    for (const char c : name.substr(0, end)) {
        if (special.find(c) != special.npos)
            text += '\\';
        text += c;
    }
    if (continues)
        return text;
    return text + quote + std::string(2 * (name.size() - end), '\\');
}

std::string quotedIfNeeded(const TypedStatement &typed, std::string_view name, bool continues) {
    const bool isQuoted = typed.partQuote || !isBare(name);
    return isQuoted ? quoted(name, typed.partQuote, continues) : std::string(name);
}

/// What all names start with, in whole characters.
std::string_view commonStart(const std::set<Name> &sorted) {
    const std::string &first = sorted.begin()->text;
    const std::string &last = sorted.rbegin()->text;
    const auto difference = std::mismatch(first.begin(), first.end(), last.begin(), last.end()).first;
    size_t length = static_cast<size_t>(difference - first.begin());
    while (length > 0 && (first[length] & 0xC0) == 0x80)
        --length;
    return std::string_view(first).substr(0, length);
}

/// While the common start of several names adds to what is typed, it is the only candidate. After that all names are,
/// without quotes, to be listed.
void appendNames(const std::set<Name> &names, const TypedStatement &typed, size_t typedLength,
                 KIT_StringArray &candidates) {
    if (names.size() == 1) {
        const Name &name = *names.begin();
        const std::string text = quotedIfNeeded(typed, name.text, name.end == End::Path);
        return candidates.append(text + (name.end == End::Word ? " " : "/"));
    }
    const std::string_view common = commonStart(names);
    if (common.size() > typed.word.size() - typed.partOffset || common.size() > typedLength)
        return candidates.append(quotedIfNeeded(typed, common, true));
    for (const Name &name : names)
        candidates.append(name.text + (name.end == End::Word ? "" : "/"));
}

void addCommands(const CMD_Manager &manager, const TypedStatement &typed, Found &found) {
    KIT_StringArray commands;
    manager.matchCommands(typed.word.c_str(), commands);
    for (const char *command : commands)
        found.names.insert({ command, End::Word });
}

void addMatching(const KIT_StringArray &names, const TypedStatement &typed, Found &found) {
    for (const char *name : names)
        if (std::string_view(name).starts_with(typed.word))
            found.names.insert({ name, End::Word });
}

/// Each line of the list of functions starts with a name.
void addFunctions(std::string_view prefix, const char *after, Found &found) {
    std::stringstream list;
    fml_PrintHelp(list, nullptr, nullptr);
    for (std::string line; std::getline(list, line);)
        if (line.starts_with(prefix))
            found.texts.insert(line.substr(0, line.find_first_of("( ")) + after);
}

bool isFolder(const std::string &path) {
    std::error_code unknown;
    return std::filesystem::is_directory(path, unknown);
}

/// A variable that holds a folder may be the start of a path.
void addVariables(const CMD_Manager &manager, const TypedStatement &typed, std::string_view prefix,
                  Found &found) {
    const auto add = [&](const std::string &name) {
        if (!name.starts_with(prefix))
            return;
        KIT_String value;
        manager.getEnv(name.c_str(), value);
        const std::string text = typed.hasBrace ? "${" + name + "}" : "$" + name;
        found.texts.insert(text + (isFolder(value.c_str()) ? "/" : typed.quote ? "" : " "));
    };
    KIT_StringArray names;
    manager.getVariableNames(names, 0);
    for (const char *name : names)
        add(name);
    for (char **entry = environ; *entry; ++entry)
        add(std::string(*entry, std::strcspn(*entry, "=")));
}

/// Adds the option letters, without the `:` that marks a value.
void addOptions(CMD_Manager &manager, const TypedStatement &typed, Found &found) {
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
            found.texts.insert(option + " ");
    }
}

/// Returns true when only options come before the word.
bool isFirstArgument(const TypedStatement &typed) {
    return std::all_of(typed.before.begin() + 1, typed.before.end(),
                       [](const std::string &word) { return word.starts_with('-'); });
}

bool isOptionAwaited(const TypedStatement &typed) {
    return typed.isPlain && typed.word.starts_with('-') && isFirstArgument(typed);
}

struct File {
    std::string name;
    bool isFolder;
};

/// The files whose names start with the prefix; hidden ones only if it starts with a dot.
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

/// The files that the last part of the word could become.
std::vector<File> listPart(const TypedStatement &typed) {
    return listFolder(typed.word.substr(0, typed.partOffset),
                      std::string_view(typed.word).substr(typed.partOffset));
}

void addFiles(const TypedStatement &typed, Found &found) {
    for (const auto &[name, isFolder] : listPart(typed))
        found.names.insert({ name, isFolder ? End::Path : End::Word });
}

void addFolders(const TypedStatement &typed, Found &found) {
    for (const auto &[name, isFolder] : listPart(typed))
        if (isFolder)
            found.names.insert({ name, End::Folder });
}

void addScripts(const TypedStatement &typed, Found &found) {
    std::vector<std::string> folders = KIT_PathSearch::getInstance(7)->getDirectories();
    folders.push_back(".");
    for (const std::string &folder : folders)
        for (const auto &[name, isFolder] : listFolder(folder, typed.word))
            if (!isFolder)
                found.names.insert({ name, End::Word });
}

/// Adds what an argument could become.
void addArguments(CMD_Manager &manager, const TypedStatement &typed, Found &found) {
    const std::string &command = typed.before[0];
    KIT_StringArray names;
    if (isOptionAwaited(typed)) {
        addOptions(manager, typed, found);
    } else if (command == "help") {
        addCommands(manager, typed, found);
    } else if (command == "exhelp") {
        addFunctions(typed.word, " ", found);
    } else if (command == "ucd") {
        addFolders(typed, found);
    } else if (command == "set" && isFirstArgument(typed)) {
        manager.getVariableNames(names, 0);
        addMatching(names, typed, found);
    } else if (command == "alias" && typed.before.size() > 1 && typed.before[1] == "-u") {
        manager.getAliases()->getAliasNames(names);
        addMatching(names, typed, found);
    } else {
        addFiles(typed, found);
    }
}

}   // namespace

int Completion::complete(CMD_Manager &manager, const char *line, int cursor, KIT_StringArray &candidates) {
    const std::string_view text(line, static_cast<size_t>(cursor));
    TypedStatement typed(manager, text);
    while (!typed.before.empty() && typed.before[0] == "time")
        typed.before.erase(typed.before.begin());   // what follows is a statement of its own
    Found found;
    size_t start = typed.partStart;
    if (typed.isComment)
        return cursor;
    if (typed.dollar != text.npos) {
        start = typed.dollar;
        addVariables(manager, typed, text.substr(start + (typed.hasBrace ? 2 : 1)), found);
    } else if (typed.quote == '`') {
        start = text.find_last_not_of(theLettersOfNames) + 1;
        addFunctions(text.substr(start), "(", found);
    } else if (!typed.before.empty()) {
        addArguments(manager, typed, found);
    } else if (typed.word.find('/') != typed.word.npos) {
        addFiles(typed, found);
    } else {
        addCommands(manager, typed, found);
        addScripts(typed, found);
    }
    if (!found.names.empty())
        appendNames(found.names, typed, text.size() - start, candidates);
    for (const std::string &each : found.texts)
        candidates.append(each);
    return static_cast<int>(start);
}
