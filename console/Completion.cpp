// SPDX-License-Identifier: Apache-2.0
#include "Completion.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <filesystem>
#include <set>
#include <string>
#include <string_view>

#include <unistd.h>

#include <orvlang/engine/CMD_Manager.h>
#include <orvlang/platform/kit/KIT_StringArray.h>

#include "CompletionWord.h"

namespace {

using Names = std::set<std::string>;   // sorted, each once

void append(const Names &names, KIT_StringArray &candidates) {
    for (const std::string &name : names)
        candidates.append(name.c_str());
}

void addCommands(const CMD_Manager &manager, const std::string &prefix, Names &names) {
    KIT_StringArray found;
    manager.matchCommands(prefix.c_str(), found);
    for (const char *name : found)
        names.insert(std::string(name) + " ");
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

bool isOptionAwaited(const CompletionWord &typed) {
    return typed.isPlain && typed.word.starts_with('-') &&
           std::all_of(typed.before.begin() + 1, typed.before.end(),
                       [](const std::string &word) { return word.starts_with('-'); });
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

void addFiles(const CompletionWord &typed, Names &names) {
    namespace fs = std::filesystem;
    const std::string folder = typed.word.substr(0, typed.partOffset);
    const std::string_view prefix = std::string_view(typed.word).substr(typed.partOffset);
    std::error_code failed;
    std::vector<std::pair<std::string, bool>> found;   // with whether it is a folder
    for (fs::directory_iterator entry(folder.empty() ? "." : folder, failed), end; !failed && entry != end;
         entry.increment(failed)) {
        const std::string name = entry->path().filename();
        if (!name.starts_with(prefix) || (prefix.empty() && name[0] == '.') || name.find('\n') != name.npos)
            continue;
        std::error_code unknown;
        found.emplace_back(name, entry->is_directory(unknown));
    }
    const bool areBare =
        typed.partQuote == '\0' &&
        std::all_of(found.begin(), found.end(), [](const auto &file) { return isBare(file.first); });
    for (const auto &[name, goesOn] : found) {
        const std::string text = areBare ? name : quoted(name, typed.partQuote, goesOn);
        names.insert(text + (goesOn ? "/" : " "));
    }
}

}   // namespace

int Completion::complete(CMD_Manager &manager, const char *line, int cursor, KIT_StringArray &candidates) {
    const std::string_view text(line, static_cast<size_t>(cursor));
    const CompletionWord typed(manager, text);
    Names names;
    size_t start = typed.partStart;
    if (typed.isComment)
        return cursor;
    if (typed.dollar != text.npos) {
        start = typed.dollar;
        addVariables(manager, typed, text.substr(start + (typed.hasBrace ? 2 : 1)), names);
    } else if (typed.quote == '`') {
        return cursor;
    } else if (typed.before.empty() && typed.word.find('/') == typed.word.npos) {
        if (typed.isPlain)
            addCommands(manager, typed.word, names);
    } else if (!typed.before.empty() && isOptionAwaited(typed)) {
        addOptions(manager, typed, names);
    } else if (!typed.before.empty() && typed.before[0] == "help") {
        addCommands(manager, typed.word, names);
    } else {
        addFiles(typed, names);
    }
    append(names, candidates);
    return static_cast<int>(start);
}
