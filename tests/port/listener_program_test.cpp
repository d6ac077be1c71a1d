// SPDX-License-Identifier: Apache-2.0
// The program serving a port, and peers that are up to no good: each rule of the listener from outside. After each of
// them a plain request is answered.
#include "PortFixture.h"

#include <csignal>
#include <ctime>
#include <filesystem>
#include <memory>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace std::string_literals;

namespace {

class ListenerProgramTest : public PortTest {
protected:
    ~ListenerProgramTest() override { stop(); }

    /// Starts a program that serves a port with a listener option.
    void start(const std::string &option = "") {
        stop();
        port = findFreePort();
        const std::string number = std::to_string(port);
        const std::string words = option.empty() ? "" : "-i '" + option + "' ";
        const Program program{
            { ORVLANG_PROGRAM, "-c", "openport -w " + words + number }, folder.path(), "", {}
        };
        std::vector<std::string> texts;
        const std::vector<char *> environment = program.environmentTable(texts);
        ASSERT_EQ(posix_spawn(&pid, ORVLANG_PROGRAM, nullptr, nullptr, program.argumentTable().data(),
                              environment.data()),
                  0);
        waitUntil([this] { return PortClient::canConnect(port); });
    }

    /// Ends it; the status is that of waitpid.
    int stop() {
        if (pid == 0)
            return 0;
        int status = 0;
        kill(pid, SIGTERM);
        waitpid(pid, &status, 0);
        pid = 0;
        return status;
    }

    static void waitUntil(const std::function<bool()> &condition) {
        bool holds = condition();
        for (int i = 0; i < 60000 && !holds; ++i) {
            usleep(1000);
            holds = condition();
        }
        EXPECT_TRUE(holds);
    }

    std::string askNew(std::string_view request) const { return PortClient(port).askBlocking(request); }
    void expectServed() const { EXPECT_EQ(askNew("echo served\n"), "served\n"); }

    Outcome curl(std::vector<std::string> words) const {
        words.insert(words.begin(), { "/usr/bin/curl", "-sS", "-m", "60" });
        words.push_back("http://127.0.0.1:" + std::to_string(port) + "/");
        return Program{ words, folder.path(), "", {} }.run();
    }

    size_t countProgramDescriptors() const {
        size_t count = 0;
        for ([[maybe_unused]] const auto &each :
             std::filesystem::directory_iterator("/proc/" + std::to_string(pid) + "/fd"))
            ++count;
        return count;
    }

    pid_t pid = 0;
    int port = 0;
};

const std::string theFailure =
    "HTTP/1.1 400 Bad Request\r\nContent-Length: 37\r\nContent-Type: text/plain\r\n\r\n"
    "Orvane could not process HTTP request";

TEST_F(ListenerProgramTest, OrdinaryClients) {
    start();
    EXPECT_EQ(curl({ "-d", "echo a" }).out, "a\n");
    EXPECT_EQ(curl({ "-H", "Transfer-Encoding: chunked", "-d", "echo a" }).out,
              "Orvane could not process HTTP request");
    // The head and the body as two writes, the line end late; then another request on the same connection.
    PortClient client(port);
    client.send("POST / HTTP/1.1\r\nContent-Length: 6\r\n\r\n");
    usleep(1000);
    const std::string reply = client.askBlocking("echo a");
    EXPECT_TRUE(reply.ends_with("\r\n\r\na\n")) << reply;
    EXPECT_EQ(client.askBlocking("\r\necho b"), "b\n");
    client.send("POST / HTTP/1.1\r\nContent-Length: 7\r\n\r\n");
    for (const char byte : "echo ab\r\n"s)
        client.send({ &byte, 1 });
    EXPECT_TRUE(client.askBlocking("").ends_with("ab\n"));

    const std::string comment(3000000, '#');
    EXPECT_EQ(client.askBlocking("echo c\n" + comment + "\necho d\n"), "c\nd\n");
    EXPECT_EQ(client.askBlocking("<?xml version='1.0'?><!--" + comment + "--><orvlang>echo e</orvlang>"),
              "e\n");
    client.send("echo f");
    client.endOutput();
    EXPECT_EQ(client.askBlocking(""), "f\n");
    EXPECT_EQ(client.askBlocking(""), "(ended)");
}

TEST_F(ListenerProgramTest, WebPages) {
    start();
    for (const char *const header : { "Origin: http://x.example", "sec-fetch-site: cross-site" }) {
        EXPECT_EQ(curl({ "-H", header, "-d", "echo a" }).status, 52) << header;   // an empty reply
        EXPECT_EQ(curl({ "-H", header, "-X", "PUT", "-d", "echo a" }).status, 52) << header;
    }
    // Of another kind of request the body is no request of its own.
    PortClient another(port);
    another.send("PUT /a HTTP/1.1\r\nContent-Length: 7\r\n\r\n");
    usleep(1000);
    EXPECT_EQ(another.askBlocking("echo ab"), "Unknown command: PUT\n\r");
    EXPECT_EQ(another.askBlocking("echo c\n"), "c\n");
    start("browser=pass");
    EXPECT_EQ(curl({ "-H", "Origin: null", "-d", "echo a" }).out, "a\n");
    EXPECT_EQ(curl({ "-H", "Host: rebound.example", "-d", "echo a" }).status, 52);
    expectServed();
}

TEST_F(ListenerProgramTest, OtherUsers) {
    if (geteuid() != 0)
        GTEST_SKIP() << "another user is needed";
    const auto askAsNobody = [this] {
        const pid_t child = fork();
        if (child == 0)
            _exit(setuid(65534) == 0 && askNew("echo a\n") == "a\n" ? 0 : 1);
        int status = 0;
        waitpid(child, &status, 0);
        return WEXITSTATUS(status) == 0;
    };
    start();
    EXPECT_FALSE(askAsNobody());
    expectServed();
    start("user=any");
    EXPECT_TRUE(askAsNobody());
}

TEST_F(ListenerProgramTest, PeersThatStall) {
    start("wait:0.2");
    PortClient body(port), reader(port);
    body.send("POST / HTTP/1.1\r\nContent-Length: 9\r\n\r\necho");
    reader.send(
        "for i = 1 to 14\nset -g x = x$x$x\nend\nset -g x = $x$x$x$x$x\nfor i = 1 to 100\necho $x\nend\n");
    expectServed();
    EXPECT_EQ(body.askBlocking(""), theFailure);
    EXPECT_EQ(body.askBlocking(""), "(ended)");
    EXPECT_EQ(PortClient(port).askBlocking("POST / HTTP/1.1\r\nContent-Length: 99999999\r\n\r\n"), theFailure);
    expectServed();
}

TEST_F(ListenerProgramTest, ASecondSignalEndsARequestThatTakesMinutes) {
    for (const int number : { SIGTERM, SIGQUIT }) {
        start();
        const PortClient client(port);
        client.send("<?xml version='1.0'?><o><!--" + std::string(1000000, '-') + "--></o>");
        clockid_t used;
        ASSERT_EQ(clock_getcpuclockid(pid, &used), 0);
        timespec time;
        waitUntil([&] { return clock_gettime(used, &time) == 0 && time.tv_sec > 0; });   // parsing by then
        int status = -1;
        waitUntil([&] { return kill(pid, number) == 0 && waitpid(pid, &status, WNOHANG) == pid; });
        pid = 0;
        EXPECT_EQ(WTERMSIG(status), number);
    }
}

TEST_F(ListenerProgramTest, PeersThatFloodAndVanish) {
    start("max-bytes=100000");
    PortClient flooding(port);
    EXPECT_EQ(flooding.askBlocking(std::string(3000000, 'x')), "(ended)");
    expectServed();
    const size_t before = countProgramDescriptors();
    for (int i = 0; i < 1000; ++i) {
        const PortClient client(port);
        client.send(i % 2 ? "POST / HTTP/1.1\r\nContent-Length: 9\r\n\r\n" : "echo a\n");
    }
    expectServed();
    waitUntil([&] { return countProgramDescriptors() <= before; });
}

TEST_F(ListenerProgramTest, TooManyPeers) {
    start("clients=3");
    std::vector<std::unique_ptr<PortClient>> clients;
    // Earlier connections count until the program has noticed their end.
    waitUntil([&] {
        clients.clear();
        while (clients.size() < 3) {
            clients.push_back(std::make_unique<PortClient>(port));
            if (clients.back()->askBlocking("echo a\n") != "a\n")
                return false;
        }
        return true;
    });
    EXPECT_EQ(askNew("echo b\n"), "(ended)");
    EXPECT_EQ(clients.front()->askBlocking("echo c\n"), "c\n");
    clients.pop_back();
    waitUntil([this] { return askNew("echo d\n") == "d\n"; });
}

TEST_F(ListenerProgramTest, FormsThatAreNotWanted) {
    start("accept=xml");
    EXPECT_EQ(askNew("echo a\n"), "(ended)");
    EXPECT_EQ(curl({ "-d", "echo a" }).status, 52);
    EXPECT_EQ(askNew("<?xml version='1.0'?><orvlang>echo a</orvlang>"), "a\n");
}

TEST_F(ListenerProgramTest, APortThatIsClosedByItsOwnRequest) {
    start();
    EXPECT_EQ(askNew("closeport " + std::to_string(port)), "");
    int status = -1;
    waitpid(std::exchange(pid, 0), &status, 0);
    EXPECT_EQ(status, 0);
}

}   // namespace
