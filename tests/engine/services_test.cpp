// SPDX-License-Identifier: Apache-2.0
// What the manager keeps for its host: streams, prompts, modes, sources and their ends, channel blocks, contexts.
#include "EngineFixture.h"

#include <memory>

#include <orvlang/platform/fml/FML.h>
#include <orvlang/platform/kit/KIT_WorkBuffer.h>
#include <orvlang/platform/trk/TRK_EventManager.h>
#include <orvlang/symbols/CMD_VariableTable.h>

namespace {

class Services : public EngineFixture {
protected:
    explicit Services(bool interactive = false) : EngineFixture(interactive) {
        install("begin", [](CMD_Args &args) { args.out() << CMD_Manager::getContext()->beginChannelBlock(); });
        install("finish", [](CMD_Args &args) { args.out() << CMD_Manager::getContext()->endChannelBlock(); });
    }
};

TEST_F(Services, Streams) {
    std::ostringstream one, two;
    manager.pushOutputStreams(one, one);
    manager.pushOutputStreams(two, one);
    manager.sendInput("echo a; nosuch", false);
    EXPECT_EQ(two.str(), "a\n");
    EXPECT_EQ(one.str(), "Unknown command: nosuch\n\r");
    // A stream that goes leaves every slot, however deep, to the process's own.
    manager.streamDeleted(one);
    std::ostream &bottomErr = manager.setStandardErr(two);
    EXPECT_EQ(&bottomErr, &std::cerr);
    manager.popOutputStreams();
    EXPECT_EQ(&manager.setStandardOut(one), &std::cout);
    manager.popOutputStreams();
    // The last one stays.
    for (int i = 0; i < 5; ++i)
        manager.popOutputStreams();
    EXPECT_EQ(&manager.setStandardOut(transcript.out()), &std::cout);
    EXPECT_EQ(&manager.setStandardErr(transcript.err()), &std::cerr);
    EXPECT_EQ(type("echo c > f; echo d"), "d\n");
    // What one callback pushes goes with its statement; a later one that pops takes nothing from the host.
    manager.pushOutputStreams(transcript.out(), transcript.err());
    install("push", [](CMD_Args &) { CMD_Manager::getContext()->pushOutputStreams(std::cout, std::cerr); });
    install("pop", [](CMD_Args &) { CMD_Manager::getContext()->popOutputStreams(); });
    EXPECT_EQ(type("push; pop; echo e"), "e\n");
    manager.popOutputStreams();
    EXPECT_EQ(&manager.setStandardOut(transcript.out()), &transcript.out());
}

TEST_F(Services, ModesAndContext) {
    manager.setVerbose(5);
    EXPECT_EQ(manager.getVerbose(), 2);
    EXPECT_EQ(manager.setHistoryCapture(2), 1);
    EXPECT_EQ(manager.setHistoryCapture(1), 0);
    manager.setSafeMode(8);
    EXPECT_TRUE(manager.isInSafeMode() && fml_getSafeMode() && !manager.getIORedirection());
    manager.setSafeMode(0);
    EXPECT_TRUE(!fml_getSafeMode() && manager.getIORedirection());
    {
        CMD_Manager other("other");
        manager.sendInput("echo a", false);
        EXPECT_EQ(CMD_Manager::getContext(), &manager);
        other.setContext();
    }
    EXPECT_EQ(CMD_Manager::getContext(), nullptr);
    EXPECT_EQ(type("alias").size(), 2u);   // a statement brings the context back: the "a" from before
}

TEST_F(Services, ChannelBlocks) {
    const auto held = [] { return TRKgetEventManager().isHandlingEvents(); };
    EXPECT_EQ(type("begin; finish"), "00");
    EXPECT_EQ(script("finish; begin; begin; finish; finish; finish"), "011110");
    EXPECT_FALSE(held());
    // It goes on across the end of an inner script, and ends with the outermost.
    folder.write("inner.cmd", "begin; begin\n");
    EXPECT_EQ(script("source inner.cmd\necho a; read x\necho b\n"), "11a\n");
    EXPECT_TRUE(held());
    EXPECT_EQ(type("1"), "b\n{Got chblockbegin without chblockend in s.cmd\n}");
    EXPECT_FALSE(held());
    // However that script ends.
    EXPECT_EQ(script("begin; nosuch"),
              "1{s.cmd (1): Unknown command: nosuch\n\rGot chblockbegin without chblockend in s.cmd\n}");
    EXPECT_FALSE(held());
}

TEST_F(Services, AChannelBlockEndsWithItsManager) {
    folder.write("waits.cmd", "begin\nread x\n");
    {
        CMD_Manager other(name.c_str());
        other.execute("source waits.cmd", 0, &transcript.out(), &transcript.err(), 1, true);
        EXPECT_EQ(transcript.take(), "1");
        EXPECT_TRUE(TRKgetEventManager().isHandlingEvents());
    }
    EXPECT_FALSE(TRKgetEventManager().isHandlingEvents());
    EXPECT_EQ(script("finish; begin; finish"), "011") << "nothing is left of its count";
}

TEST_F(Services, WhatHeldEventsSetOffMayOpenABlock) {
    folder.write("changed.cmd", "begin; echo changed; begin; finish; finish\n");
    install("change", [](CMD_Args &) { TRKgetEventManager().sendEvent(CMD_Manager::getContext()); });
    TRKgetEventManager().setListener(
        [](const void *, void *) {
            CMD_Manager::getContext()->execute("source changed.cmd", 0, nullptr, nullptr, 1, true);
        },
        nullptr);
    EXPECT_EQ(script("begin\nchange; change\necho held\nfinish\necho behind\n"),
              "1held\n1changed\n1111behind\n");
    TRKgetEventManager().setListener(nullptr, nullptr);
    EXPECT_FALSE(TRKgetEventManager().isHandlingEvents());
}

TEST_F(Services, Sources) {
    EXPECT_EQ(manager.popSource(1), manager.getSource());   // the console stays
    EXPECT_EQ(manager.getSourceLevel(), 0);
    for (const char *name : { "missing.cmd", "", ".", static_cast<const char *>(nullptr) })
        EXPECT_EQ(manager.pushSource(name, 0), nullptr);
    folder.write("a.cmd", "one\n\ntwo");
    CMD_Source *source = manager.pushSource("a.cmd", 1);
    ASSERT_NE(source, nullptr);
    EXPECT_STREQ(source->getFilename(), "a.cmd");
    EXPECT_TRUE(source->getEchoState() && !source->isStdIn());
    KIT_WorkBuffer line;
    EXPECT_STREQ(source->getLine(line), "one");
    source->pushUnfinishedCommands("first");
    source->pushUnfinishedCommands("second");
    EXPECT_STREQ(source->getLine(line), "second");
    source->startBlock();
    EXPECT_FALSE(source->hasUnfinishedCommands());
    EXPECT_EQ(source->getLine(line), nullptr);
    source->pushUnfinishedCommands("inside");
    EXPECT_STREQ(source->getLine(line), "inside");
    source->endBlock();
    EXPECT_STREQ(source->getLine(line), "first");
    EXPECT_STREQ(source->getLine(line), "");
    EXPECT_EQ(source->getLineNumber(), 2);
    source->endBlock();   // none is open
    EXPECT_STREQ(source->getLine(line), "two");
    EXPECT_EQ(source->getLine(line), nullptr);
    manager.getError(1) << "here";
    manager.getError(0) << " there";
    EXPECT_EQ(manager.popSource(1)->getFilename(), std::string("stdin"));
    manager.getError(1) << " console";
    EXPECT_EQ(transcript.take(), "{a.cmd (3): here there console}");
}

TEST_F(Services, ALoopThatIsNotClosedIsReportedByTheSourceBelow) {
    folder.write("open.cmd", "for i = 1 to 2\necho $i\n");
    folder.write("leaves.cmd", "for i = 1 to 2\nexit\nend\n");
    EXPECT_EQ(script("\nsource open.cmd\nsource leaves.cmd\necho behind"),
              "{s.cmd (2): Invalid loop nesting in open.cmd\n}behind\n");
    EXPECT_EQ(manager.getLoopNestLevel(), 0);
}

class Prompts : public Services {
protected:
    Prompts() : Services(true) {}
    std::string prompt() {
        manager.doPrompt();
        return transcript.take();
    }
};

TEST_F(Prompts, ShowTheState) {
    EXPECT_EQ(prompt(), name + " -> ");
    static const struct {
        const char *line, *prompt;
    } theCases[] = {
        { "prompt '[$x `1+1`] '", "[ 2] " },
        { "set x = 'a b'", "[a b 2] " },
        { "echo \\", "? " },
        { "a", "[a b 2] " },
        { "read a", "" },
        { "1", "[a b 2] " },
        { "if 0", "? " },
        { "for i = 1 to 2", "> " },
        { "end", "? " },
        { "else", "[a b 2] " },
        { "if 1 2", "[a b 2] " },
        { "endif", "[a b 2] " },
        { "endif", "[a b 2] " },
        { "source reads.cmd", "" },
        { "1", "[a b 2] " },
        { "prompt '`nosuch()`<'", "<" },
        { "prompt 'a\\\\$x' '\"q\"'", "a$x \"q\"" },
        { "prompt '`run(\"prompt new\")`|'", "|" },   // it changes the text that is being expanded
        { "# nothing", "new" },
    };
    folder.write("reads.cmd", "if 0\nendif\nread a\n");
    for (const auto &c : theCases) {
        type(c.line);
        EXPECT_EQ(prompt(), c.prompt) << c.line;
    }
    EXPECT_EQ(type("prompt; prompt a  b; prompt"), "prompt 'new'\nprompt 'a b'\n");
}

TEST_F(Prompts, Stack) {
    install("asked", [](CMD_Args &) { CMD_Manager::getContext()->doPrompt(); });
    EXPECT_EQ(script("asked"), "") << "a script has none";
    manager.pushPrompt(nullptr);
    manager.pushPrompt("two");
    EXPECT_STREQ(manager.getPrompt(9999), "two");
    EXPECT_STREQ(manager.getPrompt(1), "");
    for (int i = 0; i < 9; ++i)
        manager.popPrompt();
    EXPECT_EQ(type("asked"), name + " -> ");
}

TEST_F(Prompts, WhatSafeModeHasSetIsExpandedInIt) {
    install(
        "unsafe", [](CMD_Args &args) { args.out() << "run"; }, "", false);
    for (const int safe : { 1, 0 }) {
        manager.setSafeMode(safe);
        type("prompt '`execute(\"unsafe\")`'");
        manager.setSafeMode(0);
        EXPECT_EQ(prompt().starts_with("run"), !safe);
        EXPECT_EQ(manager.isInSafeMode(), 0);
    }
}

}   // namespace
