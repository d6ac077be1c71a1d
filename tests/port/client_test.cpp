// SPDX-License-Identifier: Apache-2.0
// The program as a client of a port, other clients, and the examples of the port guide.
#include "PortFixture.h"

#include <csignal>
#include <ctime>
#include <filesystem>
#include <memory>
#include <regex>

#include <spawn.h>
#include <sys/wait.h>

#include "Guide.h"
#include "Terminal.h"
#include <orvlang/bridge/CMD_Python.h>
#include <orvlang/engine/CMD_Args.h>
#include <orvlang/platform/net/KIT_NetSocket.h>
#include <orvlang/platform/osl/OSL_System.h>

namespace {

using namespace std::string_view_literals;
using Words = std::vector<std::string>;

class ClientTest : public PortTest {
protected:
    Outcome connect(const std::string &address, const Words &words, const std::string &input = "") const {
        Words all = { ORVLANG_PROGRAM, "--connect", address };
        all.insert(all.end(), words.begin(), words.end());
        return serveProgram(all, input);
    }
    /// A listener that is no port: it takes one request, gives it a reply, perhaps lets another one come, and closes the
    /// connection.
    Outcome connectToOther(const Words &words, const std::string &input, std::string_view reply = "",
                           bool awaitsMore = false) const {
        const int port = findFreePort();
        const std::unique_ptr<KIT_NetSocket> listening(KIT_NetSocket::newSocket(port, true, false));
        std::thread server([&] {
            std::unique_ptr<KIT_NetSocket> taken;
            while (!(taken = listening->accept()))
                std::this_thread::yield();
            char request[1000];
            int got = 0;
            taken->read(request, sizeof request, &got, -1);
            taken->write(reply.data(), static_cast<int>(reply.size()), &got);
            if (awaitsMore)
                OSLsystem().waitReadable(taken->getDescriptor(), -1);
        });
        const Outcome outcome = connect(std::to_string(port), words, input);
        server.join();
        return outcome;
    }
};

TEST_F(ClientTest, RunsText) {
    const std::string plain = std::to_string(open()), apart = std::to_string(open("-e"));
    static const struct {
        const char *text, *out, *err;
        int status;
    } theCases[] = {
        { "echo a; echo b", "a\nb\n", "", 0 },
        { "echo a\necho b", "a\nb\n", "", 0 },
        { "echo a \\\nb", "a b\n", "", 0 },
        { "for i = 1 to 2\necho $i\nend\necho x", "1\n2\nx\n", "", 0 },
        { "", "", "", 0 },
        { "echo x\nnosuch", "x\n", "Unknown command: nosuch\n\r", 1 },
        { "echo x\nexit 5", "x\n", "", 5 },
        { "\x04", "", "Unknown command: \x04\n\r", 1 },
        { "<?xml version='1.0'?><orvlang>echo x</orvlang>", "x\n", "", 0 },
    };
    for (const auto &c : theCases) {
        const Outcome outcome = connect(apart, { "-c", c.text });
        EXPECT_EQ(outcome.out, c.out) << c.text;
        EXPECT_EQ(outcome.err, c.err) << c.text;
        EXPECT_EQ(outcome.status, c.status) << c.text;
        EXPECT_EQ(connect("localhost:" + plain, { "-c", c.text }).out, std::string(c.out) + c.err) << c.text;
    }
    const std::string word(300000, 'w');
    std::string lines;
    for (int i = 0; i < 3000; ++i)
        lines += "echo " + std::to_string(i) + "\n";
    EXPECT_EQ(connect(apart, { "-c", lines + "nosuch" }).out.size(), 3000 * 5 - 1110u);
    run("set -g word = " + word);
    EXPECT_EQ(connect(apart, { "-c", "echo $word$word$word$word" }).out, word + word + word + word + "\n");
}

TEST_F(ClientTest, RunsLines) {
    const std::string port = std::to_string(open("-e"));
    const Outcome outcome = connect(port, {},
                                    "for i = 1 to 2\r\necho $i\nend\n\necho a \\\nb\nread x\n\necho [$x]\n"
                                    "\x04\n<?xml version='1.0'?><orvlang>echo x</orvlang>\nexit 7\nnosuch");
    EXPECT_EQ(outcome.out, "1\n2\na b\n[]\nx\n");
    EXPECT_EQ(outcome.err, "Unknown command: \x04\n\rUnknown command: nosuch\n\r");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(connect(port, {}, "echo x\n").status, 0);
}

TEST_F(ClientTest, OnATerminal) {
    const std::string port = std::to_string(open());
    serveDuring([&] {
        Terminal terminal({ { ORVLANG_PROGRAM, "--connect", port }, folder.path(), "", {} });
        terminal.waitFor(port + " -> ");
        terminal.type("echo typed | tr\r");
        terminal.waitFor("\r\ntyped | tr\r\n" + port + " -> ");
        terminal.type("\x04");
        terminal.waitForEnd(0);
    });
}

TEST_F(ClientTest, WithoutAStatus) {
    const std::string port = std::to_string(open());
    // Nothing is asked that would be taken for a line of what is open, so the next client can go on with it.
    static const struct {
        const char *input, *rest, *open;
    } theCases[] = {
        { "read x", "answer\necho $x", "while `read` waits" },
        { "end\nfor i = 1 to 2\nread x; echo never", "end\na\nanswer\necho $x", "in a loop" },
        { "echo \"; for\"; if 0 # ; for", "endif\necho answer", "in an if block" },
        { "echo \\", "answer", "in a continued line" },
    };
    for (const auto &c : theCases) {
        const Outcome waiting = connect(port, {}, c.input);
        EXPECT_EQ(waiting.status, 1) << c.input;
        EXPECT_NE(waiting.err.find(c.open), std::string::npos) << c.input << waiting.err;
        const Outcome rest = connect(port, {}, c.rest);
        EXPECT_TRUE(rest.out.ends_with("answer\n")) << c.input << rest.out;
    }
    for (const char *input : { "if 0\nread x\nendif", "if 1; read x; endif\na" })
        EXPECT_EQ(connect(port, {}, input).status, 0) << input;
    // An end behind the reply, whichever way it shows, is no failure.
    for (const bool isReset : { false, true }) {
        const Outcome gone = connectToOther({}, "echo x\n", "x\n\0"sv, isReset);
        EXPECT_EQ(gone.out, "x\n");
        EXPECT_EQ(gone.err, "");
        EXPECT_EQ(gone.status, 0);
    }
}

TEST_F(ClientTest, ConnectionsThatFail) {
    const std::string unused = std::to_string(findFreePort());
    const Outcome refused = connect(unused, { "-c", "echo x" });
    EXPECT_EQ(refused.err, "orvlang: cannot connect to 127.0.0.1:" + unused + ": Connection refused\n");
    EXPECT_EQ(refused.status, 1);
    const Outcome unknown = connect("no.such.host.invalid:" + unused, { "-c", "echo x" });
    EXPECT_EQ(unknown.err.find("orvlang: cannot find no.such.host.invalid:" + unused + ": "), 0u)
        << unknown.err;
    EXPECT_EQ(unknown.status, 1);
    for (const Outcome &deaf : { connectToOther({ "-c", "echo x" }, ""), connectToOther({}, "echo x\necho y\n"),
                                 connectToOther({}, "") }) {
        EXPECT_TRUE(std::regex_match(
            deaf.err, std::regex("orvlang: no reply from 127.0.0.1:\\d+: the connection has ended\n")))
            << deaf.err;
        EXPECT_EQ(deaf.out, "");
        EXPECT_EQ(deaf.status, 1);
    }
    const Outcome tooLong =
        connect(std::to_string(open("-i max-bytes:100")), { "-c", "echo " + std::string(200, 'x') });
    EXPECT_EQ(tooLong.err, "orvlang: Orvane could not process HTTP request\n");
    EXPECT_EQ(tooLong.status, 1);
}

TEST_F(ClientTest, WrongOptions) {
    for (const Words &words :
         { Words{ "--connect", "abc" }, Words{ "--connect", "" }, Words{ "--connect", "0" },
           Words{ "--connect", "-1" }, Words{ "--connect", ":6000" }, Words{ "--connect", "[]:6000" },
           Words{ "--connect", "host:" }, Words{ "--connect", "host:6000x" },
           Words{ "--connect", "6000", "script" }, Words{ "--connect", "6000", "-s" },
           Words{ "-P", "name", "--connect", "6000" }, Words{ "-n", "name", "-c", "x", "--connect", "6000" },
           Words{ "--connect" } }) {
        Words all = { ORVLANG_PROGRAM };
        all.insert(all.end(), words.begin(), words.end());
        const Outcome outcome = Program{ all, folder.path(), "", {} }.run();
        EXPECT_EQ(outcome.status, 2) << words.back();
        EXPECT_NE(outcome.err.find("Try 'orvlang --help'"), std::string::npos) << words.back();
        EXPECT_EQ(outcome.out, "");
    }
}

TEST_F(ClientTest, ProgramServesWhileItWaits) {
    const auto run = [this](const std::string &text, const std::string &request, const std::string &awaited) {
        const std::string port = std::to_string(findFreePort()), program = ORVLANG_PROGRAM;
        return Program{
            { "/bin/bash", "-c",
              program + " -c 'openport -w " + port + "\n" + text + "' & until " + program + " --connect " +
                  port + " -c '" + request + " " + port + "' > served 2>&1" + awaited +
                  "; do :; done; wait $!" },
            folder.path(),
            "",
            {}
        }.run();
    };
    const Outcome closed = run("echo waited", "echo served; closeport", "");
    EXPECT_EQ(closed.out, "waited\n");
    EXPECT_EQ(closed.status, 0);
    EXPECT_EQ(folder.read("served"), "served\n");
    EXPECT_EQ(run("", "quit 7 #", "; grep -q ended served").status, 7);
}

TEST_F(ClientTest, ASecondSignalEndsARequestThatTakesMinutes) {
    for (const int number : { SIGTERM, SIGQUIT }) {
        const int port = findFreePort();
        const Program program{
            { ORVLANG_PROGRAM, "-c", "openport -w " + std::to_string(port) }, folder.path(), "", {}
        };
        std::vector<std::string> texts;
        pid_t pid = 0;
        ASSERT_EQ(posix_spawn(&pid, ORVLANG_PROGRAM, nullptr, nullptr, program.argumentTable().data(),
                              program.environmentTable(texts).data()),
                  0);
        runUntil([&] { return PortClient::canConnect(port); });
        const PortClient client(port);
        client.send("<?xml version='1.0'?><o><!--" + std::string(1000000, '-') + "--></o>");
        clockid_t used;
        ASSERT_EQ(clock_getcpuclockid(pid, &used), 0);
        timespec time;
        runUntil([&] { return clock_gettime(used, &time) == 0 && time.tv_sec > 0; });   // parsing by then
        int status = -1;
        runUntil([&] { return kill(pid, number) == 0 && waitpid(pid, &status, WNOHANG) == pid; });
        EXPECT_EQ(WTERMSIG(status), number);
    }
}

/// The example ports of the guide stand for free ones.
class PortGuide : public ClientTest {
protected:
    PortGuide() {
        for (const char *shown : { "6000", "6001", "6002", "6003" })
            ports.emplace_back(shown, std::to_string(findFreePort()));
    }

    std::string translate(std::string text) const {
        for (const auto &[shown, port] : ports)
            text = std::regex_replace(text, std::regex("\\b" + shown + "\\b"), port);
        return text;
    }
    Outcome runFence(const Fence &fence) {
        const std::string text = translate(fence.text);
        if (fence.kind == "orv")
            return { run(text), "", 0 };
        const std::string path = std::filesystem::path(ORVLANG_PROGRAM).parent_path();
        return serveProgram({ "/bin/bash", "-c", "PATH=" + path + ":$PATH\n" + text });
    }

    std::vector<std::pair<std::string, std::string>> ports;
};

TEST_F(PortGuide, ExamplesWriteWhatTheyShow) {
    const std::vector<Fence> fences = fencesOf(std::filesystem::path(ORVLANG_TREE) / "docs/port.md");
    int examples = 0;
    for (size_t i = 0; i < fences.size(); ++i) {
        const Fence &fence = fences[i];
        if (!fence.name.empty())
            folder.write(fence.name, translate(fence.text));
        if (!fence.name.empty() || (fence.kind != "sh" && fence.kind != "orv"))
            continue;
        SCOPED_TRACE("docs/port.md:" + std::to_string(fence.line));
        const bool hasOutput = i + 1 < fences.size() && fences[i + 1].kind == "output";
        const Outcome outcome = runFence(fence);
        compareLines("output", hasOutput ? translate(fences[i + 1].text) : "", outcome.out);
        compareLines("errors", "", outcome.err);
        ++examples;
    }
    EXPECT_GE(examples, 8);
}

// What the guide says that safe mode does not keep from anybody.
TEST_F(PortGuide, SafeModeIsNoWall) {
    static int theRuns;
    theRuns = 0;
    manager.installCommand(
        "unsafe", "", [](CMD_Args &) { ++theRuns; }, false);
    const int safe = open("-s");
    EXPECT_EQ(ask(safe, "unsafe"), "Command 'unsafe' is not a safe command and cannot be run\n\r");

    ask(safe, "atjob 1 unsafe");
    runUntil([] { return theRuns == 1; });

    ask(safe, "alias echo unsafe");
    run("echo harmless");
    EXPECT_EQ(theRuns, 2);
    ask(safe, "alias -u echo");

    folder.write("file", "");
    EXPECT_EQ(ask(safe, "urm " + folder.path() + "/file"), "");
    EXPECT_FALSE(std::filesystem::exists(folder.path() + "/file"));

    ask(safe, "<?xml version='1.0'?><python_statements>import sys, types, builtins\n"
              "lamp = types.SimpleNamespace(run=lambda args, options: ('', ''))\n"
              "sys.modules['orvlang_commands'] = types.SimpleNamespace(lamp=lamp)\n"
              "builtins.mark = lambda: open('" +
                  folder.path() + "/mark', 'w').close()\n</python_statements>");
    manager.installCommand("lamp", "", CMDpythonCommandCallback, true);
    ask(safe, R"(lamp '\", mark()]) #')");
    EXPECT_TRUE(std::filesystem::exists(folder.path() + "/mark"));

    const Program quitting{ { ORVLANG_PROGRAM, "-s", "-c", "quit 7" }, folder.path(), "", {} };
    EXPECT_EQ(quitting.run().status, 7);

    ask(safe, "set -g list = \"a';unsafe;'b\"");
    run("foreach word ( $list )\necho [$word]\nend\n");
    EXPECT_EQ(theRuns, 3);

    const int plain = open();
    ask(safe, "unsafe \\");
    ask(plain, "echo harmless");
    EXPECT_EQ(theRuns, 4);
    ask(safe, "for i = 1 to 1");
    ask(safe, "unsafe");
    ask(plain, "end");
    EXPECT_EQ(theRuns, 5);

    folder.write("bin/lamp", "#!/bin/sh\ntouch \"$1\"\n");
    std::filesystem::permissions(folder.path() + "/bin/lamp", std::filesystem::perms::owner_all);
    ask(safe, "set -g path = $PATH; setenv PATH = " + folder.path() + "/bin:$PATH");
    run("unix lamp " + folder.path() + "/lit; setenv PATH = $path");
    EXPECT_TRUE(std::filesystem::exists(folder.path() + "/lit"));
    ask(safe, "ucd " + folder.path() + "/bin");
    run("unix ./lamp ../beside");
    EXPECT_TRUE(std::filesystem::exists(folder.path() + "/beside"));
}

}   // namespace
