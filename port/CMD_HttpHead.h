// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

struct VIO_ListenerOptions;

/// What the header lines of an HTTP request say about how it is to be treated. The text begins with the request line and
/// ends anywhere; lines behind the first blank one, and what is behind a NUL, are not looked at.
struct CMD_HttpHead {
    /// The length of the body, as the protocol finds it: the name has exactly the letters of `Content-Length`, and the
    /// last such line counts.
    std::optional<int> contentLength;
    /// The same for a name in any case.
    std::optional<int> anyContentLength;
    bool hasTransferEncoding = false;
    bool isFromBrowser = false;    // a line that only browsers write
    bool namesOtherHost = false;   // it was addressed to a host that the options do not allow

    static CMD_HttpHead parse(std::string_view text, const VIO_ListenerOptions &options);

private:
    void readLine(std::string_view line, const VIO_ListenerOptions &options);
};

/// How far a text is the request line of an HTTP request.
enum class CMD_HttpLine { No, Maybe, Yes };

/// Maybe: the text has no newline yet, and what there is can be the start of a request line with a method in capital
/// letters. The first `scanned` bytes are known to hold no newline.
CMD_HttpLine CMDfindHttpLine(std::string_view text, size_t scanned);
