// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

struct VIO_ListenerOptions;

/// What the head of an HTTP request says about how to treat the request. Parsed once, when the head has come, and used
/// by all that follows.
struct CMD_HttpHead {
    /// Offset of the body in the request; none while the head does not have its blank line.
    std::optional<size_t> bodyOffset;
    /// The length of the body, from the last line whose name is exactly `Content-Length`.
    std::optional<int> contentLength;
    /// The same for a name in any case.
    std::optional<int> anyContentLength;
    bool hasNul = false;   // the text of the request ends in its head
    bool hasTransferEncoding = false;
    bool isFromBrowser = false;    // has a line that only browsers write
    bool namesOtherHost = false;   // is addressed to a host that the options do not allow

    /// Returns the offset after the blank line; nothing while that has not come. None begins before `scanned`.
    static std::optional<size_t> findBody(std::string_view request, size_t scanned);
    /// Parses the start of a request, which begins with the request line and may end anywhere. Ignores what follows the
    /// first blank line or a NUL.
    static CMD_HttpHead parse(std::string_view request, std::optional<size_t> bodyOffset,
                              const VIO_ListenerOptions &options);
    /// Returns the length of a request that has a contentLength and this offset of its body, with the line end that the
    /// count leaves out.
    long long getRequestLength(size_t offset) const;

private:
    void readLine(std::string_view line, const VIO_ListenerOptions &options);
};

/// Whether a text begins with the request line of an HTTP request. Maybe: it can be the start of one, with a method in
/// capital letters, and does not have a newline yet.
enum class CMD_HttpLine { No, Maybe, Yes };

/// Looks for a request line. The first `scanned` bytes must not contain a newline.
CMD_HttpLine CMDfindHttpLine(std::string_view text, size_t scanned);
