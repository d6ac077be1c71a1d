// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string_view>

/// A line inside the engine: a view of the text, and the owner that keeps the text alive.
///
/// A script's lines, the lines of a loop and the rest after a `;` are in buffers that several lines share, so that
/// running a line does not copy it. While it runs its script may be popped or its loop replaced, so each line shares
/// the ownership of the buffer.
struct CMD_Line {
    std::string_view text;
    /// Null when the caller owns the text; a line that must wait is then copied first.
    std::shared_ptr<const void> owner;
    /// The text has been through history expansion: the rest after a `;` is not expanded a second time.
    bool historyExpanded = false;

    /// Returns a line that owns a copy of the text, followed by a NUL.
    static CMD_Line copyOf(std::string_view text);
    /// Returns the text from the offset on, sharing the buffer; a copy when the caller owns the text.
    CMD_Line rest(size_t offset) const;
};
