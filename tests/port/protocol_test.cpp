// SPDX-License-Identifier: Apache-2.0
// What goes over the wire: the kinds of requests, their replies to the byte, and what one request leaves to the next.
#include "PortFixture.h"

#include <filesystem>
#include <stdexcept>
#include <vector>

#include "Cases.h"
#include <orvlang/engine/CMD_Args.h>
#include <orvlang/platform/kit/KIT_UndoManager.h>
#include <orvlang/port/CMD_ConnectedSocketCommandListener.h>
#include <orvlang/port/CMD_ServerSocketCommandListener.h>

using namespace std::string_literals;

namespace {

struct Exchange {
    std::string request, reply;
};

std::string parseError(const std::string &text) {
    return "<?xml version=\"1.0\"?>\n<parse_error>" + text + "</parse_error>\n";
}

std::string xml(const std::string &content) {
    return "<?xml version=\"1.0\"?>" + content;
}

/// The head and the body as they are given: the count may be wrong.
std::string http(const std::string &length, const std::string &rest) {
    return "POST / HTTP/1.1\r\nHost: localhost\r\nContent-Length: " + length + "\r\n\r\n" + rest;
}

std::string http(const std::string &body) {
    return http(std::to_string(body.size()), body + "\r\n");
}

std::string httpReply(const std::string &text) {
    return "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(text.size()) +
           "\r\nContent-Type: text/plain\r\n\r\n" + text;
}

const std::string theHTTPFailure =
    "HTTP/1.1 400 Bad Request\r\nContent-Length: 37\r\nContent-Type: text/plain\r\n\r\n"
    "Orvane could not process HTTP request";

class ProtocolTest : public PortTest {
protected:
    ProtocolTest() {
        manager.installCommand(
            "withnul", "", [](CMD_Args &args) { args.out().write("a\0b", 3); }, true);
        manager.installCommand(
            "throwing", "", [](CMD_Args &) { throw std::runtime_error("thrown <here>"); }, true);
        manager.installCommand(
            "unsafe", "", [](CMD_Args &args) { args.out() << "unsafe\n"; }, false);
        manager.installCommand("modes", "", showModes, true);
        manager.installCommand("mix", "", mix, true);
    }

    static void showModes(CMD_Args &args) {
        const CMD_Manager &context = *CMD_Manager::getContext();
        args.out() << "safe " << context.isInSafeMode() << ", browser " << context.isInBrowserMode() << "\n";
    }
    static void mix(CMD_Args &args) {
        args.out() << "one\n";
        args.err(1) << "two\n";
        args.out() << "three\n";
    }

    /// All on one connection, so that a request that ends it, or leaves something behind, shows in the next one.
    void expect(int port, const std::vector<Exchange> &exchanges) {
        PortClient client(port);
        for (const Exchange &each : exchanges)
            EXPECT_EQ(ask(client, each.request), each.reply) << each.request;
    }
};

TEST_F(ProtocolTest, CommandTextAndXML) {
    std::vector<Exchange> exchanges;
    for (const auto &row : casesOf(ORVLANG_CASES "/exchanges.cases"))
        exchanges.push_back({ row[0], row[1] });
    expect(open(), exchanges);
}

TEST_F(ProtocolTest, WhatIsNoHTTPRequestOfThePortIsCommandText) {
    const int port = open();
    for (const char *start : { "GET / HTTP/1.1\r\n", "POST /x HTTP/1.1\r\n", "post / HTTP/1.1\r\n",
                               "POST / HTTP/1.0\r\n", "POST  / HTTP/1.1\r\n" }) {
        const std::string word(start, std::string_view(start).find(' '));
        EXPECT_EQ(ask(port, start + "Content-Length: 6\r\n\r\necho x\r\n"s),
                  "Unknown command: " + word + "\n\r")
            << start;
    }
    EXPECT_EQ(ask(port, "POST / HTTP/1.1\n"), "Unknown command: POST\n\r");
    EXPECT_EQ(ask(port, " " + http("echo x\n")), "Unknown command: POST\n\r");
    EXPECT_EQ(ask(port, " " + xml("<orvlang>echo x</orvlang>")), "Missing name for redirect\n");
}

TEST_F(ProtocolTest, ErrorsApart) {
    expect(open("-e"), {
                           { "mix", "one\nthree\n\n~~~~~\ntwo\n" },
                           { "echo x", "x\n" },
                           { "nosuch", "\n~~~~~\nUnknown command: nosuch\n\r" },
                           { "withnul; nosuch", "a" },
                           { http("mix"), httpReply("one\nthree\n\n~~~~~\ntwo\n") },
                           { xml("<orvlang>mix</orvlang>"), "one\nthree\n\n~~~~~\ntwo\n" },
                           { xml("<python_expression>int('q')</python_expression>"),
                             "Traceback (most recent call last):\n  File \"<string>\", line 1, in <module>\n"
                             "ValueError: invalid literal for int() with base 10: 'q'\n" },
                       });
}

TEST_F(ProtocolTest, CloseByteEndsTheConnectionWithoutAReply) {
    const int port = open();
    PortClient client(port), other(port);
    EXPECT_EQ(ask(client, "\x04"), "(ended)");
    EXPECT_EQ(ask(other, "echo x"), "x\n");
}

TEST_F(ProtocolTest, XMLThatCannotBeRead) {
    folder.write("secret", "the secret");
    const std::string file = folder.path() + "/secret";
    std::string laughs = "<!DOCTYPE o [<!ENTITY a0 \"ha\">";
    for (int i = 1; i < 30; ++i) {
        const std::string inner = "&a" + std::to_string(i - 1) + ";";
        laughs += "<!ENTITY a" + std::to_string(i) + " \"" + inner + inner + inner + "\">";
    }
    std::string depth;
    for (int i = 0; i < 50000; ++i)
        depth += "<a>";
    const int port = open();
    PortClient client(port);
    testing::internal::CaptureStderr();
    for (const std::string &text :
         { ""s, "<orvlang>"s, "<orvlang>echo x</orvlang><orvlang/>"s, "<orvlang>&nosuch;</orvlang>"s,
           "<orvlang>\xff</orvlang>"s,
           "<!DOCTYPE o [<!ENTITY f SYSTEM \"" + file + "\">]><orvlang>echo &f;</orvlang>",
           "<!DOCTYPE o [<!ENTITY % f SYSTEM \"" + file + "\"> %f;]><orvlang>echo x</orvlang>",
           "<!DOCTYPE o [<!ENTITY f SYSTEM \"http://127.0.0.1:" + std::to_string(port) +
               "/\">]><orvlang>&f;</orvlang>",
           laughs + "]><orvlang>&a29;</orvlang>", depth }) {
        const std::string reply = ask(client, xml(text));
        EXPECT_EQ(reply.find("<?xml version=\"1.0\"?>\n<parse_error>"), 0u) << text.substr(0, 200) << reply;
        EXPECT_EQ(reply.find("secret"), reply.npos) << text.substr(0, 200);
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(ask(client, xml("<!DOCTYPE o SYSTEM \"" + file + "\" [<!ENTITY f SYSTEM \"" + file +
                              "\">]><orvlang>echo unused</orvlang>")),
              "unused\n");
}

TEST_F(ProtocolTest, HTTP) {
    const std::string start = "POST / HTTP/1.1\r\n";
    expect(
        open(),
        {
            { http("echo x\n"), httpReply("x\n") },
            { http("8", "echo  x\n\r\n"), httpReply("x\n") },
            { http("0", "\r\n"), httpReply("") },
            { http("echo x"), httpReply("x\n") },
            { http("-99", ""), httpReply("") },
            { http("-99", "echo all"), httpReply("all\n") },
            { http("\x04"), httpReply("Unknown command: \x04\n\r") },
            { http(http("echo x")), httpReply("Unknown command: POST\n\r") },
            { http(xml("<orvlang>echo x</orvlang>")), httpReply("x\n") },
            { http(xml("<foo/>")), httpReply(parseError("Unrecognized XML")) },
            { http(xml("<python_expression>6*7</python_expression>")), httpReply("42") },
            { http(" " + xml("<foo/>")), httpReply("Missing name for redirect\n") },
            { http("6", "echo a\r\necho b"), httpReply("a\nb\n") },
            { http("echo a\0b"s), httpReply("a\n") },
            { http("6 7", "echo x\r\n"), httpReply("x\n") },
            { start +
                  "Content-Length:6\nX\n: \r\n:\r\nContent-Length: 1\r\nContent-Length:\t 6\r\n\r\necho x\r\n",
              httpReply("x\n") },
            { start + "content-length: 6\r\n\r\necho x", theHTTPFailure },
            { start + "\r\n", theHTTPFailure },
            { start + "Content-Length: 6\r\nX: \0\r\n\r\necho x\r\n"s, theHTTPFailure },
            { start + " Content-Length: 6\r\n\r\necho x", theHTTPFailure },
            { start + "Content-Length : 6\r\n\r\necho x", theHTTPFailure },
            { start + "\r\nContent-Length: 6\r\n\r\n", theHTTPFailure },
            { "echo raw", "raw\n" },
        });
}

TEST_F(ProtocolTest, HTTPRequestThatEndsTooEarly) {
    const int port = open("-i wait:0.3");
    for (const char *rest : { "Content-Length: 20\r\n\r\necho x\n", "Content-Le" }) {
        PortClient stalled(port), gone(port);
        gone.send("POST / HTTP/1.1\r\n"s + rest);
        gone.endOutput();
        EXPECT_EQ(ask(gone, ""), theHTTPFailure) << rest;
        EXPECT_EQ(ask(stalled, "POST / HTTP/1.1\r\n"s + rest), theHTTPFailure) << rest;
    }
}

/// A host's connection, which passes the first bytes of a request on as they come.
struct HostConnection : CMD_ConnectedSocketCommandListener {
    using CMD_ConnectedSocketCommandListener::CMD_ConnectedSocketCommandListener;
    VIO_RequestExtent findRequest(const VIO_ReceivedBytes &received) override {
        return { .action = VIO_RequestExtent::Deliver,
                 .length = std::min(received.bytes.size(), theFirstPart) };
    }

    static inline size_t theFirstPart;
};

struct HostServer : VIO_ServerSocketListener {
    explicit HostServer(CMD_Manager &manager)
        : VIO_ServerSocketListener(KIT_NetSocket::newSocket(0, true, false), 0, nullptr, nullptr, nullptr),
          manager(manager) {
        installGenerator();
    }
    ~HostServer() override { uninstallGenerator(); }
    const char *className() const override { return "HostServer"; }
    void createConnectedSocketListener() override {
        new HostConnection(getSocket(), manager, false, false, nullptr, false);
    }

    CMD_Manager &manager;
};

TEST_F(ProtocolTest, TheRestOfAnHTTPRequestIsReadFromTheSocket) {
    const HostServer server(manager);
    PortClient client(server.getPort());
    for (const char *const first :
         { "POST / HTTP/1.1\r\nContent-Length: 6\r\n", "POST / HTTP/1.1\r\nContent-Length: 6\r\n\r\nec" }) {
        HostConnection::theFirstPart = std::string_view(first).size();
        EXPECT_EQ(ask(client, "POST / HTTP/1.1\r\nContent-Length: 6\r\n\r\necho x\r\n"), httpReply("x\n"))
            << first;
    }
    EXPECT_EQ(ask(client, "echo still"), "still\n");
}

TEST_F(ProtocolTest, LongRequestsAndReplies) {
    const int port = open();
    const std::string word(1 << 20, 'w');
    std::string lines;
    for (int i = 0; i < 20000; ++i)
        lines += "set x = " + std::to_string(i) + "\n";
    PortClient client(port);
    EXPECT_EQ(ask(client, http("echo " + word)), httpReply(word + "\n"));
    EXPECT_EQ(ask(client, http(lines + "echo $x")), httpReply("19999\n"));
    EXPECT_EQ(ask(client, xml("<orvlang>" + lines + "echo $x</orvlang>")), "19999\n");
    EXPECT_EQ(ask(client, "echo " + word), word + "\n");
}

TEST_F(ProtocolTest, Modes) {
    const int safe = open("-s"), plain = open();
    PortClient before(plain);
    EXPECT_EQ(ask(before, "modes"), "safe 0, browser 0\n");
    expect(safe, {
                     { "modes", "safe 1, browser 0\n" },
                     { "unsafe", "Command 'unsafe' is not a safe command and cannot be run\n\r" },
                     { http("modes"), httpReply("safe 1, browser 0\n") },
                     { xml("<orvlang>throwing</orvlang>"), parseError("thrown <here>") },
                     { xml("<python_expression>'Python is not asked for ' + 'safety'</python_expression>"),
                       "Python is not asked for safety" },
                 });
    EXPECT_EQ(manager.isInSafeMode(), 0);
    manager.setSafeMode(1);
    EXPECT_EQ(ask(safe, "modes"), "safe 1, browser 0\n");
    EXPECT_EQ(ask(plain, "modes"), "safe 1, browser 0\n");
    EXPECT_EQ(manager.isInSafeMode(), 1);
    manager.setSafeMode(0);

    // Later connections only.
    run("openport -q -s " + std::to_string(plain));
    EXPECT_EQ(ask(before, "modes"), "safe 0, browser 0\n");
    EXPECT_EQ(ask(plain, "modes"), "safe 1, browser 0\n");
}

TEST_F(ProtocolTest, BrowserMode) {
    const int port = findFreePort();
    const auto create = [&] {
        return std::unique_ptr<VIO_ServerSocketListener>(CMD_ServerSocketCommandListener::createCommandListener(
            port, manager, false, false, nullptr, false, true));
    };
    const auto listener = create();
    EXPECT_EQ(create(), nullptr);
    EXPECT_EQ(ask(port, "modes"), "safe 0, browser 1\n");
    EXPECT_EQ(manager.isInBrowserMode(), 0);
}

TEST_F(ProtocolTest, ARequestIsOneUndoBlock) {
    struct Step : KIT_UndoStep {
        void undo() override {}
        void redo() override {}
        std::int64_t getMemoryUsage() const override { return sizeof *this; }
    };
    manager.installCommand(
        "change", "", [](CMD_Args &) { KITgetUndoManager()->addStep("inner", std::make_unique<Step>()); },
        true);
    KIT_UndoManager &undos = *KITgetUndoManager();
    undos.clearUndos();
    const int port = open();
    ask(port, "change; change");
    EXPECT_STREQ(undos.getUndoName(), "Execute Command From Port");
    ask(port, xml("<orvlang>change; throwing</orvlang>"));
    manager.execute("change", 0, nullptr, nullptr, 1, true);
    EXPECT_STREQ(undos.getUndoName(), "inner");   // no block is open any more
    EXPECT_TRUE(undos.undo() && undos.undo() && undos.undo());
    EXPECT_FALSE(undos.undo());
    undos.clearUndos();
}

TEST_F(ProtocolTest, WhatOneClientLeavesIsMetByTheNextLine) {
    const int port = open();
    PortClient first(port), second(port);
    EXPECT_EQ(ask(first, "echo begun \\"), "");
    EXPECT_EQ(ask(second, "by another"), "begun by another\n");
    EXPECT_EQ(ask(first, "read answer"), "");
    EXPECT_EQ(ask(second, "the answer"), "");
    EXPECT_EQ(ask(first, "echo $answer"), "the answer\n");
    EXPECT_EQ(ask(first, "read answer"), "");
    EXPECT_EQ(ask(second, "echo several\necho lines [$answer]"), "several\nlines []\n");
    EXPECT_EQ(ask(first, "for i = 1 to 2"), "");
    EXPECT_EQ(ask(second, "echo $i"), "");
    EXPECT_EQ(ask(first, "end"), "1\n2\n");
    // Text of several lines is a source of its own, which ends with its request.
    EXPECT_EQ(ask(first, "for k = 1 to 2\necho $k\n"), "Invalid loop nesting in stdin\n");
    EXPECT_EQ(ask(second, "echo [$k]"), "[]\n");
}

TEST_F(ProtocolTest, RequestsRunWithinOneThatWaits) {
    const int outer = open(), inner = findFreePort();
    const std::string number = std::to_string(inner);
    serveDuring([&] {
        const PortClient waiting(outer), other(outer);
        waiting.send("openport -w " + number + "; echo behind");
        std::string reply;
        while (reply.find(number) == reply.npos)
            reply = other.askBlocking("closeport");
        EXPECT_EQ(reply, "Open ports: " + number + " " + std::to_string(outer) + " \n");
        EXPECT_EQ(other.askBlocking("echo meanwhile\n"), "meanwhile\n");
        EXPECT_EQ(PortClient(inner).askBlocking("closeport " + number + "\n"), "");
        EXPECT_EQ(waiting.askBlocking(""), "behind\n");
    });
}

TEST_F(ProtocolTest, ConnectionsOutliveTheirPortAndNotTheirManager) {
    const int port = open();
    PortClient client(port);
    EXPECT_EQ(ask(client, "closeport " + std::to_string(port) + "; closeport"), "Open ports: None\n");
    EXPECT_FALSE(PortClient::canConnect(port));
    EXPECT_EQ(ask(client, "echo still"), "still\n");

    auto second = std::make_unique<CMD_Manager>("port");
    second->setContext();
    const int ofSecond = findFreePort();
    std::ostringstream output;
    constexpr const char *theNoApplication = nullptr;
    ASSERT_TRUE(second->openPort(ofSecond, false, false, false, output, theNoApplication, nullptr, false, false,
                                 nullptr, nullptr, true, false));
    const int ofHost = findFreePort();
    const std::unique_ptr<CMD_ServerSocketCommandListener> listener(
        CMD_ServerSocketCommandListener::createCommandListener(ofHost, *second, false, false, nullptr, false,
                                                               false));
    PortClient left(ofSecond);
    EXPECT_EQ(ask(left, "echo second"), "second\n");
    second.reset();
    EXPECT_FALSE(PortClient::canConnect(ofSecond));
    EXPECT_EQ(ask(left, "echo gone"), "(ended)");
    EXPECT_EQ(ask(ofHost, "echo gone"), "(ended)");
    EXPECT_EQ(ask(client, "echo still"), "still\n");
}

TEST_F(ProtocolTest, ManyClientsAtOnce) {
    constexpr int theClients = 64, theRequests = 1000;
    const int port = open();
    std::atomic<int> right = 0;
    serveDuring([&] {
        std::vector<std::thread> threads;
        for (int i = 0; i < theClients; ++i)
            threads.emplace_back([&, i] {
                const PortClient client(port);
                for (int k = 0; k < theRequests; ++k) {
                    const std::string text = std::to_string(i) + "." + std::to_string(k);
                    const bool wrapped = k % 3 == 1;
                    const std::string reply =
                        client.askBlocking(wrapped ? http("echo " + text) : "echo " + text);
                    right += reply == (wrapped ? httpReply(text + "\n") : text + "\n");
                }
            });
        for (std::thread &thread : threads)
            thread.join();
    });
    EXPECT_EQ(right, theClients * theRequests);
}

}   // namespace
