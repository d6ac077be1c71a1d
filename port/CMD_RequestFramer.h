// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <utility>

#include <orvlang/platform/net/VIO_ConnectedSocketListener.h>
#include <orvlang/platform/net/VIO_ListenerOptions.h>
#include <orvlang/port/CMD_HttpHead.h>

/// Decides how much of what a client of a command port has sent is one request. A request is one write of the client,
/// but a large one, or one of an ordinary HTTP client, arrives in pieces. It is complete by what the bytes say, where
/// they say it, and after a silence where they do not. Depends on bytes and times only, not on sockets.
class CMD_RequestFramer {
public:
    explicit CMD_RequestFramer(const VIO_ListenerOptions &options) : options(options) {}

    /// The bytes are those of the last call, without what that call delivered or skipped, and what has come since.
    VIO_RequestExtent findRequest(const VIO_ReceivedBytes &received);
    /// Returns the head of the request that was delivered last, once; none unless it is an HTTP request that the port
    /// runs.
    std::optional<CMD_HttpHead> releaseHead() { return std::exchange(deliveredHead, std::nullopt); }
    /// Returns true when the request that was delivered last lacks the line end after its body. It must be added, and is
    /// skipped if it comes late.
    bool lacksLineEnd() const { return !late.empty(); }
    /// Parses the head of a request that did not come by way of this object.
    CMD_HttpHead parseHead(std::string_view request) const;

private:
    enum class Form { MaybeXml, MaybeHttp, Text, Xml, Post, OtherHttp };

    struct Input {
        std::string_view text;
        bool isEnded;
        long long silence;   // time since the latest bytes came; endless when no more will come
    };
    /// What is known of an HTTP request once its head has come.
    struct Frame {
        CMD_HttpHead head;
        size_t length;    // of the request
        bool isCounted;   // a line end is read after the body
        bool isRefused;   // must not be served
        bool isFailed;    // cannot be served
    };

    VIO_RequestExtent findNext(std::string_view text, const VIO_ReceivedBytes &received);
    void endRequest();
    Form classify(std::string_view text);
    VIO_RequestExtent decideForm(const Input &input);
    VIO_RequestExtent decideText(const Input &input, long long neededSilence) const;
    VIO_RequestExtent decideRequestLine(const Input &input) const;
    VIO_RequestExtent decideHttp(const Input &input);
    VIO_RequestExtent decideFramed(const Input &input);
    std::optional<Frame> findFrame(const Input &input);
    std::optional<size_t> findBody(std::string_view text);
    bool isRefused(const CMD_HttpHead &head) const;
    bool isAccepted() const;
    long long getHeadPatience() const;
    VIO_RequestExtent fail(const Input &input) const;
    VIO_RequestExtent waitFor(long long silence) const {
        return { .action = VIO_RequestExtent::Wait, .until = lastProgress + silence };
    }

    const VIO_ListenerOptions options;
    std::optional<Form> form;   // of the request whose bytes are coming
    std::optional<Frame> frame;
    std::optional<CMD_HttpHead> deliveredHead;
    size_t scanned =
        0;             // up to here there is no blank line, or no newline as long as a request line is sought
    size_t seen = 0;   // length of the bytes at the last call
    long long lastProgress = 0;
    std::string_view late;   // what the request that was delivered last lacked, and may still come
};
