// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

/// What a key on the terminal asks the line editor for.
enum class KIT_Key {
    Unknown,
    Text,    // a character to be typed in
    Paste,   // text that was pasted, of several lines perhaps
    Enter,
    Left,
    Right,
    WordLeft,
    WordRight,
    LineStart,
    LineEnd,
    DeleteLeft,
    DeleteRight,
    DeleteOrEnd,   // what is under the cursor; on an empty line the end of the input
    KillToStart,
    KillToEnd,
    KillWordLeft,
    KillWordRight,
    Yank,
    Transpose,
    Older,
    Newer,
    OlderAlike,   // of the past lines that begin like this one
    NewerAlike,
    Oldest,
    Newest,
    LastWord,   // of the line before
    SearchOlder,
    SearchNewer,
    Complete,
    ClearScreen,
    Cancel,
    Position   // no key: the terminal reports where its cursor is
};

/// Makes keys out of the bytes that a terminal sends. A key may take several bytes, which come together or not: it is
/// known when the last one is there, and nothing ever waits for that.
class KIT_KeyDecoder {
public:
    /// Takes the next byte. True when it completes a key.
    bool take(char byte);
    KIT_Key getKey() const { return key; }
    /// Of Text and Paste, and the column of Position, counted from 1; to be moved from.
    std::string &getText() { return text; }

private:
    bool complete(KIT_Key found);
    bool takeEscaped();
    bool takePasted();
    bool takeCharacter();

    std::string held;   // of a key that is not complete
    std::string text;
    KIT_Key key = KIT_Key::Unknown;
    bool isPasting = false;
    bool isLiteral = false;   // the next byte stands for itself
};
