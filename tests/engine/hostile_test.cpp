// SPDX-License-Identifier: Apache-2.0
// Input that nobody writes on purpose, and commands that take away what they stand on. The sanitizers watch; each test
// ends with a manager that still works.
#include "EngineFixture.h"

#include <memory>
#include <optional>

#include <orvlang/platform/fml/FML.h>
#include <orvlang/platform/kit/KIT_Nesting.h>
#include <orvlang/platform/osl/KIT_Interrupt.h>

namespace {

class Hostile : public EngineFixture {
protected:
    ~Hostile() override {
        manager.sendInput("echo sound", false);
        EXPECT_EQ(transcript.take(), "sound\n");
        EXPECT_EQ(manager.getSourceLevel(), 0);
        EXPECT_EQ(manager.getPendingInput(), CMD_Manager::Pending::Nothing);
    }
};

std::string repeat(const std::string &text, size_t count) {
    std::string result;
    result.reserve(text.size() * count);
    while (count-- > 0)
        result += text;
    return result;
}

size_t count(const std::string &text, const std::string &part) {
    size_t found = 0;
    for (size_t i = 0; (i = text.find(part, i)) != std::string::npos; i += part.size())
        ++found;
    return found;
}

constexpr size_t tenMegabytes = 10 * 1000 * 1000;

TEST_F(Hostile, LongLines) {
    const std::string word(tenMegabytes, 'w');
    EXPECT_EQ(type("echo " + word).size(), tenMegabytes + 1);
    EXPECT_EQ(type(word), "{Unknown command: " + word + "\n\r}");
    EXPECT_EQ(type("echo " + repeat("a ", 500000)).size(), 1000000u);
    type("set x = " + word);
    EXPECT_EQ(type("echo \"$x$x\"").size(), 2 * tenMegabytes + 1);
    EXPECT_EQ(type("echo a > " + word), "{Unable to redirect output to " + word + "\n}a\n");
    type("alias long echo " + word);
    EXPECT_EQ(type("long a").size(), tenMegabytes + 3);
    const std::string statement = "echo " + std::string(94, 's') + ";";
    EXPECT_EQ(script(repeat(statement, tenMegabytes / 100)).size(), tenMegabytes / 100 * 95);
    EXPECT_EQ(type(repeat(";", 100000) + repeat("=", 1000000)).substr(0, 21), "{Unknown command: ==\n");
}

class HostileConsole : public EngineFixture {
protected:
    HostileConsole() : EngineFixture(true) {}
};

TEST_F(HostileConsole, AStatementForEachByteOfALongLine) {
    type(repeat(";", 300000));   // each rest of it is a line of the history
    EXPECT_EQ(manager.getHistoryCount(), 200u);
    EXPECT_STREQ(manager.getHistoryCommand(1), ";;");
}

TEST_F(Hostile, ManyContinuedLines) {
    EXPECT_EQ(script("echo " + repeat("aaaaaaaaa\\\n", 99999) + "a\n").size(), 999992u);
    for (int i = 0; i < 10000; ++i)
        manager.sendInput("z\\", false);
    EXPECT_EQ(type("\n"), "{Unknown command: z\n\r}");
}

TEST_F(Hostile, BytesThatAreNoText) {
    std::string bytes;
    for (int i = 1; i < 256; ++i)
        if (i != '\n')
            bytes += static_cast<char>(i);
    type(bytes + "\n\"" + bytes + "\n'" + bytes + "\n`" + bytes);
    std::string nul = "echo a_b; echo c_\necho d_\\\n_\n_echo e\necho f";
    std::replace(nul.begin(), nul.end(), '_', '\0');
    EXPECT_EQ(script(nul), "a\nd\nf\n");   // a NUL ends its line
    EXPECT_EQ(script(std::string(100, '\0')), "");
    EXPECT_EQ(script("\xef\xbb\xbf"
                     "echo a"),
              "a\n");
    // Open quotes run to the end of their line, and nobody says a word.
    EXPECT_EQ(type("echo \"a; b # c\necho 'a; b\necho `1+1\necho a\\\\;\n"), "a; b # c\na; b\n2\na\\;\n");
}

TEST_F(Hostile, ScriptsWithoutEnd) {
    folder.write("self.cmd", "source self.cmd\n");
    EXPECT_EQ(type("source self.cmd; echo behind"), "{self.cmd (1): Nesting too deep\n}behind\n");
    EXPECT_EQ(manager.getStatusCode(), 0);
}

TEST_F(Hostile, ExecuteWithoutEnd) {
    // Each would come back to the limit from every level that it went down, if the levels went on.
    static const char *const theLines[] = {
        "alias x 'time \"x; time x; echo never\"'\nx; echo behind",
        "alias x 'echo `run(\"x\")` `run(\"x\")`'\nx; echo behind",
        "alias x 'time x > f; time x >> f'\nx; echo behind",
        "alias x 'source twice.cmd'\nx; echo behind",
        "nest; echo behind",
        "send; echo behind",
        "sendlines; echo behind",
        "for i = 1 to 2\nnest; echo behind\nend",
    };
    install("nest", [](CMD_Args &) {
        CMD_Manager::getContext()->execute("nest; nest; echo never", 0, nullptr, nullptr, 1, true);
    });
    install("send", [](CMD_Args &) {
        CMD_Manager::getContext()->sendInput("send; send; echo never", true);
        CMD_Manager::getContext()->sendInput("send", false);
    });
    install("sendlines", [](CMD_Args &) {
        CMD_Manager::getContext()->sendMultiLineInput("sendlines\nsendlines\necho never", true);
    });
    folder.write("twice.cmd", "time x; time x\ntime x; echo never\n");
    for (const char *lines : theLines) {
        const std::string written = type(lines);
        EXPECT_GE(count(written + folder.read("f"), "Nesting too deep"), 1u) << lines;
        EXPECT_EQ(count(written, "never"), 0u) << lines;
        EXPECT_GE(count(written, "behind\n"), 1u) << lines;
        folder.write("f", "");
    }
    type("alias x 'echo `run(\"x\")`'");
    folder.write("s.cmd", "x\necho never\n");
    manager.execute("source s.cmd; echo never", 0, nullptr, nullptr, 1, true);
    EXPECT_EQ(count(transcript.take(), "never"), 0u);
    EXPECT_EQ(manager.getSourceLevel(), 0);
    // A prompt that shows itself, and what is deep without being endless.
    install("shown", [](CMD_Args &) {
        KIT_String text;
        CMD_Manager::getContext()->getPrompt(text);
    });
    EXPECT_EQ(type("prompt '`run(\"shown\")`'\nshown"), "");
    EXPECT_EQ(count(type(repeat("time ", 20) + "echo deep"), "deep"), 1u);
}

std::ostringstream theReplies;

void serve(const char *request) {
    const KIT_Nesting::Scope apart(KIT_Nesting::Scope::Apart);
    CMD_Manager::getContext()->execute(request, 0, &theReplies, &theReplies, 1, true);
}

TEST_F(Hostile, WorkThatIsServedMeanwhileNestsOnItsOwn) {
    install("nest",
            [](CMD_Args &) { CMD_Manager::getContext()->execute("nest", 0, nullptr, nullptr, 1, true); });
    install("wait", [](CMD_Args &args) {
        CMD_Manager::getContext()->execute(args.argv(1), 0, nullptr, nullptr, 1, true);
        serve("nest");
        serve("echo served");
    });
    // A runaway request does not end the statement that waits, nor does one in that statement end the requests.
    EXPECT_EQ(type("time 'wait \"echo before\"; echo behind' > f; wait nest; echo behind"),
              "{Nesting too deep\n}behind\n");
    EXPECT_EQ(folder.read("f").substr(0, 14), "before\nbehind\n");
    EXPECT_EQ(theReplies.str(), "Nesting too deep\nserved\nNesting too deep\nserved\n");
}

std::optional<std::ostringstream> theStream;

constexpr const char *theDeeds[] = { "pop",      "popall",  "push",  "again", "poppush", "text",
                                     "install",  "unalias", "reset", "clear", "streams", "manager",
                                     "unstream", "read",    "half",  "loop" };

/// deed NAME: does something to the manager, and to what the command stands on.
void deed(CMD_Args &args) {
    CMD_Manager &manager = *CMD_Manager::getContext();
    const std::string_view name = args.argv(1);
    if (name == "pop" || name == "poppush" || name == "text")
        manager.popSource(1);
    if (name == "push" || name == "poppush" || name == "again")
        manager.pushSource(name == "again" ? "s.cmd" : "other.cmd", 1);
    if (name == "again")
        manager.popSource(1);
    if (name == "text")
        manager.sendMultiLineInput("echo t\n", true);
    if (name == "popall")
        manager.execute("nosuch", 0, nullptr, nullptr, 0, true);
    if (name == "install") {
        const auto pass = [](CMD_Args &inner) { inner.callBaseClassCommand(); };
        manager.installCommand("deed", "", pass, true);
        args.callBaseClassCommand();
    }
    if (name == "unalias")
        manager.destroyAliases();
    if (name == "reset")
        manager.resetVariables();
    if (name == "clear") {
        manager.clearHistory();
        manager.popPrompt();
    }
    if (name == "streams") {
        theStream.emplace();
        manager.pushOutputStreams(*theStream, *theStream);
        manager.execute("echo into; deed unstream; echo out", 0, nullptr, nullptr, 1, true);
    }
    if (name == "unstream") {
        if (theStream)
            manager.streamDeleted(*theStream);
        theStream.reset();
        for (int i = 0; i < 3; ++i)
            manager.popOutputStreams();
    }
    if (name == "manager")
        CMD_Manager("inside").sendInput(";", true);
    if (name == "read")
        manager.sendInput("read x", false);
    if (name == "half")
        manager.sendInput("half a line\\", true);
    if (name == "loop")
        manager.sendInput("for i = 1 to 3", true);
}

TEST_F(Hostile, CommandsTakeAwayWhatTheyStandOn) {
    install("deed", deed);
    folder.write("other.cmd", "echo other; echo more\nnosuch\n");
    static const char *const theForms[] = {
        "deed %; echo behind\necho next\n",
        "echo `run(\"deed %\")` `run(\"deed %\")`; echo behind\n",
        "alias a 'deed %; a2'\nalias a2 'echo a2'\na; a\necho next\n",
        "time 'deed %; echo inner'\necho next\n",
        "deed % > f; echo behind\n",
        "if 1\ndeed %\nendif\nfor i = 1 to 2\ndeed %\nend\n",
    };
    for (const char *name : theDeeds)
        for (std::string form : theForms) {
            while (form.find('%') != std::string::npos)
                form.replace(form.find('%'), 1, name);
            SCOPED_TRACE(form);
            folder.write("outer.cmd", "source s.cmd; echo outer\necho last\n");
            script(form);
            type("source outer.cmd\n" + form);
            manager.execute(form.c_str(), 0, nullptr, nullptr, 1, true);
            // Whatever is still open or waits is given what it wants.
            type("end\nend\nend\nend\nendif\nendif\n1\n1\n");
            while (manager.getSourceLevel() > 0)
                manager.popSource(0);
            type("\n\n\nend\nend\nend\nendif\nendif");
            for (int i = 0; i < 9; ++i)
                manager.popOutputStreams();
            manager.setStandardOut(transcript.out());
            manager.setStandardErr(transcript.err());
            transcript.take();
            manager.sendInput("echo sound", false);
            ASSERT_EQ(transcript.take(), "sound\n");
        }
}

TEST(HostileEnd, AManagerGoesWithOpenInput) {
    const TemporaryFolder folder;
    folder.write("s.cmd", "for i = 1 to 2\nread x\nend\n");
    folder.write("loop.cmd", "for i = 1 to 2\nsource " + folder.path() + "/s.cmd\nend\n");
    for (const std::string text : { "read a; echo b", "for i = 1 to 2\nfor k = 1 to 2", "echo a\\",
                                    "if 0\nfor i = 1 to 2", "%/s.cmd", "%/loop.cmd" }) {
        CMD_Manager manager("gone");
        std::istringstream lines(text);
        for (std::string line; std::getline(lines, line);)
            manager.sendInput(line.starts_with('%') ? (folder.path() + line.substr(1)).c_str() : line.c_str(),
                              false);
        EXPECT_NE(manager.getPendingInput(), CMD_Manager::Pending::Nothing) << text;
    }
    EXPECT_EQ(CMD_Manager::getContext(), nullptr);
}

TEST_F(Hostile, AnInterruptDropsTheRest) {
    install("stop", [](CMD_Args &) { KITgetInterrupt()->interrupt(); });
    folder.write("s.cmd", "echo a\nstop; echo never\necho never\n");
    EXPECT_EQ(type("source s.cmd; echo never\necho next"), "a\nnext\n");
    EXPECT_EQ(type("time 'stop; echo never'; echo never\necho next").find("never"), std::string::npos);
    EXPECT_EQ(type("stop\\"), "");
    manager.sendMultiLineInput("echo b\n", false);
    EXPECT_EQ(transcript.take(), "b\n");
}

}   // namespace
