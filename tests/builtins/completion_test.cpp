// SPDX-License-Identifier: Apache-2.0
// What a half-typed command word completes to, and the names that it can become.
#include "EngineFixture.h"

namespace {

class Completion : public EngineFixture {
protected:
    Completion() {
        const auto nothing = [](CMD_Args &) {};
        for (const char *command : { "frame", "zoomin", "zoom", "frobnicate", "both" })
            install(command, nothing);
        install("unsafe", nothing, "", false);
        for (const char *alias : { "zebra", "both", "frost" })
            manager.setAlias(alias, "text");
    }
    std::string complete(const char *prefix) {
        KIT_String result("left over");
        manager.completeCommand(prefix, result);
        return result.c_str();
    }
    std::string matches(const char *prefix) {
        KIT_StringArray names;
        names.append("before");
        manager.matchCommands(prefix, names);
        std::string text;
        for (const char *match : names)
            text += std::string(match) + ' ';
        return text;
    }
};

TEST_F(Completion, Table) {
    manager.setSafeMode(1);   // what may not run completes all the same
    static const struct {
        const char *prefix, *completed, *matches;
    } theCases[] = {
        { "frame", "frame ", "frame " },
        { "frames", "frames", "" },
        { "fro", "fro", "frost frobnicate " },
        { "fr", "fr", "frost frame frobnicate " },
        { "z", "z", "zebra zoom zoomin " },
        { "en", "end", "end endif " },
        { "both", "both", "both both " },   // an alias and a command: which one is not settled
        { "unsafe", "unsafe ", "unsafe " },
        { "core", "coredump ", "coredump " },
        { "Fr", "Fr", "" },
    };
    for (const auto &c : theCases) {
        EXPECT_EQ(complete(c.prefix), c.completed) << c.prefix;
        EXPECT_EQ(matches(c.prefix), std::string("before ") + c.matches) << c.prefix;
    }
    EXPECT_EQ(complete(""), "");
    EXPECT_EQ(complete(nullptr), "");
    EXPECT_EQ(matches(""), matches(nullptr));
}

TEST_F(Completion, TheResultMayBeThePrefix) {
    KIT_String text("zo");
    manager.completeCommand(text.c_str(), text);
    EXPECT_EQ(text, "zoom");
}

}   // namespace
