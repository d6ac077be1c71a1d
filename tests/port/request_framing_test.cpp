// SPDX-License-Identifier: Apache-2.0
// When what arrives in pieces is a delivery, by bytes and times alone.
#include <initializer_list>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <orvlang/platform/vio/VIO_DeliveryGatherer.h>
#include <orvlang/platform/vio/VIO_HttpHead.h>

namespace {

constexpr long long theMillisecond = 1000000;

struct Piece {
    int time;            // milliseconds
    std::string bytes;   // empty: no more will come
};

/// Plays the pieces to a gatherer and tells what it decided at which time, a word for each decision. A delivery is told
/// with its length and how many bytes lie behind it.
class Play {
public:
    explicit Play(const char *option)
        : options(VIO_ListenerOptions::parse(option, nullptr)), gatherer(options) {}

    std::string run(const std::vector<Piece> &pieces) {
        for (const Piece &piece : pieces) {
            passTime(piece.time);
            now = piece.time * theMillisecond;
            gathered += piece.bytes;
            ended = piece.bytes.empty();
            decide();
        }
        passTime(100000);
        return log.str();
    }

private:
    void passTime(int until) {
        while (due != 0 && due < until * theMillisecond) {
            now = due;
            decide();
        }
    }

    void decide() {
        for (;;) {
            const VIO_Delivery next = gatherer.decide(gathered, ended, now);
            due = next.until;
            if (next.action == VIO_Delivery::Wait)
                return;
            tell(next);
            if (next.action == VIO_Delivery::Complete)
                gathered += "\r\n";
            else if (next.action == VIO_Delivery::Drop)
                gathered.erase(0, next.length);
            else
                gathered.clear();   // what is behind a delivery is read
            if (next.action == VIO_Delivery::Fail || next.action == VIO_Delivery::Refuse)
                return;
        }
    }

    void tell(const VIO_Delivery &next) {
        static constexpr const char *theNames[] = { "wait", "deliver", "complete", "fail", "drop", "refuse" };
        if (log.tellp() > 0)
            log << ' ';
        log << now / theMillisecond << ':' << theNames[next.action];
        if (next.action == VIO_Delivery::Deliver)
            log << '(' << next.length << '+' << gathered.size() - next.length << ')';
    }

    const VIO_ListenerOptions options;
    VIO_DeliveryGatherer gatherer;
    std::string gathered;
    bool ended = false;
    long long now = 0, due = 0;
    std::ostringstream log;
};

const std::string thePost = "POST / HTTP/1.1\r\n";

std::string post(const std::string &headers, const std::string &body) {
    return thePost + headers + "\r\n" + body;
}

TEST(VIO_DeliveryGatherer, KnowsWhenARequestIsComplete) {
    const std::string head = post("Content-Length: 5\r\n", "");   // 38 bytes
    ASSERT_EQ(head.size(), 38u);
    const std::string line(4095, 'x');
    const struct {
        const char *what;
        std::vector<Piece> pieces;
        const char *decisions;
        const char *option = "";
    } theCases[] = {
        { "text comes as it is", { { 0, "echo" }, { 1, "x\n" } }, "0:deliver(4+0) 1:deliver(2+0)" },
        { "short text needs no newline", { { 0, line } }, "0:deliver(4095+0)" },
        { "long text does", { { 0, line + "ab" }, { 15, "cd" } }, "35:deliver(4099+0)" },
        { "or an end", { { 0, line + "ab" }, { 1, "" } }, "1:deliver(4097+0)" },
        { "a newline ends long text", { { 0, line + "ab\n" } }, "1:deliver(4098+0)" },
        { "more than max-bytes",
          { { 0, "12345" }, { 1, "123456" } },
          "0:deliver(5+0) 1:refuse",
          "max-bytes=5" },

        { "XML in pieces", { { 0, "<" }, { 15, "?xml" }, { 30, "><a/>" } }, "50:deliver(10+0)" },
        { "no XML", { { 0, "<" }, { 15, "?php" } }, "15:deliver(5+0)" },

        { "all at once", { { 0, head + "12345\r\n" } }, "0:deliver(45+0)" },
        { "more than all belongs to it", { { 0, head + "12345\r\nmore" } }, "0:deliver(49+0)" },
        { "in pieces",
          { { 0, "PO" },
            { 50, "ST / HTTP/1.1\r\nConte" },
            { 140, "nt-Length: 2\r\n\r\n" },
            { 2000, "12" },
            { 2010, "\r\n" } },
          "2010:deliver(42+0)" },
        { "one head after another",
          { { 0, head + "12345\r\n" }, { 9, head }, { 10, "12345\r\n" } },
          "0:deliver(45+0) 10:deliver(45+0)" },
        { "negative length", { { 0, post("Content-Length: -1\r\n", "") }, { 1, "\n" } }, "1:deliver(40+0)" },
        { "very negative length", { { 0, post("Content-Length: -99\r\n", "") } }, "0:deliver(40+0)" },
        { "no length", { { 0, post("Accept: x\r\n", "body") } }, "0:deliver(34+0)" },
        { "length in another case: nothing is read, but the body is no request",
          { { 0, post("content-length: 4\r\n", "") }, { 7, "body" } },
          "7:deliver(42+0)" },
        { "the last length counts",
          { { 0, post("Content-Length: 9\r\nContent-Length: 1\r\n", "x\r\n") } },
          "0:deliver(60+0)" },

        { "a line end is added, and dropped when it comes late",
          { { 0, head + "12345" }, { 1500, "\r\n" }, { 1501, "x" } },
          "20:complete 20:deliver(45+0) 1500:drop 1500:drop 1501:deliver(1+0)" },
        { "late in pieces",
          { { 0, head + "12345" }, { 1500, "\r" }, { 1501, "\nx" } },
          "20:complete 20:deliver(45+0) 1500:drop 1501:drop 1501:deliver(1+0)" },
        { "what comes instead stays",
          { { 0, head + "12345" }, { 1500, "x\r\n" } },
          "20:complete 20:deliver(45+0) 1500:deliver(3+0)" },
        { "however short the wait", { { 0, head + "12345" } }, "10:complete 10:deliver(45+0)", "wait=0.01" },
        { "not when the peer has ended", { { 0, head + "12345" }, { 5, "" } }, "5:fail" },

        { "stalls in the head",
          { { 0, "POST / H" },
            { 4000, "TTP/1.1\r\nContent-Length: 5\r\n\r" },
            { 8000, "\n12" },
            { 8200, "345\r\n" } },
          "8200:deliver(45+0)" },
        { "no blank line", { { 0, thePost }, { 500, "Content-Length: 0\r\nx\n" } }, "5500:fail" },
        { "no end of the line", { { 0, "POST / HTTP/1.1\r" } }, "5000:refuse" },
        { "the body stops", { { 0, head + "12" }, { 4000, "3" } }, "9000:fail" },
        { "sooner", { { 0, head + "12" } }, "250:fail", "wait=0.25" },
        { "the peer ends", { { 0, head + "12" }, { 7, "" } }, "7:fail" },
        { "the body is too long", { { 0, post("Content-Length: 101\r\n", "1") } }, "0:fail", "max-bytes=100" },
        { "the largest length", { { 0, post("Content-Length: 99999999999999999999\r\n", "1") } }, "0:fail" },
        { "chunks", { { 0, post("Transfer-Encoding: chunked\r\n", "4\r\nexit\r\n0\r\n\r\n") } }, "0:fail" },
        { "endless head", { { 0, thePost + std::string(70000, 'x') } }, "0:fail" },

        { "another path",
          { { 0, "POST /x HTTP/1.1\r\nContent-Length: 4\r\n\r\n" }, { 300, "bo" }, { 400, "dy" } },
          "400:deliver(43+0)" },
        { "no body", { { 0, "GET / HTTP/1.1\r\nhost:[::1]\r\n" }, { 50, "\r\n" } }, "50:deliver(30+0)" },
        { "plain newlines",
          { { 0, "PUT / HTTP/1.0\ncontent-length:2\n\n" }, { 300, "12" } },
          "300:deliver(35+0)" },
        { "cut before its body", { { 0, "PUT / HTTP/1.0\nContent-Length: 2\n" } }, "100:refuse" },
        { "the body of another method stops",
          { { 0, "PUT / HTTP/1.1\r\nContent-Length: 4\r\n\r\n" } },
          "5000:refuse" },
        { "the peer of another method ends",
          { { 0, "PUT / HTTP/1.1\r\nContent-Length: 4\r\n\r\n12" }, { 1, "" } },
          "1:deliver(39+0)" },
        { "chunks by another method",
          { { 0, "PUT / HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\n" } },
          "0:refuse" },
        { "the start of a request line", { { 0, "GET /x" }, { 99, " HT" } }, "199:deliver(9+0)" },
        { "a long one",
          { { 0, "GET /" + line + line + line + line + line }, { 99, " HTTP/1.1\r\nOrigin: x\r\n\r\n" } },
          "99:refuse" },
        { "long text that is none", { { 0, "ECHO " + line + line }, { 7, " x\n" } }, "8:deliver(8198+0)" },
        { "a word in capitals may be one", { { 0, "QUIT" } }, "100:deliver(4+0)" },
        { "it is not", { { 0, "QUIT\n" } }, "0:deliver(5+0)" },

        { "a web page", { { 0, post("Origin: null\r\nContent-Length: 0\r\n", "\r\n") } }, "0:refuse" },
        { "one that is let through",
          { { 0, post("Origin: null\r\nContent-Length: 0\r\n", "\r\n") } },
          "0:deliver(54+0)",
          "browser=pass" },
        { "a page whose head comes late",
          { { 0, thePost + "Content-Length: 5\r\n" }, { 150, "origin:x\r\n\r\n" } },
          "150:refuse" },
        { "another host", { { 0, "GET / HTTP/1.1\r\nHost: x.example\r\n\r\n" } }, "0:refuse" },
        { "a browser that was stopped in its head", { { 0, "GET /" + line }, { 1, "" } }, "1:refuse" },
        { "or behind its target", { { 0, "GET /" + line + " HTTP/1.1\r\nHost" }, { 1, "" } }, "1:refuse" },

        { "TLS", { { 0, "\x16\x03\x01" } }, "0:refuse" },

        { "no text wanted", { { 0, "x" } }, "0:refuse", "accept=http,xml" },
        { "no XML wanted", { { 0, "<?xml" } }, "20:refuse", "accept=http,text" },
        { "no HTTP wanted", { { 0, head } }, "0:refuse", "accept=xml,text" },
        { "HTTP that runs as text", { { 0, "GET / HTTP/1.1\r\n\r\n" } }, "0:refuse", "accept=http" },
    };
    for (const auto &c : theCases)
        EXPECT_EQ(Play(c.option).run(c.pieces), c.decisions) << c.what;
}

TEST(VIO_DeliveryGatherer, DoesNotReadALongHeadAgainAndAgain) {
    // A minute and more if each byte had the head read from its start.
    const VIO_ListenerOptions options;
    VIO_DeliveryGatherer gatherer(options);
    std::string gathered = thePost;
    while (gathered.size() < 65000) {
        gathered += "a: b\r\n"[gathered.size() % 6];
        ASSERT_EQ(gatherer.decide(gathered, false, 0).action, VIO_Delivery::Wait);
    }
}

TEST(VIO_HttpHead, TellsWhereARequestComesFrom) {
    static const struct {
        const char *line;
        bool isFromBrowser, namesOtherHost;
        const char *option = "";
    } theCases[] = {
        { "Origin: http://x", true, false },
        { "sec-fetch-site : none", true, false },
        { "User-Agent: Mozilla/5.0 (X11)", true, false },
        { "User-Agent: curl/7.88.1", false, false },
        { "Original: x", false, false },
        { "X: Origin: x", false, false },
        { "Host: LocalHost:6000", false, false },
        { "HOST:127.1.2.3", false, false },
        { "Host: [::1]:6000", false, false },
        { "Host: 127.0.0.1.evil.example", false, true },
        { "Host: localhost.evil.example", false, true },
        { "Host: x.localhost", false, true },
        { "Host: localhost.", false, true },
        { "Host: localhost:80.evil.example", false, true },
        { "Host: 0.0.0.0", false, true },
        { "Host: [::ffff:127.0.0.1]", false, true },
        { "Host: [127.0.0.1]", false, true },
        { "Host: [::1]x", false, true },
        { "Host: [", false, true },
        { "Host:", false, true },
        { "Host: 192.0.2.1:6000", false, true, "bind:any" },
        { "Host: 192.0.2.1:6000", false, false, "bind:192.0.2.1" },
        { "Host: [fd00::1]:6000", false, false, "bind:FD00:0::1" },
        { "Host: lamp.example:6000", false, false, "host:other,Lamp.example" },
        { "Host: [fd00::1]", false, false, "host:[fd00::1]" },
        { "Host: x.lamp", false, true, "host:lamp" },
        { "Host: lamp", false, true, "host:loopback" },
        { "Host: lamp", false, false, "host:any" },
    };
    for (const auto &c : theCases) {
        const VIO_HttpHead head = VIO_HttpHead::parse(thePost + c.line + "\r\n\r\nOrigin: body\r\n",
                                                      VIO_ListenerOptions::parse(c.option, nullptr));
        EXPECT_EQ(head.isFromBrowser, c.isFromBrowser) << c.line;
        EXPECT_EQ(head.namesOtherHost, c.namesOtherHost) << c.line << ' ' << c.option;
    }
}

TEST(VIO_ListenerOptions, NamesWhatItDoesNotKnow) {
    std::ostringstream complaints;
    const auto options =
        VIO_ListenerOptions::parse("wait:0.5 wait=x max-bytes=0 clients=-1 user=all what "
                                   "browser:pass accept=text,pdf accept=xml,http bind=:: "
                                   "clients=99999999999999999999 wait=1e9 bind=1.2.3 = host:a,:80",
                                   &complaints);
    EXPECT_EQ(complaints.str(), "Wrong listener option wait=x\n"
                                "Wrong listener option max-bytes=0\n"
                                "Wrong listener option clients=-1\n"
                                "Wrong listener option user=all\n"
                                "Wrong listener option what\n"
                                "Wrong listener option accept=text,pdf\n"
                                "Wrong listener option clients=99999999999999999999\n"
                                "Wrong listener option wait=1e9\n"
                                "Wrong listener option bind=1.2.3\n"
                                "Wrong listener option =\n"
                                "Wrong listener option host:a,:80\n");
    EXPECT_EQ(options.wait, 500000000);
    EXPECT_EQ(options.maxBytes, 64u << 20);
    EXPECT_TRUE(options.passBrowsers);
    EXPECT_FALSE(options.anyUser);
    EXPECT_EQ(options.accept, unsigned{ VIO_ListenerOptions::Xml | VIO_ListenerOptions::Http });
    EXPECT_EQ(options.bind, "any");
}

TEST(VIO_ListenerOptions, StandsOverTheDefaultOfTheHost) {
    VIO_ListenerOptions::setDefault("user=any clients=3", nullptr);
    const auto options = VIO_ListenerOptions::parse("clients=4", nullptr);
    VIO_ListenerOptions::setDefault(nullptr, nullptr);
    EXPECT_TRUE(options.anyUser);
    EXPECT_EQ(options.clients, 4u);
    EXPECT_FALSE(VIO_ListenerOptions::parse(nullptr, nullptr).anyUser);
}

}   // namespace
