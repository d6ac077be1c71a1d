// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <iosfwd>
#include <memory>
#include <vector>

#include <orvlang/platform/vio/VIO_EventGenerator.h>
#include <orvlang/port/CMD_AtJob.h>

/// Runs commands when their time has come: the event generator behind `atjob`. It is there only while there are jobs: it
/// destroys itself in the first turn that finds none.
///
/// What the jobs write is thrown away. A job runs like a line of anybody: when the manager waits for the answer to a
/// `read`, the job's text is that answer. A job may do what it likes: add and remove jobs, itself among them, and poll the
/// event loop, in which the other jobs go on.
class CMD_CronTimer : public VIO_EventGenerator {
public:
    /// The one of the process; null while there is none.
    static CMD_CronTimer *getTimer() { return theTimer; }
    /// Makes the one of the process. Null when nobody polls event generators.
    static CMD_CronTimer *create();
    ~CMD_CronTimer() override;

    const char *getClassName() const override { return "cron"; }
    int getPollTime() const override { return 500; }
    int processEvents() override;

    /// The clock of the jobs: seconds since the start of 1970.
    static long long getCurrentTime();

    /// Schedules a command for a time of that clock, and every `period` seconds from then on unless that is 0. For a
    /// time that is not to come there is no job.
    void addJob(long long time, const char *command, int period);
    /// One line for each job, the newest first.
    void listJobs(std::ostream &out) const;
    /// Removes the job of that number and tells the outcome.
    void removeJob(const char *id, std::ostream &out);
    void removeAllJobs(std::ostream &out);

private:
    CMD_CronTimer() = default;

    void runJob(size_t place, std::ostream &output);
    void dropJob(size_t place);

    static CMD_CronTimer *theTimer;

    // In the order of creation. While jobs run their places stay: what goes leaves a null behind.
    std::vector<std::unique_ptr<CMD_AtJob>> jobs;
    int turns = 0;   // under way, each but the first one in a job of the one before
};
