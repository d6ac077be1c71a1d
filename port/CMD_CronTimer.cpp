// SPDX-License-Identifier: Apache-2.0
#include <orvlang/port/CMD_CronTimer.h>

#include <algorithm>
#include <ostream>

#include <orvlang/engine/CMD_Manager.h>
#include <orvlang/platform/kit/KIT_Number.h>
#include <orvlang/platform/kit/KIT_OStrStream.h>
#include <orvlang/platform/osl/OSL_Time.h>
#include <orvlang/port/CMD_SeparateRun.h>

namespace {

int theLastId = 0;

}   // namespace

CMD_CronTimer *CMD_CronTimer::theTimer = nullptr;

long long CMD_CronTimer::getCurrentTime() {
    OSL_TimeVal now = {};
    OSLgettimeofday(&now);
    return now.seconds;
}

CMD_CronTimer *CMD_CronTimer::create() {
    std::unique_ptr<CMD_CronTimer> timer(new CMD_CronTimer);
    if (!timer->installGenerator())
        return nullptr;
    return theTimer = timer.release();
}

CMD_CronTimer::~CMD_CronTimer() {
    theTimer = nullptr;
}

int CMD_CronTimer::processEvents() {
    KIT_OStrStream output;
    const long long now = getCurrentTime();
    ++turns;
    for (size_t place = jobs.size(); place-- > 0;) {
        const CMD_AtJob *const job = jobs[place].get();
        if (job && job->time < now && !job->isRunning) {
            runJob(place, output);
            output.reset();
        }
    }
    if (--turns > 0)
        return 1;
    std::erase(jobs, nullptr);
    if (!jobs.empty())
        return 1;
    uninstallGenerator();
    delete this;
    return 0;
}

/// Nothing of the job is kept across its run, in which it may be removed.
void CMD_CronTimer::runJob(size_t place, std::ostream &output) {
    CMD_Manager *const manager = CMD_Manager::getContext();
    if (!manager)
        return;   // it stays due until there is one
    jobs[place]->isRunning = true;
    {
        const KIT_String command = jobs[place]->command;
        const CMD_SeparateRun run;
        manager->execute(command.c_str(), 0, &output, &output, 1, true);
    }
    CMD_AtJob *const job = jobs[place].get();
    if (!job)
        return;
    if (job->period == 0)
        return dropJob(place);
    job->isRunning = false;
    job->time = getCurrentTime() + job->period;
}

void CMD_CronTimer::dropJob(size_t place) {
    jobs[place].reset();
    if (turns == 0)
        jobs.erase(jobs.begin() + static_cast<std::ptrdiff_t>(place));
}

void CMD_CronTimer::addJob(long long time, const char *command, int period) {
    if (time > getCurrentTime())
        jobs.push_back(std::make_unique<CMD_AtJob>(++theLastId, time, period, command));
}

void CMD_CronTimer::listJobs(std::ostream &out) const {
    const long long now = getCurrentTime();
    std::for_each(jobs.rbegin(), jobs.rend(), [&](const std::unique_ptr<CMD_AtJob> &job) {
        if (job)
            out << "JobId(" << job->id << ") In " << job->time - now << " seconds, run '" << job->command
                << "'\n";
    });
}

void CMD_CronTimer::removeJob(const char *id, std::ostream &out) {
    const int number = KITatoi(id);
    for (size_t place = jobs.size(); place-- > 0;) {
        if (jobs[place] && jobs[place]->id == number) {
            dropJob(place);
            out << "Removed job " << number << '\n';
            return;
        }
    }
    out << "Warning: no job was found matching Id(" << number << ")\n";
}

void CMD_CronTimer::removeAllJobs(std::ostream &out) {
    for (size_t place = jobs.size(); place-- > 0;) {
        if (!jobs[place])
            continue;
        out << "Removed job Id(" << jobs[place]->id << ")\n";
        dropJob(place);
    }
}
