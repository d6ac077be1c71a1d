// SPDX-License-Identifier: Apache-2.0
// The table of the built-in commands.
#include <orvlang/engine/CMD_Engine.h>

#include <orvlang/builtins/CMD_Commands.h>

void CMD_Engine::installBaseCommands() {
    using namespace CMD_Commands;
    struct CommandRow {
        const char *name;
        const char *options;
        bool safe;
        CMD_CommandCallback callback;
    };
    static constexpr CommandRow theRows[] = {
        { "alias", "su", true, cmd_alias },
        { "coredump", "fm", true, cmd_coredump },
        { "echo", "n", true, cmd_echo },
        { "exhelp", "k:", true, cmd_exhelp },
        { "exit", "", true, cmd_exit },
        { "help", "k:", true, cmd_help },
        { "history", "c", true, cmd_history },
        { "job", "", true, cmd_job },
        { "memory", "", true, cmd_memory },
        { "perfmon", "o:st:", true, cmd_perfmon },
        { "prompt", "", true, cmd_prompt },
        { "python", "c", false, CMD_Manager::cmd_python },   // runs any code
        { "quit", "", true, cmd_quit },
        { "read", "g", true, cmd_read },
        { "set", "uslgp", true, cmd_set },
        { "setenv", "uslg", true, cmd_setenv },
        { "shift", "", true, cmd_shift },
        { "source", "qv", true, cmd_source },
        { "cmdread", "qv", true, cmd_source },   // what a bare script name turns into
        { "time", "", true, cmd_time },
        { "ucd", "", true, cmd_ucd },
        { "unix", "", false, cmd_unix },   // runs any program
        { "upwd", "", true, cmd_upwd },
        { "uls", "dfp:", true, cmd_uls },
        { "umkdir", "p", true, cmd_umkdir },
        { "urm", "", true, cmd_urm },
        { "if", "", true, cmd_if },
        { "else", "", true, cmd_else },
        { "endif", "", true, cmd_endif },
        { "end", "", true, cmd_end },
        { "break", "", true, cmd_break },
        { "continue", "", true, cmd_continue },
        { "for", "", true, cmd_loop },
        { "foreach", "", true, cmd_loop },
        { "undoctrl", "sc", true, cmd_undoctrl },
        { "while", "", true, cmd_loop },
        { "chblockbegin", "", true, cmd_chblockbegin },
        { "chblockend", "", true, cmd_chblockend },
        { "message", "b:d:t:h:p", true, cmd_message },
        { "listchooser", "d:t:h:rp", true, cmd_listchooser },
        { "filechooser", "d:n:p:st:", true, cmd_filechooser },
    };
    // Further managers of a process are for hosts that want commands of their own only.
    if (theManager)
        return;
    manager.setContext();
    for (const CommandRow &row : theRows)
        commands.install(row.name, row.options, row.callback, row.safe);
}
