// SPDX-License-Identifier: Apache-2.0
// Installing commands and finding them by name, by prefix and in safe mode, for one manager and for several.
#include "EngineFixture.h"

#include <memory>

#include <orvlang/engine/CMD_Command.h>

namespace {

void tellName(CMD_Args &args) {
    args.out() << args.commandName() << '/' << args.argv(0) << ' ';
}

void tellFirst(CMD_Args &args) {
    args.out() << "first ";
}
void tellSecond(CMD_Args &args) {
    args.out() << "second(";
    args.callBaseClassCommand();
    args.out() << args.commandName() << ") ";
}
void tellManager(CMD_Args &args) {
    args.out() << (CMD_Manager::getContext()->isCommandDefined("over") ? "own " : "foreign ");
}
void tellElsewhere(CMD_Args &args) {
    CMD_Manager("elsewhere").sendInput(";", true);
    args.callBaseClassCommand();
}
void tellThird(CMD_Args &args) {
    args.callBaseClassCommand();
    args.callBaseClassCommand();
    args.out() << "third ";
}

class Registry : public EngineFixture {
protected:
    /// What the word runs; the message in one word when it runs nothing.
    std::string find(CMD_Manager &which, const std::string &word) {
        which.pushOutputStreams(transcript.out(), transcript.err());
        which.sendInput(word.c_str(), false);
        which.popOutputStreams();
        const std::string text = transcript.take();
        return text.starts_with("{Unknown")                   ? "unknown"
               : text.find("specific") != std::string::npos   ? "ambiguous"
               : text.find("not a safe") != std::string::npos ? "unsafe"
                                                              : text;
    }
    std::string listing(const CMD_Manager &which) {
        std::ostringstream text;
        which.commandDump(text, nullptr, nullptr);
        return text.str();
    }
};

TEST_F(Registry, ExactNamesAndPrefixes) {
    CMD_Manager other("ExactNamesAndPrefixes");
    other.installCommand("set", "", tellName, true);
    EXPECT_EQ(find(other, "s"), "set/s ");
    other.installCommand("setenv", "x", tellName, true);
    EXPECT_EQ(find(other, "\"\""), "ambiguous");
    for (const char *command : { "zoo", "pare", "par", "pareach", "S", "x-y", "\xe4" })
        other.installCommand(command, "", tellName, true);
    static const struct {
        const char *word, *found;
    } theCases[] = {
        { "set", "set/set " }, { "sete", "setenv/sete " }, { "s", "ambiguous" }, { "setenvx", "unknown" },
        { "pa", "ambiguous" }, { "par", "par/par " },      { "S", "S/S " },      { "parea", "pareach/parea " },
        { "x", "x-y/x " },     { "\xe4", "\xe4/\xe4 " },   { "Q", "unknown" },   { "\xff", "unknown" },
    };
    for (const auto &c : theCases)
        EXPECT_EQ(find(other, c.word), c.found) << c.word;
    EXPECT_STREQ(other.getOptions("sete"), "x");
    EXPECT_EQ(other.getOptions("s"), nullptr);
    EXPECT_TRUE(other.isCommandDefined("set"));
    EXPECT_FALSE(other.isCommandDefined("sete"));
}

TEST_F(Registry, SafeMode) {
    install("risky", tellName, "r", false);
    install("riskless", tellName);
    install("rocket", tellName, "", false);
    install("rodeo", tellName, "", false);
    manager.setSafeMode(1);
    static const struct {
        const char *word, *found;
    } theCases[] = { { "risky", "unsafe" },
                     { "risk", "ambiguous" },
                     { "ro", "ambiguous" },
                     { "roc", "unsafe" },
                     { "riskl", "riskless/riskl " } };
    for (const auto &c : theCases)
        EXPECT_EQ(find(manager, c.word), c.found) << c.word;
    EXPECT_FALSE(manager.isCommandDefined("risky"));
    EXPECT_EQ(manager.getOptions("risky"), nullptr);
    // An override in safe mode is one all the same.
    install("rocket", tellFirst);
    EXPECT_EQ(find(manager, "roc"), "first ");
    manager.setSafeMode(0);
    EXPECT_STREQ(manager.getOptions("risky"), "r");
}

TEST_F(Registry, OverridesCallWhatTheyOverride) {
    install("over", tellFirst);
    install("over", tellSecond);
    EXPECT_EQ(find(manager, "over"), "second(first over) ");
    install("over", tellThird, "q");
    EXPECT_EQ(find(manager, "ov"), "second(first over) second(first over) third ");
    EXPECT_STREQ(manager.getOptions("ov"), "q");
    install("where", tellManager);
    install("elsewhere", tellElsewhere);
    EXPECT_EQ(find(manager, "where `run(\"elsewhere\")`"), "own ");
    install("where", tellElsewhere);
    EXPECT_EQ(find(manager, "where"), "own ");
}

TEST_F(Registry, ManagersOfOneNameOneAfterTheOther) {
    std::string first;
    for (int i = 0; i < 50; ++i) {
        manager.setContext();   // else the next one would be the first of the process, with the base commands
        CMD_Manager again("ManagersOfOneName");
        again.installCommand("over", "", tellFirst, true);
        again.installCommand("over", "", tellSecond, true);
        again.installCommand("other", "", tellName, true);
        if (i == 0)
            first = listing(again);
        ASSERT_EQ(listing(again), first) << i;
        ASSERT_EQ(find(again, "ov"), "second(first over) ") << i;
        ASSERT_EQ(find(again, "ot"), "other/ot ") << i;
    }
    // One that does without the override sees what it installed itself.
    manager.setContext();
    CMD_Manager plain("ManagersOfOneName");
    plain.installCommand("over", "", tellFirst, true);
    EXPECT_EQ(find(plain, "over"), "first ");
    EXPECT_EQ(find(plain, "ov"), "first ");
    EXPECT_EQ(listing(plain), first);
}

TEST_F(Registry, ManagersOfOneNameAtTheSameTime) {
    auto one = std::make_unique<CMD_Manager>("twins");
    CMD_Manager two("twins");
    one->installCommand("mine", "", tellFirst, true);
    one->installCommand("own", "", tellFirst, true);
    // By its full name a manager finds only what it installed, by a prefix what any of that name did.
    EXPECT_FALSE(two.isCommandDefined("mine"));
    EXPECT_EQ(find(two, "min"), "first ");
    two.installCommand("own", "", tellName, true);
    EXPECT_EQ(find(two, "ow"), "own/ow ");
    EXPECT_EQ(find(*one, "own"), "first ");
    one.reset();
    EXPECT_EQ(find(two, "min"), "first ");
    EXPECT_EQ(find(two, "ow"), "own/ow ");
}

}   // namespace
