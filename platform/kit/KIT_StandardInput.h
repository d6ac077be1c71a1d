// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include <orvlang/platform/kit/KIT_Export.h>

class KIT_WorkBuffer;

/// The one buffer of the process for descriptor 0. All of the library reads standard input here, so that no reader gets
/// ahead of another one. A byte order mark at the very start does not belong to a line.
class CMD_API KIT_StandardInput {
public:
    static KIT_StandardInput &inst();

    constexpr KIT_StandardInput() = default;
    KIT_StandardInput(const KIT_StandardInput &) = delete;
    KIT_StandardInput &operator=(const KIT_StandardInput &) = delete;

    /// Waits for a line of any length and stores it without its newline; a last line needs none. A NUL ends the line,
    /// and the rest of the line is dropped. Returns false at the end of input, after a read error and after an
    /// interrupt, which keeps the beginning of the line for the next call. After an end the next call reads again: a
    /// terminal may have more.
    bool readLine(KIT_WorkBuffer &line);
    bool readLine(std::string &line);
    /// Appends what is available of the next line, without waiting. Sets `done` when the line is complete. Returns
    /// false at the end of input and after a read error. An end that follows a part of a line completes that line
    /// first.
    bool readPart(KIT_WorkBuffer &line, bool &done);
    /// Waits for a line, or for `limit` bytes of one, and returns them with the newline, as fgets does. The result is
    /// empty at the end of input and after an interrupt. The bytes stay readable until the next call.
    std::string_view readPiece(size_t limit);
    /// Reads the next byte, if there is one, and no more from the system: a child process may want the rest.
    bool readByte(char &byte);

    /// Inserts whole lines before all other input.
    void confirm(std::string_view lines);
    /// Returns true when some of those lines were not read yet.
    bool holdsConfirmed() const { return confirmed > 0; }

    /// Returns true when the buffer is not empty.
    bool holdsInput() const { return next < filled; }
    /// Returns true when the next call has a result, perhaps the end, without a read from the system.
    bool answersAtOnce() const { return holdsInput() || endPending; }
    /// Returns true when the latest call reached the end of input, or an error, and the buffer is empty.
    bool isAtEnd() const { return ended && !holdsInput(); }

    /// Seeks descriptor 0 back to the end of the last line that was returned, where a child process continues to read.
    /// Returns false, and does nothing, when the descriptor cannot seek.
    bool seekBack();
    /// Empties the buffer, for instance when descriptor 0 became another file.
    void discard();

private:
    template <typename Line>
    bool extractLine(Line &line);
    std::string_view withoutMark(std::string_view line);
    bool findNewline(size_t &length);
    bool fill();
    bool fillAtOnce(size_t limit);
    bool readOnce(size_t limit);
    void makeRoom(size_t least);
    void consume(size_t count);

    std::unique_ptr<char[]> buffer;
    size_t capacity = 0;
    size_t next = 0;        // first byte that was not consumed
    size_t filled = 0;      // after the last byte read
    size_t scanned = 0;     // no newline before here
    size_t confirmed = 0;   // bytes from `next` on
    bool atStart = true;    // nothing was consumed yet
    bool ended = false;
    bool endPending = false;   // a line without newline was returned: the next call reports the end
    bool partRead = false;     // by readPart, of a line that is not complete
    bool cutOff = false;       // that line contained a NUL: its rest is dropped
};
