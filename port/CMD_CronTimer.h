// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <iosfwd>
#include <memory>
#include <vector>

#include <orvlang/platform/net/VIO_EventGenerator.h>
#include <orvlang/port/CMD_AtJob.h>

/// Runs commands when they are due: the event generator of `atjob`. It exists only while there are jobs: it destroys
/// itself in the first turn without any.
///
/// The output of jobs is dropped. A job runs like any other line: when the manager waits for the answer to a `read`,
/// the job's text is that answer. A job may add and remove jobs, itself included, and poll the event loop, which then
/// runs the other jobs.
class CMD_CronTimer : public VIO_EventGenerator {
public:
    /// Returns the timer of the process; null while there is none.
    static CMD_CronTimer *getTimer() { return theTimer; }
    /// Makes the timer of the process. Returns null when no event loop polls generators.
    static CMD_CronTimer *create();
    ~CMD_CronTimer() override;

    const char *getClassName() const override { return "cron"; }
    int getPollTime() const override { return 500; }
    int processEvents() override;

    /// The clock of the jobs: seconds since the start of 1970.
    static long long getCurrentTime();

    /// Schedules a command for a time of that clock, and then every `period` seconds unless that is 0. Does nothing for
    /// a time that is not in the future.
    void addJob(long long time, const char *command, int period);
    /// Writes one line for each job, the newest first.
    void listJobs(std::ostream &out) const;
    /// Removes the job of that number and reports the result.
    void removeJob(const char *id, std::ostream &out);
    void removeAllJobs(std::ostream &out);

private:
    CMD_CronTimer() = default;

    void runJob(size_t place, std::ostream &output);
    void dropJob(size_t place);

    static CMD_CronTimer *theTimer;

    // In the order of creation. While jobs run their indices stay: a removed one leaves a null.
    std::vector<std::unique_ptr<CMD_AtJob>> jobs;
    int turns = 0;   // in progress, each but the first one within a job of the one before
};
