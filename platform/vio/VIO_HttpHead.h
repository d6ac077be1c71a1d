// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

/// What the header lines of an HTTP request say about how it is to be treated. The text begins with the request line and
/// ends anywhere; lines behind the first blank one, and what is behind a NUL, are not looked at.
struct VIO_HttpHead {
    /// The length of the body, as the protocol finds it: the name has exactly the letters of `Content-Length`, and the
    /// last such line counts.
    std::optional<int> contentLength;
    /// The same for a name in any case.
    std::optional<int> anyContentLength;
    bool hasTransferEncoding = false;
    bool isFromBrowser = false;    // a line that browsers put into what a web page sends
    bool namesOtherHost = false;   // it was addressed to a name that is not one of loopback

    static VIO_HttpHead parse(std::string_view text);

private:
    void takeLine(std::string_view line);
};

/// How far a text is the request line of an HTTP request.
enum class VIO_HttpLine { No, Maybe, Yes };

/// Maybe: the text has no newline yet, and what there is can be the start of a request line with a method in capital
/// letters. The first `scanned` bytes are known to hold no newline.
VIO_HttpLine VIOfindHttpLine(std::string_view text, size_t scanned);
