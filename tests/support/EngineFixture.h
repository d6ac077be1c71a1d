// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>
#include <ostream>
#include <sstream>
#include <streambuf>
#include <string>

#include <gtest/gtest.h>

#include "Program.h"
#include "TestSystem.h"
#include <orvlang/engine/CMD_Args.h>
#include <orvlang/engine/CMD_Manager.h>
#include <orvlang/engine/CMD_Source.h>

/// Two streams into one text, in which what came through the error stream stands in braces: "out\n{error\n}".
class Transcript {
public:
    std::ostream &out() { return outStream; }
    std::ostream &err() { return errStream; }
    /// What has been written since the last call.
    std::string take() {
        enter(false);
        return std::exchange(text, {});
    }

private:
    class Buffer : public std::streambuf {
    public:
        Buffer(Transcript &owner, bool error) : transcript(owner), isError(error) {}

    protected:
        int_type overflow(int_type byte) override {
            transcript.enter(isError);
            transcript.text += traits_type::to_char_type(byte);
            return byte;
        }
        std::streamsize xsputn(const char *bytes, std::streamsize count) override {
            transcript.enter(isError);
            transcript.text.append(bytes, static_cast<size_t>(count));
            return count;
        }

    private:
        Transcript &transcript;
        const bool isError;
    };

    void enter(bool error) {
        if (inError != error)
            text += error ? '{' : '}';
        inError = error;
    }

    std::string text;
    bool inError = false;
    Buffer outBuffer{ *this, false };
    Buffer errBuffer{ *this, true };
    std::ostream outStream{ &outBuffer };
    std::ostream errStream{ &errBuffer };
};

/// A system whose standard input is a terminal or is none, whatever the test was started with.
class ConsoleSystem : public TestSystem {
public:
    explicit ConsoleSystem(bool interactive) : isInteractive(interactive) {}
    bool isTerminal(int) override { return isInteractive; }

private:
    const bool isInteractive;
};

/// A manager of a name of its own with its streams caught, in a folder of its own, which is the current one.
class EngineFixture : public testing::Test {
protected:
    explicit EngineFixture(bool interactive = false)
        : console(interactive), name("engine" + std::to_string(++theFixtures)), manager(name.c_str()) {
        manager.pushOutputStreams(transcript.out(), transcript.err());
    }

    void install(const char *command, CMD_CommandCallback callback, const char *options = "",
                 bool safe = true) {
        manager.installCommand(command, options, callback, safe);
    }
    /// Types lines at the console, one after the other, and returns what came of all.
    std::string type(const std::string &lines) {
        std::istringstream stream(lines);
        for (std::string line; std::getline(stream, line);)
            manager.sendInput(line.c_str(), false);
        return transcript.take();
    }
    /// Runs a text as the script s.cmd, with the rest of the line that starts it.
    std::string script(const std::string &text, const std::string &rest = "") {
        folder.write("s.cmd", text);
        return type("source s.cmd" + rest);
    }
    std::string value(const char *variable) const {
        KIT_String text;
        return manager.getVariable(variable, text) ? text.c_str() : "(none)";
    }

    const WorkingFolder folder;
    ConsoleSystem console;
    const std::string name;
    Transcript transcript;
    CMD_Manager manager;

private:
    static inline int theFixtures = 0;
};
