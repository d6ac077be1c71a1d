// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

/// The keys of the line editor, named by what they do.
enum class KIT_Key {
    Unknown,
    Text,    // a character to insert
    Paste,   // pasted text, perhaps of several lines
    Enter,
    Left,
    Right,
    WordLeft,
    WordRight,
    LineStart,
    LineEnd,
    DeleteLeft,
    DeleteRight,
    DeleteOrEnd,   // deletes at the cursor; ends the input on an empty line
    KillToStart,
    KillToEnd,
    KillWordLeft,
    KillWordRight,
    Yank,
    Transpose,
    Older,
    Newer,
    OlderAlike,   // of the past lines that start like this one
    NewerAlike,
    Oldest,
    Newest,
    LastWord,   // of the line before
    SearchOlder,
    SearchNewer,
    Complete,
    ClearScreen,
    Cancel,
    Position   // not a key: the terminal reports the position of its cursor
};

/// Decodes the bytes that a terminal sends into keys. The bytes of a key may arrive together or not. A key is complete
/// with its last byte, and nothing waits for that.
class KIT_KeyDecoder {
public:
    /// Adds the next byte. Returns true when it completes a key.
    bool addByte(char byte);
    KIT_Key getKey() const { return key; }
    /// The text of Text and Paste, or the column of Position, counted from 1. The caller may move from it.
    std::string &getText() { return text; }

private:
    bool complete(KIT_Key found);
    bool decodeEscaped();
    bool decodePasted();
    bool decodeCharacter();

    std::string held;   // bytes of a key that is not complete
    std::string text;
    KIT_Key key = KIT_Key::Unknown;
    bool isPasting = false;
    bool isLiteral = false;   // the next byte is text
};
