// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include <orvlang/platform/kit/KIT_Export.h>

class KIT_WorkBuffer;

/// The process's one buffer over descriptor 0. Whoever wants a line of standard input takes it here, so that nobody
/// reads ahead of anybody else; nothing else in the library reads that descriptor. A byte order mark at the very start
/// belongs to no line.
class CMD_API KIT_StandardInput {
public:
    static KIT_StandardInput &inst();

    constexpr KIT_StandardInput() = default;
    KIT_StandardInput(const KIT_StandardInput &) = delete;
    KIT_StandardInput &operator=(const KIT_StandardInput &) = delete;

    /// Waits for a line of any length and gives it without its newline; a last line needs none. A NUL ends its
    /// line, and what follows it on the line is dropped. False at the end of input, on a read error, and when an
    /// interrupt stopped the waiting; then what came of the line so far is kept for the next call. After an end the
    /// next call asks again: a terminal may give more.
    bool readLine(KIT_WorkBuffer &line);
    bool readLine(std::string &line);
    /// Appends what there is of the next line, without waiting; `done` is set when the line is complete. False at the
    /// end of input and on a read error; with a part of a line before it, the end completes that line first.
    bool readPart(KIT_WorkBuffer &line, bool &done);
    /// Waits for a line, or for `limit` bytes of one, and gives them with the newline, as fgets does. Empty at the end
    /// of input and when it was interrupted. The bytes stay readable until the next call.
    std::string_view take(size_t limit);
    /// Takes the next byte, if there is one, and no byte behind it off the system: a child process may want those.
    bool takeByte(char &byte);

    /// Puts whole lines in front of everything else, to be read as lines.
    void confirm(std::string_view lines);
    /// Whether some of them have not been taken.
    bool holdsConfirmed() const { return confirmed > 0; }

    /// Whether bytes were read that no line has taken yet.
    bool holdsInput() const { return next < filled; }
    /// Whether a reading gives something, were it the end, without asking the system.
    bool answersAtOnce() const { return holdsInput() || endPending; }
    /// Whether the latest reading met the end of input (or an error) and nothing is held.
    bool isAtEnd() const { return ended && !holdsInput(); }

    /// Sets a descriptor 0 that can seek back to behind the last line taken, for a child process that shall read on
    /// there. False, and nothing happens, when it cannot seek.
    bool giveBack();
    /// Forgets what is held, for when descriptor 0 became another file.
    void discard();

private:
    template <typename Line>
    bool takeLine(Line &line);
    std::string_view withoutMark(std::string_view line);
    bool findNewline(size_t &length);
    bool fill();
    bool fillAtOnce(size_t limit);
    bool readOnce(size_t limit);
    void makeRoom(size_t least);
    void passOver(size_t count);

    std::unique_ptr<char[]> buffer;
    size_t capacity = 0;
    size_t next = 0;        // first byte that no line has taken
    size_t filled = 0;      // behind the last byte read
    size_t scanned = 0;     // no newline before here
    size_t confirmed = 0;   // bytes from `next` on
    bool atStart = true;    // no line was taken yet
    bool ended = false;
    bool endPending = false;   // a line without newline was given: the next call tells the end
    bool partTaken = false;    // by readPart, of a line that is not complete
    bool cutOff = false;       // that line had a NUL: the rest of it is dropped
};
