// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include <orvlang/platform/vio/VIO_ListenerOptions.h>

struct VIO_HttpHead;

/// What is to be done with the bytes that a connection has gathered.
struct VIO_Delivery {
    enum Action {
        Wait,       // for more bytes, but only until `until`, unless that is 0
        Deliver,    // the first `length` bytes; what is behind them lies ready to be read
        Complete,   // append a line end in the peer's place, then decide again
        Fail,       // deliver the first `length` bytes with an end behind them, then end the connection
        Drop,       // forget the first `length` bytes, then decide again
        Refuse      // end the connection
    };
    Action action;
    size_t length = 0;
    long long until = 0;
};

/// Decides when what a peer has sent is a delivery. A request is one write of the peer, but a large one, or one of an
/// ordinary HTTP client, arrives in pieces. Those are put together by what the bytes say, where they say it, and by
/// silence where they do not. It knows bytes and times (nanoseconds) only, no sockets.
class VIO_DeliveryGatherer {
public:
    explicit VIO_DeliveryGatherer(const VIO_ListenerOptions &options) : options(options) {}

    /// `gathered` is what came behind the latest delivery and is longer or shorter than at the last call only by what
    /// came and by what that call said to take off or append. `ended` tells that no more will come.
    VIO_Delivery decide(std::string_view gathered, bool ended, long long now);

private:
    enum class Form { MaybeXml, MaybeHttp, Text, Xml, Post, OtherHttp };

    struct Look {
        std::string_view text;
        bool ended;
        long long silence;   // since bytes came; for ever when no more will come
    };
    /// What is known of an HTTP request once its head is there.
    struct Frame {
        size_t head;              // length of it; without a blank line it is what came before a silence
        size_t length;            // in all
        bool counted;             // the protocol knows the length, too, and reads up to there
        bool refused;             // it must not be served
        bool failed = false;      // it cannot be served
        bool completed = false;   // its end was put there in the peer's place
    };

    void beginNext();
    Form classify(std::string_view text);
    VIO_Delivery decideForm(const Look &look);
    VIO_Delivery decideText(const Look &look, long long neededSilence) const;
    VIO_Delivery decideRequestLine(const Look &look) const;
    VIO_Delivery decideHttp(const Look &look);
    VIO_Delivery decideFramed(const Look &look);
    std::optional<Frame> findFrame(const Look &look);
    size_t findHeadEnd(std::string_view text);
    bool isRefused(const VIO_HttpHead &head) const;
    bool isAccepted() const;
    long long getHeadPatience() const;
    VIO_Delivery fail() const;
    VIO_Delivery waitFor(long long silence) const { return { VIO_Delivery::Wait, 0, lastProgress + silence }; }

    const VIO_ListenerOptions &options;
    std::optional<Form> form;   // of the delivery that is being gathered
    std::optional<Frame> frame;
    size_t scanned = 0;   // no head, or as long as that is sought no line, ends before here
    size_t seen = 0;      // length of what was gathered at the last call
    long long lastProgress = 0;
    // Was put behind the latest delivery in the peer's place, and may still come from there.
    std::string_view late;
};
