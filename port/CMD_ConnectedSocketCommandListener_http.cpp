// SPDX-License-Identifier: Apache-2.0
// The road of a request, step 6. `processHTTPRequest` gets an HTTP request and its head from `processSocketData`, runs the
// body by `runText`, as XML or as text of the language, and puts a head before the reply, which `processSocketData`
// sends. A request that a host passed without its end is first read to its end from the socket.
#include <orvlang/port/CMD_ConnectedSocketCommandListener.h>

#include <algorithm>
#include <string>

#include <orvlang/port/CMD_HttpHead.h>
#include <orvlang/port/CMD_PortProtocol.h>

namespace {

void putHead(const char *status, KIT_WorkBuffer &body) {
    const std::string head = std::string("HTTP/1.1 ") + status +
                             "\r\nContent-Length: " + std::to_string(body.length()) +
                             "\r\nContent-Type: text/plain\r\n\r\n";
    body.prepend(head);
}

/// Returns how many bytes are still to come.
long long countMissing(const std::string &request, const CMD_HttpHead &head) {
    // A blank line that has not come is taken to lack its last two bytes.
    const size_t bodyOffset = head.bodyOffset.value_or(request.size() + CMD_PortProtocol::theLineEnd.size());
    return head.getRequestLength(bodyOffset) - static_cast<long long>(request.size());
}

/// Reads what the request lacks. Returns false when its length is not known, or when the connection ends before.
bool readHTTPBody(std::string &request, const CMD_HttpHead &head, KIT_NetSocket &socket) {
    if (!head.contentLength)
        return false;
    char piece[8191];
    for (long long missing = countMissing(request, head); missing > 0;) {
        int got = 0;
        const int wanted = static_cast<int>(std::min<long long>(missing, sizeof piece));
        const int result = socket.read(piece, wanted, &got, -1);
        if (result == KIT_NetSocket::TryAgain)
            continue;
        // A connection that failed never returns another byte.
        if (result == KIT_NetSocket::Ended || got <= 0)
            return false;
        request.append(piece, static_cast<size_t>(got));
        missing -= got;
    }
    return true;
}

/// Returns the offset of the body; nothing when the text of the request, which a NUL ends, does not reach it.
std::optional<size_t> findBody(const std::string &request, const CMD_HttpHead &head) {
    if (head.hasNul)
        return std::nullopt;
    return head.bodyOffset ? head.bodyOffset : CMD_HttpHead::findBody(request.c_str(), 0);
}

}   // namespace

void CMD_ConnectedSocketCommandListener::processHTTPRequest(std::string &request, const CMD_HttpHead &head,
                                                            KIT_NetSocket &socket, KIT_WorkBuffer &reply) {
    const bool isComplete = readHTTPBody(request, head, socket);
    const std::optional<size_t> body = findBody(request, head);
    if (!isComplete || !body) {
        reply.strcpy("Orvane could not process HTTP request");
        return putHead("400 Bad Request", reply);
    }
    runText(request.c_str() + *body, reply);
    putHead("200 OK", reply);
}
