// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include <unistd.h>

#include <gtest/gtest.h>

#include <orvlang/engine/CMD_Args.h>
#include <orvlang/engine/CMD_Manager.h>
#include <orvlang/engine/CMD_Source.h>

/// A manager with its streams caught, and a folder for scripts. The state of the loops must be clean in the end.
class FlowFixture : public testing::Test {
protected:
    FlowFixture() : manager("flow"), folder(std::filesystem::temp_directory_path() / "orvlang-flow-XXXXXX") {
        EXPECT_NE(mkdtemp(folder.data()), nullptr);
        manager.pushOutputStreams(out, err);
    }
    ~FlowFixture() override {
        EXPECT_EQ(manager.getLoopNestLevel(), 0);
        EXPECT_EQ(manager.getBreakLevel(), 0);
        std::filesystem::remove_all(folder);
    }

    /// The path of a new script.
    std::string script(const std::string &name, const std::string &text) {
        const std::string path = folder + "/" + name;
        std::ofstream(path) << text;
        return path;
    }
    /// Types lines at the console, one after the other.
    void type(const std::string &lines) {
        std::istringstream stream(lines);
        for (std::string line; std::getline(stream, line);)
            manager.sendInput(line.c_str(), false);
    }
    /// What has been written since the last call, errors behind the output, each line end as a `|`.
    std::string written() {
        std::string text = out.str() + err.str();
        out.str("");
        err.str("");
        for (char &c : text)
            if (c == '\n')
                c = '|';
        return text;
    }

    CMD_Manager manager;
    std::string folder;
    std::ostringstream out, err;
};
