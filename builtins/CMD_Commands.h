// SPDX-License-Identifier: Apache-2.0
#pragma once

class CMD_Args;

/// The callbacks of the built-in commands, without `python`, which hosts may install (CMD_Manager::cmd_python). Each
/// uses the manager that CMD_Manager::getContext returns.
namespace CMD_Commands {

// The language itself.
void cmd_alias(CMD_Args &args);
void cmd_echo(CMD_Args &args);
void cmd_exit(CMD_Args &args);
void cmd_help(CMD_Args &args);
void cmd_exhelp(CMD_Args &args);
void cmd_history(CMD_Args &args);
void cmd_job(CMD_Args &args);
void cmd_prompt(CMD_Args &args);
void cmd_quit(CMD_Args &args);
void cmd_source(CMD_Args &args);
void cmd_time(CMD_Args &args);

// Variables.
void cmd_read(CMD_Args &args);
void cmd_set(CMD_Args &args);
void cmd_setenv(CMD_Args &args);
void cmd_shift(CMD_Args &args);

// Conditions and loops.
void cmd_if(CMD_Args &args);
void cmd_else(CMD_Args &args);
void cmd_endif(CMD_Args &args);
void cmd_end(CMD_Args &args);
void cmd_break(CMD_Args &args);
void cmd_continue(CMD_Args &args);
void cmd_loop(CMD_Args &args);

// Directories, files and programs.
void cmd_ucd(CMD_Args &args);
void cmd_unix(CMD_Args &args);
void cmd_upwd(CMD_Args &args);
void cmd_uls(CMD_Args &args);
void cmd_umkdir(CMD_Args &args);
void cmd_urm(CMD_Args &args);

// Questions to the user.
void cmd_message(CMD_Args &args);
void cmd_listchooser(CMD_Args &args);
void cmd_filechooser(CMD_Args &args);

// Ports and jobs.
void cmd_openport(CMD_Args &args);
void cmd_closeport(CMD_Args &args);
void cmd_atjob(CMD_Args &args);

// Diagnostics and services.
void cmd_chblockbegin(CMD_Args &args);
void cmd_chblockend(CMD_Args &args);
void cmd_coredump(CMD_Args &args);
void cmd_memory(CMD_Args &args);
void cmd_perfmon(CMD_Args &args);
void cmd_undoctrl(CMD_Args &args);

}   // namespace CMD_Commands
