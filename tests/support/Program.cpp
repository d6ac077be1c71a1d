// SPDX-License-Identifier: Apache-2.0
#include "Program.h"

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include <fcntl.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gtest/gtest.h>

namespace {

constexpr int longestRun = 60 * 1000;   // milliseconds

/// A file in memory: what the program writes never blocks it, whatever the order in which the test reads.
class MemoryFile {
public:
    MemoryFile() : descriptor(memfd_create("orvlang-test", MFD_CLOEXEC)) {
        if (descriptor < 0)
            throw std::runtime_error("no memory file");
    }
    ~MemoryFile() { close(descriptor); }
    MemoryFile(const MemoryFile &) = delete;
    MemoryFile &operator=(const MemoryFile &) = delete;

    void fill(const std::string &text) const {
        if (write(descriptor, text.data(), text.size()) != ssize_t(text.size()))
            throw std::runtime_error("memory file not filled");
        lseek(descriptor, 0, SEEK_SET);
    }
    std::string text() const {
        std::string result(size_t(lseek(descriptor, 0, SEEK_END)), '\0');
        if (pread(descriptor, result.data(), result.size(), 0) != ssize_t(result.size()))
            throw std::runtime_error("memory file not read");
        return result;
    }

    const int descriptor;
};

int waitForEnd(pid_t child) {
    const int handle = int(syscall(SYS_pidfd_open, child, 0));
    pollfd end = { handle, POLLIN, 0 };
    if (poll(&end, 1, longestRun) == 0)
        kill(child, SIGKILL);
    close(handle);
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

}   // namespace

std::vector<char *> Program::argumentTable() const {
    std::vector<char *> table;
    for (const std::string &word : words)
        table.push_back(const_cast<char *>(word.c_str()));
    table.push_back(nullptr);
    return table;
}

std::vector<char *> Program::environmentTable(std::vector<std::string> &texts) const {
    texts = { "HOME=" + folder, "JOB=" + folder, "LC_ALL=C", "PATH=/usr/bin:/bin" };
    for (const char *name : { "ASAN_OPTIONS", "UBSAN_OPTIONS", "TSAN_OPTIONS" })
        if (const char *value = getenv(name))
            texts.push_back(std::string(name) + "=" + value);
    texts.insert(texts.end(), environment.begin(), environment.end());
    std::vector<char *> table;
    for (std::string &text : texts)
        table.push_back(text.data());
    table.push_back(nullptr);
    return table;
}

Outcome Program::run() const {
    const MemoryFile in, out, err;
    in.fill(input);
    std::vector<std::string> texts;
    const std::vector<char *> names = environmentTable(texts);
    const std::vector<char *> arguments = argumentTable();

    const pid_t child = fork();
    if (child == 0) {
        const bool ready = chdir(folder.c_str()) == 0 && dup2(in.descriptor, 0) == 0 &&
                           dup2(out.descriptor, 1) == 1 && dup2(err.descriptor, 2) == 2;
        if (ready)
            execve(arguments[0], arguments.data(), names.data());
        _exit(127);
    }
    Outcome outcome;
    outcome.status = waitForEnd(child);
    outcome.out = out.text();
    outcome.err = err.text();
    return outcome;
}

TemporaryFolder::TemporaryFolder() : folder(std::filesystem::temp_directory_path() / "orvlang-test-XXXXXX") {
    if (!mkdtemp(folder.data()))
        throw std::runtime_error("no temporary folder");
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
}

void TemporaryFolder::write(const std::string &name, const std::string &text) const {
    const std::filesystem::path path = std::filesystem::path(folder) / name;
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << text;
}

std::string TemporaryFolder::readFile(const std::string &path) {
    const std::ifstream file(path, std::ios::binary);
    if (!file)
        return "(no such file)";
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

void compareLines(const char *what, const std::vector<std::string> &expected,
                  const std::vector<std::string> &actual) {
    const auto join = [](const std::vector<std::string> &lines) {
        std::string text;
        for (const std::string &line : lines)
            text += line + '\n';
        return text;
    };
    EXPECT_EQ(join(expected), join(actual)) << what;
}
