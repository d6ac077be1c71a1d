// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/kit/KIT_StandardInput.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string_view>
#include <utility>

#include <unistd.h>

#include <orvlang/platform/kit/KIT_Utf8.h>
#include <orvlang/platform/kit/KIT_WorkBuffer.h>
#include <orvlang/platform/osl/KIT_Immortal.h>
#include <orvlang/platform/osl/KIT_Interrupt.h>
#include <orvlang/platform/osl/OSL_System.h>
#include <orvlang/platform/osl/OSL_Terminal.h>

namespace {

constinit KIT_Immortal<KIT_StandardInput> theInput;

constexpr size_t theWholeRoom = -1;
constexpr size_t theLeastCapacity = 8192;

void assign(KIT_WorkBuffer &line, std::string_view text) {
    line.strcpy(text);
}
void assign(std::string &line, std::string_view text) {
    line = text;
}

}   // namespace

KIT_StandardInput &KIT_StandardInput::inst() {
    return theInput.object;
}

bool KIT_StandardInput::readLine(KIT_WorkBuffer &line) {
    return extractLine(line);
}

bool KIT_StandardInput::readLine(std::string &line) {
    return extractLine(line);
}

template <typename Line>
bool KIT_StandardInput::extractLine(Line &line) {
    assign(line, {});
    partRead = cutOff = false;
    size_t length = 0;
    size_t terminator = 1;
    if (!std::exchange(endPending, false)) {
        while (!findNewline(length))
            if (!fill()) {
                if (!ended || !holdsInput())
                    return false;
                // A line without a newline is returned before the end.
                endPending = true;
                length = filled - next;
                terminator = 0;
                break;
            }
        const std::string_view text(buffer.get() + next, length);
        assign(line, withoutMark(text.substr(0, text.find('\0'))));
        consume(length + terminator);
        return true;
    }
    return false;
}

bool KIT_StandardInput::readPart(KIT_WorkBuffer &line, bool &done) {
    if (std::exchange(endPending, false))
        return false;
    if (!holdsInput() && !fillAtOnce(theWholeRoom)) {
        if (!ended)
            return true;
        cutOff = false;
        done = endPending = std::exchange(partRead, false);
        if (done)
            line.strcpy(withoutMark(line.view()));
        return done;
    }
    size_t length = 0;
    done = findNewline(length);
    const std::string_view text(buffer.get() + next, done ? length : filled - next);
    consume(text.size() + done);
    const size_t end = text.find('\0');
    if (!cutOff)
        line.strcat(text.substr(0, end));
    cutOff = !done && (cutOff || end != std::string_view::npos);
    partRead = !done;
    if (done && atStart)
        line.strcpy(withoutMark(line.view()));
    return true;
}

std::string_view KIT_StandardInput::readPiece(size_t limit) {
    if (std::exchange(endPending, false))
        return {};
    for (;;) {
        const std::string_view held(buffer.get() + next, filled - next);
        const size_t newline = held.substr(0, limit).find('\n');
        size_t length = newline != std::string_view::npos ? newline + 1 : held.size() >= limit ? limit : 0;
        if (length == 0) {
            if (fill())
                continue;
            length = ended ? held.size() : 0;
            endPending = length > 0;
        }
        consume(length);
        return withoutMark(held.substr(0, length));
    }
}

bool KIT_StandardInput::readByte(char &byte) {
    endPending = false;
    if (!holdsInput() && !fillAtOnce(1))
        return false;
    byte = buffer[next];
    consume(1);
    return true;
}

void KIT_StandardInput::confirm(std::string_view lines) {
    const std::string rest(buffer.get() + next, filled - next);
    discard();
    makeRoom(lines.size() + rest.size());
    lines.copy(buffer.get(), lines.size());
    rest.copy(buffer.get() + lines.size(), rest.size());
    filled = lines.size() + rest.size();
    confirmed = lines.size();
}

void KIT_StandardInput::consume(size_t count) {
    next += count;
    scanned = next;
    confirmed -= std::min(confirmed, count);
}

std::string_view KIT_StandardInput::withoutMark(std::string_view line) {
    return std::exchange(atStart, false) ? KITwithoutByteOrderMark(line) : line;
}

bool KIT_StandardInput::findNewline(size_t &length) {
    if (scanned == filled)
        return false;
    const void *const found = std::memchr(buffer.get() + scanned, '\n', filled - scanned);
    scanned = filled;
    if (!found)
        return false;
    length = static_cast<size_t>(static_cast<const char *>(found) - buffer.get()) - next;
    return true;
}

/// Reads what is available, and waits for the first byte. Returns false at the end, after an error (`ended` is set for
/// both) and after an interrupt.
bool KIT_StandardInput::fill() {
    OSLyieldTerminal();
    while (!KITgetInterrupt()->isInterrupted()) {
        const bool got = readOnce(theWholeRoom);
        if (got || ended)
            return got;
        // Another process on the same terminal may have set it non-blocking.
        if (errno == EAGAIN)
            OSLsystem().waitReadable(STDIN_FILENO, -1);
    }
    ended = false;
    return false;
}

/// Reads what is available, if anything.
bool KIT_StandardInput::fillAtOnce(size_t limit) {
    ended = false;
    return OSLsystem().waitReadable(STDIN_FILENO, 0) > 0 && readOnce(limit);
}

bool KIT_StandardInput::readOnce(size_t limit) {
    makeRoom(1);
    const ssize_t n = OSLsystem().read(STDIN_FILENO, buffer.get() + filled, std::min(limit, capacity - filled));
    ended = (n == 0 && !OSL_Terminal::mayReadNothing()) || (n < 0 && errno != EINTR && errno != EAGAIN);
    if (n > 0)
        filled += static_cast<size_t>(n);
    return n > 0;
}

void KIT_StandardInput::makeRoom(size_t least) {
    if (next == filled)
        next = filled = scanned = 0;
    if (capacity - filled >= least)
        return;
    const size_t held = filled - next;
    if (next >= capacity / 2 && capacity - held >= least) {
        std::memmove(buffer.get(), buffer.get() + next, held);
    } else {
        const size_t size = std::max({ 2 * capacity, held + least, theLeastCapacity });
        std::unique_ptr<char[]> larger(new char[size]);   // not zeroed, unlike make_unique
        if (held > 0)
            std::memcpy(larger.get(), buffer.get() + next, held);
        buffer = std::move(larger);
        capacity = size;
    }
    scanned -= next;
    filled = held;
    next = 0;
}

bool KIT_StandardInput::seekBack() {
    const off_t held = static_cast<off_t>(filled - next);
    if (OSLsystem().seek(STDIN_FILENO, -held, SEEK_CUR) < 0)
        return false;
    next = filled = scanned = confirmed = 0;
    return true;
}

void KIT_StandardInput::discard() {
    next = filled = scanned = confirmed = 0;
    ended = endPending = partRead = cutOff = false;
}
