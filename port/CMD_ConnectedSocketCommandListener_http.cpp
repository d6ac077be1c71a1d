// SPDX-License-Identifier: Apache-2.0
// An HTTP request on a command port: the rest of it is read from the socket, its body is run as text of the language or
// as an XML document, and the reply gets a head. Of the request's head only the length is looked at.
#include <orvlang/port/CMD_ConnectedSocketCommandListener.h>

#include <algorithm>
#include <string>

#include <orvlang/platform/kit/KIT_Options.h>
#include <orvlang/port/CMD_PortProtocol.h>

using namespace CMD_PortProtocol;

namespace {

void putHead(const char *status, KIT_WorkBuffer &body) {
    const std::string head = std::string("HTTP/1.1 ") + status +
                             "\r\nContent-Length: " + std::to_string(body.length()) +
                             "\r\nContent-Type: text/plain\r\n\r\n";
    body.prepend(head);
}

/// Takes over the lines `name:value` up to the first blank line, the values as they are written.
void parseHTTPHeaders(std::string_view request, KIT_Options &options) {
    const auto takeLine = [&request] {
        const size_t end = std::min(request.find('\n'), request.size());
        const std::string_view line = request.substr(0, end);
        request.remove_prefix(std::min(end + 1, request.size()));
        return line;
    };
    takeLine();   // the request line
    while (!request.empty()) {
        const std::string_view line = takeLine();
        if (line.empty() || line == "\r")
            return;
        const size_t colon = line.find(':');
        if (colon != line.npos)
            options.setString(line.substr(0, colon), line.substr(colon + 1));
    }
}

/// How many bytes are still to come.
long long remainingBytes(const KIT_WorkBuffer &request, int contentLength) {
    const size_t blankLine = request.view().find(theBlankLine);
    const long long received = static_cast<long long>(request.length());
    // Without the blank line in hand, its last two bytes are to come as well.
    const long long bodyStart = blankLine == std::string_view::npos
                                    ? received + 2
                                    : static_cast<long long>(blankLine + theBlankLine.size());
    return bodyStart - received + contentLength + static_cast<long long>(theLineEnd.size());
}

/// Reads the rest of a request behind what has been delivered. False when its length is not told, or when the connection
/// ends before.
bool readHTTPBody(KIT_WorkBuffer &request, KIT_NetSocket &socket) {
    KIT_Options options;
    parseHTTPHeaders(request.c_str(), options);
    const KIT_String *const contentLength = options.findString("Content-Length");
    if (!contentLength)
        return false;
    char piece[8191];
    for (long long remaining = remainingBytes(request, contentLength->toInt()); remaining > 0;) {
        int got = 0;
        const int wanted = static_cast<int>(std::min<long long>(remaining, sizeof piece));
        const int result = socket.read(piece, wanted, &got, -1);
        if (result == KIT_NetSocket::TryAgain)
            continue;
        // A connection that failed gives nothing for ever.
        if (result == KIT_NetSocket::Ended || got <= 0)
            return false;
        request.write(piece, static_cast<size_t>(got));
        remaining -= got;
    }
    return true;
}

}   // namespace

void CMD_ConnectedSocketCommandListener::processHTTPRequest(const KIT_WorkBuffer &request,
                                                            KIT_NetSocket &socket, KIT_WorkBuffer &reply) {
    KIT_WorkBuffer whole(request.view());
    const bool isComplete = readHTTPBody(whole, socket);
    const std::string_view text = whole.c_str();
    const size_t blankLine = text.find(theBlankLine);
    if (!isComplete || blankLine == text.npos) {
        reply.strcpy("Orvane could not process HTTP request");
        return putHead("400 Bad Request", reply);
    }
    const char *const body = whole.c_str() + blankLine + theBlankLine.size();
    runText(body, reply);
    putHead("200 OK", reply);
}
