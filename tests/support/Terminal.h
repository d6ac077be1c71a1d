// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <utility>
#include <vector>

#include <sys/types.h>

#include "Program.h"
#include "Screen.h"

/// A program on a terminal of its own. What it shows, the echo of what is typed included, is waited for by its text, so
/// that a test never depends on how fast anything is.
class Terminal {
public:
    explicit Terminal(const Program &program);
    ~Terminal();
    Terminal(const Terminal &) = delete;
    Terminal &operator=(const Terminal &) = delete;

    void type(const std::string &text);
    /// Waits for the text behind everything that was waited for so far; gives what stood before it. Fails the test
    /// when it does not come within half a minute or the program ends.
    std::string waitFor(const std::string &text);
    /// Waits until the last rows on the screen are these, as Screen::lastRows gives them. Fails as waitFor does.
    void waitForRows(const std::string &expected);
    /// Types the keys of each step and waits for the last rows that they lead to.
    void follow(const std::vector<std::pair<std::string, std::string>> &steps);
    void resize(int columnCount, int rowCount);
    void sendSignal(int number) const;
    /// Whether the terminal itself shows what is typed, as it does when nobody has changed its mode.
    bool echoes() const;
    /// Waits for the end, which must have that status, as Outcome has it; returns what was still shown.
    std::string waitForEnd(int status);

private:
    bool readMore();

    int descriptor = -1;
    pid_t child = -1;
    std::string shown;   // not waited for yet
    Screen screen{ 80, 24 };
};
