// SPDX-License-Identifier: Apache-2.0
// Help: the listing of commands, and the entries of the help files. Nothing is kept: each request reads the files
// anew, so that a file changed on disk counts at once.
#include <orvlang/engine/CMD_Engine.h>

#include <algorithm>
#include <ostream>
#include <utility>

#include <orvlang/builtins/CMD_Columns.h>
#include <orvlang/builtins/CMD_Commands.h>
#include <orvlang/builtins/CMD_HelpFile.h>
#include <orvlang/engine/CMD_Args.h>
#include <orvlang/platform/fml/FML.h>
#include <orvlang/platform/kit/KIT_PathSearch.h>
#include <orvlang/platform/osl/OSL_System.h>

namespace {

constexpr const char *theHelpFile = "help/command.help";
constexpr const char *theTopicFile = "help/topic.help";

bool isHidden(std::string_view name) {
    return name == "XYZZY" || name == "coredump";
}

/// A pipe or device of that name, say in a foreign $JOB, is left out: it could be without an end.
KIT_StringArray findHelpFiles(const char *filename) {
    KIT_StringArray found;
    KIT_PathSearch::getInstance(0)->findAllFiles(filename, found);
    KIT_StringArray files;
    OSL_FileStatus status;
    for (const char *path : found)
        if (OSLsystem().getStatus(path, status) && status.isRegular)
            files.append(path);
    return files;
}

}   // namespace

void CMD_Manager::commandDump(std::ostream &os, const char *keyword, const char *prefix) const {
    KIT_PtrArray<CMD_Command *> matches;
    const bool isSearch = keyword && *keyword;
    if (isSearch)
        searchHelp(matches, theHelpFile, keyword);
    const KIT_PtrArray<CMD_Command *> &all = engine->commands.getList();
    const KIT_PtrArray<CMD_Command *> &listed = isSearch ? std::as_const(matches) : all;
    std::vector<std::string_view> names;
    for (const CMD_Command *command : listed) {
        const std::string_view commandName = command->getName();
        if (!isHidden(commandName) && commandName.starts_with(prefix ? prefix : ""))
            names.push_back(commandName);
    }
    std::stable_sort(names.begin(), names.end(), [](std::string_view a, std::string_view b) {
        return KIT_String::compareNumberedString(a.data(), b.data(), true) < 0;
    });
    CMDprintColumns(os, names);
}

void CMD_Manager::commandHelp(std::ostream &os, const char *word) const {
    KIT_String wanted = word ? word : "";
    KIT_String aliasText;
    if (getAlias(wanted.c_str(), aliasText)) {
        os << '\'' << wanted << "' is an alias for " << aliasText << std::endl;
        wanted = aliasText;
    }
    int matches = 0;
    const CMD_Command *match = nullptr;
    for (const CMD_Command *command : engine->commands.getList()) {
        const std::string_view commandName = command->getName();
        if (commandName == wanted.view()) {
            matches = 1;
            match = command;
            break;
        }
        if (commandName.starts_with(wanted.view())) {
            ++matches;
            match = command;
        }
    }
    if (matches == 1) {
        os << match->getName() << std::endl;
        printHelp(os, theHelpFile, match->getName());
    } else if (matches > 1) {
        commandDump(os, nullptr, wanted.c_str());
    } else {
        os << "No installed command matches " << wanted << std::endl;
    }
}

void CMD_Manager::printHelp(std::ostream &os, const char *filename, const char *entry) const {
    for (const char *path : findHelpFiles(filename))
        CMDprintHelpEntry(os, path, entry ? entry : "");
}

void CMD_Manager::searchHelp(KIT_PtrArray<CMD_Command *> &found, const char *filename,
                             const char *keyword) const {
    KIT_String wanted = keyword ? keyword : "";
    wanted.toLower();
    for (const char *path : findHelpFiles(filename)) {
        CMDsearchHelpFile(path, wanted.view(), [&](const char *heading) {
            CMD_Command *command = nullptr;
            if (engine->findCommand(heading, true, &command) == CMD_Registry::Match::Found)
                found.append(command);
        });
    }
    found.sort([](const CMD_Command *a, const CMD_Command *b) {
        return KIT_String::compareNumberedString(a->getName(), b->getName(), true);
    });
    for (int i = found.entries() - 1; i > 0; --i) {
        if (std::string_view(found[i - 1]->getName()) == found[i]->getName())
            found[i] = nullptr;
    }
    found.collapse();
}

void CMD_Commands::cmd_help(CMD_Args &args) {
    const CMD_Manager &manager = *CMD_Manager::getContext();
    if (args.argc() == 1)
        manager.commandDump(args.out(), args.argp('k'), nullptr);
    for (int i = 1; i < args.argc(); ++i) {
        manager.commandHelp(args.out(), args.argv(i));
        KIT_StringArray matches;
        manager.matchCommands(args.argv(i), matches);
        // On the error stream: scripts read the output.
        if (matches.entries() == 0)
            manager.printHelp(args.err(0), theTopicFile, args.argv(i));
    }
}

void CMD_Commands::cmd_exhelp(CMD_Args &args) {
    if (args.argc() == 1)
        fml_PrintHelp(args.out(), nullptr, args.argp('k'));
    for (int i = 1; i < args.argc(); ++i)
        fml_PrintHelp(args.out(), args.argv(i), nullptr);
}
