// SPDX-License-Identifier: Apache-2.0
// The commands that look into, or steer, the services around the language.
#include <orvlang/engine/CMD_Manager.h>

#include <cstdlib>
#include <ostream>
#include <string_view>

#include <orvlang/builtins/CMD_Commands.h>
#include <orvlang/engine/CMD_Args.h>
#include <orvlang/platform/kit/KIT_ArenaInfo.h>
#include <orvlang/platform/kit/KIT_Performance.h>
#include <orvlang/platform/kit/KIT_UndoManager.h>

namespace {

/// The state as `undoctrl` last set it; other changes do not show here.
int undoEnabled = 1;

/// A word of a command and its number.
struct NamedNumber {
    std::string_view name;
    int number;
};

constexpr NamedNumber theLogTypes[] = {
    { "off", KIT_Performance::logOff },
    { "window", KIT_Performance::logWindow },
    { "stdout", KIT_Performance::logStdout },
};
constexpr NamedNumber theTimeFilters[] = {
    { "all", KIT_Performance::filterNone },
    { "ms", KIT_Performance::filterMilliseconds },
    { "sec", KIT_Performance::filterSeconds },
};

template <size_t N>
const NamedNumber *findByName(const NamedNumber (&table)[N], std::string_view name) {
    for (const NamedNumber &entry : table)
        if (entry.name == name)
            return &entry;
    return nullptr;
}

/// Returns an empty text when no word has the number.
template <size_t N>
std::string_view nameOf(const NamedNumber (&table)[N], int number) {
    for (const NamedNumber &entry : table)
        if (entry.number == number)
            return entry.name;
    return {};
}

}   // namespace

void CMD_Commands::cmd_memory(CMD_Args &args) {
    KIT_ArenaInfo::outputUsage(args.out());
}

void CMD_Commands::cmd_perfmon(CMD_Args &args) {
    KIT_Performance &performance = *KITgetPerformance();
    if (args.found('o')) {
        args.out() << args.argp('o');
        if (const NamedNumber *const type = findByName(theLogTypes, args.argp('o'))) {
            performance.logType(type->number);
            performance.logEnable(type->number != KIT_Performance::logOff);
        }
    }
    if (args.found('t')) {
        if (const NamedNumber *const filter = findByName(theTimeFilters, args.argp('t')))
            performance.timeFilter = filter->number;
    }
    if (args.found('s')) {
        const int type = performance.isEnabled() ? performance.type : KIT_Performance::logOff;
        args.out() << "perfmon -o " << nameOf(theLogTypes, type) << " -t "
                   << nameOf(theTimeFilters, performance.timeFilter) << std::endl;
    }
}

void CMD_Commands::cmd_undoctrl(CMD_Args &args) {
    KIT_UndoManager &undos = *KITgetUndoManager();
    const std::string_view word = args.argc() == 2 ? args.argv(1) : "";
    if (args.found('s')) {
        args.out() << "Undo usage is currently " << undos.getMemoryUsage() << " out of "
                   << undos.getMemoryLimit() << " bytes" << std::endl;
    } else if (args.found('c')) {
        undos.clearUndos();
    } else if (args.argc() != 2) {
        args.out() << "Undo state is currently " << (undoEnabled ? "enabled" : "disabled") << std::endl;
    } else if (word == "on" && !undoEnabled) {
        KIT_UndoManager::enableUndoCreation();
        undoEnabled = 1;
    } else if (word == "off" && undoEnabled) {
        KIT_UndoManager::disableUndoCreation();
        undoEnabled = 0;
    }
}

void CMD_Commands::cmd_chblockbegin(CMD_Args &args) {
    if (args.argc() > 1)
        return args.showUsage();
    if (!CMD_Manager::getContext()->beginChannelBlock())
        args.err(1) << "chblockbegin command can only be used in scripts.\n";
}

void CMD_Commands::cmd_chblockend(CMD_Args &args) {
    if (args.argc() > 1)
        return args.showUsage();
    if (!CMD_Manager::getContext()->endChannelBlock())
        args.err(1) << "chblockend command can only be used in scripts,\n"
                    << "or was run without a matching chblockbegin.\n";
}

void CMD_Commands::cmd_coredump(CMD_Args &args) {
    if (args.found('f') && !CMD_Manager::getContext()->isInSafeMode())
        std::abort();
}
