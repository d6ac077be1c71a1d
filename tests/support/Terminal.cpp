// SPDX-License-Identifier: Apache-2.0
#include "Terminal.h"

#include <algorithm>
#include <csignal>
#include <stdexcept>

#include <poll.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <gtest/gtest.h>

namespace {

constexpr int longestWait = 30 * 1000;   // milliseconds

}   // namespace

Terminal::Terminal(const Program &program) {
    std::vector<std::string> texts;
    const std::vector<char *> names = program.environmentTable(texts);
    const std::vector<char *> arguments = program.argumentTable();
    const winsize size = { 24, 80, 0, 0 };
    child = forkpty(&descriptor, nullptr, nullptr, &size);
    if (child < 0)
        throw std::runtime_error("no terminal");
    if (child == 0) {
        if (chdir(program.folder.c_str()) == 0)
            execve(arguments[0], arguments.data(), names.data());
        _exit(127);
    }
}

Terminal::~Terminal() {
    if (child > 0) {
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
    }
    close(descriptor);
}

void Terminal::type(const std::string &text) {
    ASSERT_EQ(write(descriptor, text.data(), text.size()), ssize_t(text.size()));
}

std::string Terminal::waitFor(const std::string &text) {
    size_t place;
    while ((place = shown.find(text)) == std::string::npos) {
        if (readMore())
            continue;
        ADD_FAILURE() << "waited for: " << text << "\nbut there is only: " << shown;
        return shown;
    }
    const std::string before = shown.substr(0, place);
    shown.erase(0, place + text.size());
    return before;
}

void Terminal::waitForRows(const std::string &expected) {
    const int count = static_cast<int>(std::count(expected.begin(), expected.end(), '\n')) + 1;
    while (screen.lastRows(count) != expected) {
        if (readMore())
            continue;
        ADD_FAILURE() << "waited for:\n" << expected << "\nbut there is:\n" << screen.lastRows(count + 5);
        return;
    }
    shown.clear();
}

void Terminal::follow(const std::vector<std::pair<std::string, std::string>> &steps) {
    for (const auto &[keys, rows] : steps) {
        type(keys);
        waitForRows(rows);
    }
}

void Terminal::resize(int columnCount, int rowCount) {
    screen.resize(columnCount, rowCount);
    const winsize size = { static_cast<unsigned short>(rowCount), static_cast<unsigned short>(columnCount), 0,
                           0 };
    ASSERT_EQ(ioctl(descriptor, TIOCSWINSZ, &size), 0);
}

void Terminal::sendSignal(int number) const {
    kill(child, number);
}

bool Terminal::echoes() const {
    termios mode;
    return tcgetattr(descriptor, &mode) == 0 && (mode.c_lflag & ECHO);
}

std::string Terminal::waitForEnd(int status) {
    while (readMore()) {
    }
    int ended = 0;
    waitpid(child, &ended, 0);
    child = -1;
    EXPECT_EQ(WIFEXITED(ended) ? WEXITSTATUS(ended) : 128 + WTERMSIG(ended), status) << shown;
    return shown;
}

/// False when nothing more comes: the program has closed the terminal, or it is silent for too long.
bool Terminal::readMore() {
    pollfd ready = { descriptor, POLLIN, 0 };
    char buffer[4096];
    if (poll(&ready, 1, longestWait) <= 0)
        return false;
    const ssize_t length = read(descriptor, buffer, sizeof buffer);
    if (length <= 0)
        return false;
    shown.append(buffer, size_t(length));
    screen.write({ buffer, size_t(length) });
    type(screen.takeAnswer());
    return true;
}
