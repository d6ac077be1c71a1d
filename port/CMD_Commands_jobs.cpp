// SPDX-License-Identifier: Apache-2.0
// The command `atjob`: its words become jobs of CMD_CronTimer, which runs them.
#include <orvlang/engine/CMD_Manager.h>

#include <ostream>

#include <orvlang/builtins/CMD_Commands.h>
#include <orvlang/engine/CMD_Args.h>
#include <orvlang/platform/kit/KIT_Number.h>
#include <orvlang/platform/kit/KIT_WorkBuffer.h>
#include <orvlang/port/CMD_CronTimer.h>

namespace {

void listJobs(CMD_Args &args) {
    if (const CMD_CronTimer *timer = CMD_CronTimer::getTimer())
        timer->listJobs(args.out());
    else
        args.out() << "No pending jobs\n";
}

void removeJobs(CMD_Args &args) {
    if (args.argc() == 1) {
        args.err(1) << "Error:  No jobs specified for removal\n";
        return;
    }
    CMD_CronTimer *const timer = CMD_CronTimer::getTimer();
    if (!timer) {
        args.out() << "No pending jobs\n";
        return;
    }
    for (int i = args.argc() - 1; i > 0; --i) {
        const std::string_view id = args.argv(i);
        if (id == "*" || id == "all")
            return timer->removeAllJobs(args.out());
        timer->removeJob(args.argv(i), args.out());
    }
}

void addJob(CMD_Args &args) {
    if (args.argc() < 3)
        return args.showUsage();
    CMD_CronTimer *timer = CMD_CronTimer::getTimer();
    if (!timer)
        timer = CMD_CronTimer::create();
    if (!timer) {
        args.err(1) << "Unable to install event generator\n";
        return;
    }
    const int seconds = KITatoi(args.argv(1));
    KIT_WorkBuffer command;
    args.fillCommandLine(command, 2, false);
    timer->addJob(CMD_CronTimer::getCurrentTime() + seconds, command.c_str(), args.found('p') ? seconds : 0);
}

}   // namespace

void CMD_Commands::cmd_atjob(CMD_Args &args) {
    if (args.found('l'))
        listJobs(args);
    else if (args.found('r'))
        removeJobs(args);
    else
        addJob(args);
}
