// SPDX-License-Identifier: Apache-2.0
// Opening, waiting for and closing ports, by the commands and by a host; applications that are started for a port.
#include "PortFixture.h"

#include <functional>
#include <regex>

#include <alloca.h>
#include <sys/wait.h>

#include "Cases.h"
#include <orvlang/engine/CMD_Args.h>
#include <orvlang/platform/kit/KIT_Exit.h>
#include <orvlang/platform/net/VIO_ServerSocketListener.h>
#include <orvlang/platform/osl/KIT_Interrupt.h>
#include <orvlang/platform/osl/KIT_Thread.h>
#include <orvlang/port/CMD_EvtMonitoringReader.h>

using namespace std::string_literals;

namespace {

constexpr int theMappedDistance = 64512 - 1024;   // from a port to the first number that stands for it

/// Connects back, runs the lines of its first word there, and writes the other words to a file.
constexpr const char *theApplication = R"(import socket, sys
open('words', 'w').write('|'.join(sys.argv[2:]))
with socket.create_connection(('127.0.0.1', int(sys.argv[-1]))) as port:
    for line in sys.argv[1].split(';'):
        port.sendall(line.encode())
        while not port.recv(4096).endswith(b'\0'):
            pass
)";

class PortsTest : public PortTest {
protected:
    PortsTest() {
        folder.write("app.py", theApplication);
        manager.installCommand(
            "interrupted", "", [](CMD_Args &) { KITgetInterrupt()->interrupt(); }, true);
    }

    static std::string text(int number) { return std::to_string(number); }
    std::string list() { return run("closeport"); }
    /// The statement that opens a port and runs the application with these lines.
    std::string application(const std::string &lines, const std::string &rest) {
        return "openport -p -r \"/usr/bin/python3 app.py '" + lines + "' 'two words'\" " + rest;
    }

    /// Runs text that waits for a port, during which a client sends the requests; returns the replies.
    std::string askDuring(const std::string &waiting, int port, const std::vector<std::string> &requests,
                          const std::string &written = "") {
        std::string replies;
        std::thread client([&] {
            while (!PortClient::canConnect(port))
                std::this_thread::yield();
            const PortClient connection(port);
            for (const std::string &request : requests)
                replies += connection.askBlocking(request);
        });
        EXPECT_EQ(run(waiting), written);
        client.join();
        return replies;
    }
};

TEST_F(PortsTest, WrongCalls) {
    for (const auto &row : casesOf(ORVLANG_CASES "/wrong_calls.cases"))
        EXPECT_EQ(run(row[0]), row[1]) << row[0];
    EXPECT_EQ(list(), "Open ports: None\n");
    folder.write("s.cmd", "\nopenport 0\n");
    EXPECT_EQ(run("source s.cmd"), "{s.cmd (2): Invalid port number 0\n}");
    manager.setSafeMode(1);
    EXPECT_EQ(run("openport 6000"), "{Command 'openport' is not a safe command and cannot be run\n\r}");
    EXPECT_EQ(CMD_Manager::getOrvLangPort(), -1);
}

TEST_F(PortsTest, OpenTwiceAndClose) {
    const int first = open(), second = open();
    const std::string one = text(first), two = text(second);
    EXPECT_EQ(list(), "Open ports: " + two + " " + one + " \n");
    EXPECT_EQ(run("openport " + one), "{Port number " + one + " already in use.\n}");
    EXPECT_EQ(run("openport -q " + one), "");
    EXPECT_EQ(run("openport -r nosuchprogram " + one),
              "{Port number " + one +
                  " already in use.\nCouldn't execute application: nosuchprogram\nPlease check that it is in "
                  "your path.\n}");
    EXPECT_EQ(run("openport -q -r '' " + one),
              "{Couldn't execute application: \nPlease check that it is in your path.\n}");
    EXPECT_EQ(run("closeport " + one), "");
    EXPECT_FALSE(PortClient::canConnect(first));
    EXPECT_EQ(list(), "Open ports: " + two + " \n");
    EXPECT_EQ(run("openport -r nosuchprogram " + one),
              "{Couldn't execute application: nosuchprogram\nPlease check that it is in your path.\n}");
    EXPECT_EQ(list(), "Open ports: " + two + " \n");
    EXPECT_EQ(run("openport " + one), "");
    EXPECT_EQ(ask(first, "echo x"), "x\n");
    EXPECT_EQ(run("closeport " + one + "; closeport " + two + "; closeport"), "Open ports: None\n");
}

TEST_F(PortsTest, MappedNumbers) {
    const int port = open(), mapped = port + theMappedDistance;
    const std::string clause = " (port " + text(mapped) + " gets mapped to socket port " + text(port) + ").\n}";
    EXPECT_EQ(run("openport " + text(mapped)), "{Port number " + text(mapped) + " already in use" + clause);
    EXPECT_EQ(run("closeport " + text(mapped) + "; closeport"), "Open ports: " + text(port) + " \n");
    EXPECT_EQ(run("closeport " + text(port) + "; openport " + text(mapped) + "; closeport"),
              "Open ports: " + text(mapped) + " \n");
    EXPECT_EQ(ask(port, "echo x"), "x\n");
    EXPECT_EQ(run("closeport " + text(port) + "; closeport"), "Open ports: " + text(mapped) + " \n");
    EXPECT_EQ(run("closeport " + text(mapped) + "; closeport"), "Open ports: None\n");

    const std::unique_ptr<KIT_NetSocket> foreign(KIT_NetSocket::newSocket(port, true, false));
    EXPECT_EQ(run("openport " + text(port)), "{Couldn't open port " + text(port) + ".\n}");
    EXPECT_EQ(run("openport " + text(mapped)), "{Couldn't open port " + text(mapped) + clause);
    EXPECT_EQ(list(), "Open ports: None\n");
}

TEST_F(PortsTest, AutomaticPort) {
    const std::string opened = run("openport -a 5000");
    std::smatch number;
    ASSERT_TRUE(std::regex_match(opened, number, std::regex("Opened (\\d+)\n"))) << opened;
    const int port = std::stoi(number[1]);
    EXPECT_EQ(ask(port, "echo x"), "x\n");
    EXPECT_EQ(run("openport -a"), "Port " + text(port) + " remains open.\n");
    EXPECT_EQ(run("openport -a -r nosuchprogram"), "Port " + text(port) + " remains open.\n");
    EXPECT_EQ(run("openport -aq"), text(port) + "\n");
    EXPECT_EQ(CMD_Manager::getOrvLangPort(), port);
    EXPECT_EQ(list(), "Open ports: " + text(port) + " \n");
    manager.closeAutoPort();
    manager.closeAutoPort();
    EXPECT_EQ(list(), "Open ports: None\n");

    run("read answer");
    const int second = CMD_Manager::getOrvLangPort();
    EXPECT_GT(second, 0);
    EXPECT_EQ(run("still waiting; echo"), "");   // nothing has answered it
    EXPECT_EQ(run("closeport " + text(second) + "; openport -aqe"), text(second) + "\n");
    EXPECT_EQ(ask(second, "nosuch"), "\n~~~~~\nUnknown command: nosuch\n\r");
}

TEST_F(PortsTest, AutomaticPortTriesOn) {
    const int first = CMD_Manager::getOrvLangPort();
    manager.closeAutoPort();
    const std::unique_ptr<KIT_NetSocket> foreign(KIT_NetSocket::newSocket(first, true, false));
    EXPECT_EQ(CMD_Manager::getOrvLangPort(), first + 1);
}

TEST_F(PortsTest, WaitEndsWhenThePortIsClosed) {
    const std::string port = text(findFreePort());
    // The first request leaves an expression error. After the second, the number alone would not show that it is another
    // port by now.
    const std::string replies =
        askDuring("openport -w " + port, std::stoi(port),
                  { "while `1+`\nend\n", "closeport " + port + "; openport " + port + "; closeport" });
    EXPECT_TRUE(replies.ends_with("Open ports: " + port + " \n")) << replies;
    EXPECT_EQ(list(), "Open ports: " + port + " \n");
}

TEST_F(PortsTest, WhatWaitsIsOutOfReach) {
    const std::string port = text(findFreePort());
    folder.write("s.cmd", "for k = 1 to 2\nif $k == 1\nopenport -w " + port +
                              "; echo rest\nendif\nend\necho $k\nread a\necho $a\n");
    const std::vector<std::string> requests = {
        "for i = 1 to 2", "echo $i", "end",    "read a", "x; y",    "echo $a; echo",           "endif",
        "break",          "exit",    "nosuch", "if 0",   "while 0", "closeport " + port + "\n"
    };
    EXPECT_EQ(askDuring("source s.cmd", std::stoi(port), requests, "rest\n2\n"),
              "1\n2\nx; y\n\nSyntax Error:  endif without matching if\n"
              "Warning:  not that many nested loops\nUnknown command: nosuch\n\r");
    EXPECT_EQ(run("answer"), "answer\n");
    EXPECT_EQ(manager.getPendingInput(), CMD_Manager::Pending::Nothing);
}

TEST_F(PortsTest, InterruptEndsTheWaitAlone) {
    const int port = findFreePort();
    askDuring("openport -w " + text(port), port, { "interrupted" });
    EXPECT_EQ(ask(port, "echo still"), "still\n");
}

/// Runs work with less than that many bytes of stack left.
void runDeep(size_t left, const std::function<void()> &work) {
    volatile char *const taken = static_cast<char *>(alloca(32768));
    taken[0] = 1;
    if (KIT_Thread::stackLeft() < left)
        work();
    else
        runDeep(left, work);
    taken[0] = 0;
}

TEST_F(PortsTest, NoWaitThatLeavesNoRoomForRequests) {
    const int port = findFreePort();
    runDeep(450000, [&] {
        EXPECT_EQ(run("openport -w " + text(port) + "; echo never"), "{Nesting too deep\n}");
        EXPECT_EQ(ask(port, "echo `1 + 1`"), "2\n");
    });
}

TEST_F(PortsTest, WithoutAnEventLoopNothingWaitsAndALaterOneServes) {
    VIO_EventGenerator::setInstaller(nullptr);
    VIO_EventGenerator::setEventLoopPollCallback(nullptr);
    const int port = open("-w"), closed = open();
    run("closeport " + text(closed));
    VIO_EventGenerator::setInstaller(CMD_EvtMonitoringReader::installGeneratorCallback);
    VIO_EventGenerator::setEventLoopPollCallback(CMD_EvtMonitoringReader::pollEventGeneratorsCallback);
    EXPECT_EQ(ask(port, "echo x"), "x\n");
}

TEST_F(PortsTest, ApplicationConnectsBackAndTakesItsPortAlong) {
    const std::string port = text(findFreePort());
    EXPECT_EQ(run(application("set -g said = hello;closeport", port) + "\necho $said\ncloseport"),
              "hello\nOpen ports: None\n");
    EXPECT_EQ(folder.read("words"), "two words|" + port);

    // The number that the user gave, not the one that it stands for.
    const int mapped = findFreePort() + theMappedDistance;
    folder.write("number.py", "import sys\nopen('number', 'w').write(sys.argv[1])\n");
    EXPECT_EQ(run("openport -pr '/usr/bin/python3 number.py' " + text(mapped) + "; closeport"),
              "Open ports: None\n");
    EXPECT_EQ(folder.read("number"), text(mapped));
}

TEST_F(PortsTest, ApplicationOfTheAutomaticPort) {
    const std::string result =
        run(application("set -g said = again;openport -a", "-a") + "\necho $said; closeport");
    EXPECT_TRUE(std::regex_match(result, std::regex("Opened (\\d+)\nagain\nOpen ports: (\\d+) \n"))) << result;
    // What the application had opened is the automatic port; its own one is gone.
    const int port = CMD_Manager::getOrvLangPort();
    EXPECT_EQ(list(), "Open ports: " + text(port) + " \n");
    EXPECT_NE(result.find("Open ports: " + text(port) + " \n"), result.npos) << result;
}

TEST_F(PortsTest, ApplicationOfAPortThatIsOpenAlready) {
    const std::string port = text(open());
    EXPECT_EQ(run(application("set -g said = hello", "-q " + port) + "\necho $said; closeport"),
              "hello\nOpen ports: " + port + " \n");
}

TEST_F(PortsTest, ApplicationThatOutlivesItsPortIsWaitedForInTheEnd) {
    const int port = findFreePort();
    askDuring("openport -r 'sleep 0.2' " + text(port), port, { "closeport " + text(port) });
    siginfo_t child;
    runUntil([&] {
        run("openport -r true " + text(findFreePort()));
        return waitid(P_ALL, 0, &child, WEXITED | WNOHANG | WNOWAIT) < 0 && errno == ECHILD;
    });
}

TEST_F(PortsTest, HostIsToldOfTheEndOfItsApplication) {
    static int theCalls;
    theCalls = 0;
    const auto closed = [](VIO_ServerSocketListener &listener, void *data, bool flag) {
        theCalls += data == nullptr && !flag;
        // Which destroys the listener.
        CMD_Manager::getContext()->closePort(listener.getPortNumber());
    };
    const auto told = [](VIO_ServerSocketListener &, void *, bool) { ++theCalls; };
    std::ostringstream errors;
    int pid = 0;
    const int first = findFreePort();
    const char *const words[] = { "sh", "-c", "exit 3", nullptr };
    EXPECT_TRUE(manager.openPort(first, false, false, false, errors, words, &pid, false, false, nullptr, closed,
                                 true, false));
    EXPECT_GT(pid, 0);
    runUntil([] { return theCalls == 1; });
    EXPECT_EQ(list(), "Open ports: None\n");
    const int second = findFreePort();
    EXPECT_TRUE(manager.openPort(second, false, false, true, errors, "sh -c 'exit 3'", nullptr, false, false,
                                 nullptr, told, true, false));
    EXPECT_EQ(theCalls, 2);
    EXPECT_EQ(list(), "Open ports: None\n");
    EXPECT_FALSE(manager.openPort(second, false, false, false, errors, "nosuchprogram", nullptr, false, true,
                                  nullptr, told, true, false));
    EXPECT_EQ(errors.str(), "") << "it was to be silent";
}

TEST_F(PortsTest, TheEndOfTheProcessAndOfAManagerClosePorts) {
    const int first = open(), automatic = CMD_Manager::getOrvLangPort();
    {
        CMD_Manager other("port");
        EXPECT_EQ(other.isCommandDefined("openport"), 1);
        EXPECT_EQ(CMD_Manager::getContext(), &other);
        EXPECT_EQ(run("closeport"), "Open ports: " + text(automatic) + " " + text(first) + " \n");
    }
    EXPECT_TRUE(PortClient::canConnect(first));
    KIT_Exit::runExitCallbacks();
    EXPECT_FALSE(PortClient::canConnect(first));
    EXPECT_EQ(list(), "Open ports: None\n");
    manager.closeAutoPort();
}

}   // namespace
