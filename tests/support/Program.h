// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>
#include <string>
#include <vector>

/// How a program ended and what it wrote.
struct Outcome {
    std::string out;
    std::string err;
    int status = -1;   // the exit status, or 128 plus the signal that ended it
};

/// A program to run. It gets nothing of the test's own environment: HOME and JOB are the folder, LC_ALL is C, PATH the
/// system's, and what `environment` adds as NAME=VALUE.
struct Program {
    std::vector<std::string> words;   // the path of the program first
    std::string folder;               // where it runs
    std::string input;                // what it reads, as from a file
    std::vector<std::string> environment;

    /// Runs it to its end, which must come within a minute.
    Outcome run() const;

    /// Words and environment as tables for exec, null-terminated; they borrow from this object and from `texts`.
    std::vector<char *> argumentTable() const;
    std::vector<char *> environmentTable(std::vector<std::string> &texts) const;
};

/// A folder that goes with its content when the object goes.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder &) = delete;
    TemporaryFolder &operator=(const TemporaryFolder &) = delete;

    const std::string &path() const { return folder; }
    void write(const std::string &name, const std::string &text) const;
    /// The text of a file in it; "(no such file)" when it can't be read.
    std::string read(const std::string &name) const { return readFile(folder + "/" + name); }
    static std::string readFile(const std::string &path);

private:
    std::string folder;
};

/// One that is the current folder as long as it lives.
class WorkingFolder : public TemporaryFolder {
public:
    WorkingFolder() { std::filesystem::current_path(path()); }
    ~WorkingFolder() { std::filesystem::current_path(before); }

private:
    const std::filesystem::path before = std::filesystem::current_path();
};

/// Fails the test with the difference when the lines are not the same.
void compareLines(const char *what, const std::vector<std::string> &expected,
                  const std::vector<std::string> &actual);
