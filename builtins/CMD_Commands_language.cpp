// SPDX-License-Identifier: Apache-2.0
// The commands that act on the language itself: output, aliases, history, prompts, scripts and the end.
#include <orvlang/engine/CMD_Engine.h>

#include <ostream>

#include <orvlang/builtins/CMD_Commands.h>
#include <orvlang/engine/CMD_Args.h>
#include <orvlang/engine/CMD_Source.h>
#include <orvlang/platform/kit/KIT_Exit.h>
#include <orvlang/platform/kit/KIT_Number.h>
#include <orvlang/platform/kit/KIT_WorkBuffer.h>
#include <orvlang/platform/osl/KIT_StopWatch.h>
#include <orvlang/symbols/CMD_AliasTable.h>

namespace {

void listAliases(const CMD_AliasTable &table, std::ostream &os) {
    KIT_StringArray names;
    table.getAliasNames(names);
    KIT_String value;
    for (const char *alias : names) {
        if (table.getAlias(alias, value))
            os << alias << '\t' << value << std::endl;
    }
}

}   // namespace

void CMD_Commands::cmd_alias(CMD_Args &args) {
    CMD_Manager &manager = *CMD_Manager::getContext();
    CMD_AliasTable &table = *manager.getAliases();
    if (args.found('u')) {
        for (int i = 1; i < args.argc(); ++i)
            table.destroyAlias(args.argv(i));
        return;
    }
    const char *alias = args.argv(1);
    if (args.argc() == 1) {
        if (args.found('s'))
            manager.saveAliases(args.out());
        else
            listAliases(table, args.out());
        return;
    }
    if (args.argc() == 2) {
        KIT_String value;
        if (table.getAlias(alias, value))
            args.out() << value << std::endl;
        return;
    }
    if (CMD_Engine::of(manager).findCommand(alias, true) == CMD_Registry::Match::Found)
        args.err(1) << "Warning:  alias for '" << alias << "' overrides internal command\n";
    KIT_WorkBuffer text;
    args.fillCommandLine(text, 2, false);
    table.setAlias(alias, text.c_str());
}

void CMD_Commands::cmd_echo(CMD_Args &args) {
    KIT_WorkBuffer text;
    args.fillCommandLine(text, 1, false);
    args.out() << text.view();
    if (!args.found('n'))
        args.out() << std::endl;
}

void CMD_Commands::cmd_exit(CMD_Args &args) {
    CMD_Manager &manager = *CMD_Manager::getContext();
    manager.popSource(0);
    if (args.argc() > 1)
        manager.setStatusCode(KITatoi(args.argv(1)));
}

void CMD_Commands::cmd_quit(CMD_Args &args) {
    if (args.argc() == 1)
        KIT_Exit::exit(0);
    // The codes above 127 mean signals.
    KIT_Exit::exitWithSpecificCode(KITatoi(args.argv(1)) & 127);
}

void CMD_Commands::cmd_history(CMD_Args &args) {
    CMD_Manager &manager = *CMD_Manager::getContext();
    if (args.found('c'))
        manager.clearHistory();
    else
        manager.dumpHistory(args.out());
}

void CMD_Commands::cmd_job(CMD_Args &args) {
    CMD_Manager &manager = *CMD_Manager::getContext();
    if (args.argc() == 2)
        manager.setJob(args.argv(1));
    else
        manager.execute("echo $JOB", 0, &args.out(), &args.err(0), 1, true);
}

void CMD_Commands::cmd_prompt(CMD_Args &args) {
    CMD_Manager &manager = *CMD_Manager::getContext();
    if (args.argc() == 1) {
        args.out() << "prompt '" << manager.getPrompt(-1) << '\'' << std::endl;
        return;
    }
    KIT_WorkBuffer text;
    args.fillCommandLine(text, 1, false);
    manager.setPrompt(text.c_str());
}

void CMD_Commands::cmd_source(CMD_Args &args) {
    if (args.argc() == 1)
        return;
    CMD_Manager &manager = *CMD_Manager::getContext();
    if (!manager.pushSource(args.argv(1), args.found('v') ? 1 : 0)) {
        // A status means that the failure has been reported: too many scripts are nested.
        if (!args.found('q') && manager.getStatusCode() == 0)
            args.err(1) << "Can't open " << args.argv(1) << std::endl;
        return;
    }
    CMD_Engine::of(manager).setArgumentVariables(args);
}

void CMD_Commands::cmd_time(CMD_Args &args) {
    KIT_WorkBuffer line;
    args.fillCommandLine(line, 1, false);
    args.quietErrors();
    KIT_StopWatch watch;
    watch.start();
    CMD_Manager::getContext()->execute(line.c_str(), 0, &args.out(), &args.err(1), 1, true);
    args.out() << watch.lap() << 'r' << std::endl;
}
