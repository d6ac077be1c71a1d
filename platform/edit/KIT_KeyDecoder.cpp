// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/edit/KIT_KeyDecoder.h>

#include <string_view>
#include <utility>

#include <orvlang/platform/kit/KIT_Utf8.h>

namespace {

constexpr std::string_view thePasteStart = "\x1b[200~";
constexpr std::string_view thePasteEnd = "\x1b[201~";
constexpr char theEscape = '\x1b';
constexpr char theLiteralKey = '\x16';   // Ctrl-V

struct Row {
    std::string_view bytes;
    KIT_Key key;
};

constexpr Row theControlKeys[] = {
    { "\n", KIT_Key::Enter },          { "\r", KIT_Key::Enter },       { "\t", KIT_Key::Complete },
    { "\x01", KIT_Key::LineStart },    { "\x02", KIT_Key::Left },      { "\x04", KIT_Key::DeleteOrEnd },
    { "\x05", KIT_Key::LineEnd },      { "\x06", KIT_Key::Right },     { "\x07", KIT_Key::Cancel },
    { "\x08", KIT_Key::DeleteLeft },   { "\x0b", KIT_Key::KillToEnd }, { "\x0c", KIT_Key::ClearScreen },
    { "\x0e", KIT_Key::Newer },        { "\x10", KIT_Key::Older },     { "\x12", KIT_Key::SearchOlder },
    { "\x13", KIT_Key::SearchNewer },  { "\x14", KIT_Key::Transpose }, { "\x15", KIT_Key::KillToStart },
    { "\x17", KIT_Key::KillWordLeft }, { "\x19", KIT_Key::Yank },      { "\x7f", KIT_Key::DeleteLeft },
};

/// After an escape. Some terminals send `O` instead of `[`.
constexpr Row theEscapedKeys[] = {
    { "[A", KIT_Key::Older },          { "[B", KIT_Key::Newer },          { "[C", KIT_Key::Right },
    { "[D", KIT_Key::Left },           { "[H", KIT_Key::LineStart },      { "[F", KIT_Key::LineEnd },
    { "[1~", KIT_Key::LineStart },     { "[7~", KIT_Key::LineStart },     { "[4~", KIT_Key::LineEnd },
    { "[8~", KIT_Key::LineEnd },       { "[3~", KIT_Key::DeleteRight },   { "[5~", KIT_Key::OlderAlike },
    { "[6~", KIT_Key::NewerAlike },    { "[1;5C", KIT_Key::WordRight },   { "[1;3C", KIT_Key::WordRight },
    { "[1;5D", KIT_Key::WordLeft },    { "[1;3D", KIT_Key::WordLeft },    { "[3;5~", KIT_Key::KillWordRight },
    { "b", KIT_Key::WordLeft },        { "f", KIT_Key::WordRight },       { "d", KIT_Key::KillWordRight },
    { "\x7f", KIT_Key::KillWordLeft }, { "\x08", KIT_Key::KillWordLeft }, { "<", KIT_Key::Oldest },
    { ">", KIT_Key::Newest },          { ".", KIT_Key::LastWord },
};

template <size_t Count>
KIT_Key findKey(const Row (&rows)[Count], std::string_view bytes) {
    for (const Row &row : rows)
        if (row.bytes == bytes)
            return row.key;
    return KIT_Key::Unknown;
}

/// Returns true when the sequence after an escape is complete: `[`, parameters and a final byte; `O` and one byte; or
/// one byte.
bool isWhole(std::string_view sequence) {
    if (sequence.empty())
        return false;
    if (sequence[0] == '[')
        return sequence.size() > 1 && sequence.back() > '?';
    return sequence[0] != 'O' || sequence.size() > 1;
}

}   // namespace

bool KIT_KeyDecoder::addByte(char byte) {
    if (std::exchange(isLiteral, false)) {
        text = byte;
        return complete(KIT_Key::Text);
    }
    held += byte;
    if (isPasting)
        return decodePasted();
    return decodeCharacter();
}

bool KIT_KeyDecoder::complete(KIT_Key found) {
    held.clear();
    key = found;
    return true;
}

bool KIT_KeyDecoder::decodeCharacter() {
    const unsigned char first = static_cast<unsigned char>(held[0]);
    if (held[0] == theEscape)
        return decodeEscaped();
    if (held[0] == theLiteralKey) {
        isLiteral = true;
        held.clear();
        return false;
    }
    if (first < ' ' || first == 0x7F)
        return complete(findKey(theControlKeys, held));
    if (held.size() > 1 &&
        KITcharacterLength(held.back()) != 0) {   // that was not a character; another key starts
        held.erase(0, held.size() - 1);
        return decodeCharacter();
    }
    const std::size_t length = KITcharacterLength(held[0]);
    if (held.size() < length)
        return false;
    if (KITfirstCharacter(held).length != held.size())
        return complete(KIT_Key::Unknown);
    text = held;
    return complete(KIT_Key::Text);
}

bool KIT_KeyDecoder::decodeEscaped() {
    const std::string_view sequence = std::string_view(held).substr(1);
    const bool isControl = !sequence.empty() && static_cast<unsigned char>(sequence.back()) < ' ';
    if (isControl && sequence != "\x08") {   // that escape was alone, or cut off; another key starts
        held.erase(0, held.size() - 1);
        return decodeCharacter();
    }
    if (!isWhole(sequence))
        return false;
    if (held == thePasteStart) {
        isPasting = true;
        held.clear();
        return false;
    }
    if (sequence.ends_with('R') && sequence.find(';') != sequence.npos) {
        text = sequence.substr(sequence.find(';') + 1);
        return complete(KIT_Key::Position);
    }
    if (held[1] == 'O')
        held[1] = '[';
    return complete(findKey(theEscapedKeys, sequence));
}

bool KIT_KeyDecoder::decodePasted() {
    if (!held.ends_with(thePasteEnd))
        return false;
    isPasting = false;
    held.resize(held.size() - thePasteEnd.size());
    text = std::move(held);
    return complete(KIT_Key::Paste);
}
