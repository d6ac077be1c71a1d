// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string_view>

/// A line on its way through the engine: a view of the text, and what keeps that text alive.
///
/// A script's lines, the lines of a loop and the text behind a `;` all lie in buffers that several lines share,
/// so that no line is copied only to be run. Anything may happen while a line runs (its script may be popped, its
/// loop replaced), hence the share in the buffer.
struct CMD_Line {
    std::string_view text;
    /// Null when the text lies in the caller's memory; a line that must wait is then copied first.
    std::shared_ptr<const void> owner;
    /// The text has been through history expansion: the part behind a `;` is not expanded a second time.
    bool historyExpanded = false;

    /// A line that owns a copy of the text, with a NUL behind it.
    static CMD_Line copyOf(std::string_view text);
    /// The text from the given offset on, sharing the buffer; a copy when the text is the caller's.
    CMD_Line rest(size_t offset) const;
};
