// SPDX-License-Identifier: Apache-2.0
// When what arrives in pieces is a delivery, by bytes and times alone.
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Cases.h"
#include <orvlang/port/CMD_HttpHead.h>
#include <orvlang/port/CMD_RequestFramer.h>

namespace {

constexpr long long theMillisecond = 1000000;

struct Piece {
    int time;            // milliseconds
    std::string bytes;   // empty: no more will come
};

/// Reads pieces from the text of a case.
std::vector<Piece> piecesOf(std::string text) {
    static const std::regex special(R"(\\r|\\n|\{(\d+)\})"), separator(" \\| ");
    for (std::smatch match; std::regex_search(text, match, special);) {
        const std::string bytes = match[1].matched            ? std::string(std::stoul(match[1]), 'x')
                                  : match.str().back() == 'r' ? "\r"
                                                              : "\n";
        text.replace(static_cast<size_t>(match.position()), static_cast<size_t>(match.length()), bytes);
    }
    std::vector<Piece> pieces;
    for (std::sregex_token_iterator each(text.begin(), text.end(), separator, -1), end; each != end; ++each) {
        const std::string piece = *each;
        const size_t colon = piece.find(':');
        pieces.push_back({ std::stoi(piece), piece.substr(colon + 1) });
    }
    return pieces;
}

/// Plays the pieces to a framer and logs what it decided at which time, a word for each decision.
class Play {
public:
    explicit Play(const char *option) : framer(VIO_ListenerOptions::parse(option, nullptr)) {}

    std::string run(const std::vector<Piece> &pieces) {
        for (const Piece &piece : pieces) {
            passTime(piece.time);
            now = piece.time * theMillisecond;
            received += piece.bytes;
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
        while (!received.empty()) {
            const VIO_RequestExtent next = framer.findRequest({ received, ended, now });
            due = next.until;
            show(next);
            received.erase(0, next.skip + next.length);
            if (next.action != VIO_RequestExtent::Deliver || next.isLast)
                return;
        }
    }

    void show(const VIO_RequestExtent &next) {
        if (next.skip > 0)
            show("skip", next.skip);
        if (next.action == VIO_RequestExtent::Refuse)
            show("refuse", 0);
        if (next.action == VIO_RequestExtent::Deliver)
            show(framer.lacksLineEnd() ? "complete" : "deliver", next.length);
        if (next.isLast)
            show("end", 0);
    }

    void show(const char *what, size_t length) {
        if (log.tellp() > 0)
            log << ' ';
        log << now / theMillisecond << ':' << what;
        if (length > 0)
            log << '(' << length << ')';
    }

    CMD_RequestFramer framer;
    std::string received;
    bool ended = false;
    long long now = 0, due = 0;
    std::ostringstream log;
};

const std::string thePost = "POST / HTTP/1.1\r\n";

TEST(CMD_RequestFramer, KnowsWhenARequestIsComplete) {
    for (const auto &row : casesOf(ORVLANG_CASES "/framing.cases"))
        EXPECT_EQ(Play(row.size() > 3 ? row[3].c_str() : "").run(piecesOf(row[1])), row[2]) << row[0];
}

TEST(CMD_RequestFramer, DoesNotReadALongHeadAgainAndAgain) {
    // A minute and more if each byte had the head read from its start.
    CMD_RequestFramer framer{ VIO_ListenerOptions() };
    std::string received = thePost;
    while (received.size() < 65000) {
        received += "a: b\r\n"[received.size() % 6];
        ASSERT_EQ(framer.findRequest({ received, false, 0 }).action, VIO_RequestExtent::Wait);
    }
}

TEST(CMD_HttpHead, TellsWhereARequestComesFrom) {
    for (const auto &row : casesOf(ORVLANG_CASES "/heads.cases")) {
        const char *const option = row.size() > 2 ? row[2].c_str() : "";
        const CMD_HttpHead head =
            CMD_HttpHead::parse(thePost + row[0] + "\r\n\r\nOrigin: body\r\n", std::nullopt,
                                VIO_ListenerOptions::parse(option, nullptr));
        const char *const shown = head.isFromBrowser    ? "browser"
                                  : head.namesOtherHost ? "other host"
                                                        : "nothing";
        EXPECT_EQ(shown, row[1]) << row[0] << ' ' << option;
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
