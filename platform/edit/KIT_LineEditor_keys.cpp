// SPDX-License-Identifier: Apache-2.0
// Implements the keys, except those of the search.
#include <orvlang/platform/edit/KIT_LineEditor.h>

#include <algorithm>
#include <utility>

#include <orvlang/platform/edit/KIT_EditPosition.h>
#include <orvlang/platform/kit/KIT_StandardInput.h>
#include <orvlang/platform/kit/KIT_Utf8.h>

KIT_LineEditor::State KIT_LineEditor::readKeys() {
    show();
    KIT_StandardInput &input = KIT_StandardInput::inst();
    if (input.holdsConfirmed())
        enterConfirmedLine();
    for (char byte; state == State::Editing && input.readByte(byte);)
        if (decoder.addByte(byte))
            act(decoder.getKey());
    if (state == State::Editing && input.isAtEnd())
        state = State::Ended;
    if (!isHidden)
        flush();
    return state;
}

void KIT_LineEditor::act(KIT_Key key) {
    if (key == KIT_Key::Position)
        return eraseRest();
    if (isSearching && actInSearch(key))
        return;
    if (!runCommand(key))
        changeLine(key);
    lastKey = key;
}

/// Handles the keys that libedit does not implement.
void KIT_LineEditor::changeLine(KIT_Key key) {
    switch (key) {
    case KIT_Key::Text:
        typeText();
        break;
    case KIT_Key::Paste:
        paste();
        break;
    case KIT_Key::Enter:
        enter();
        break;
    case KIT_Key::Older:
        recallAt(recallIndex - 1);
        break;
    case KIT_Key::Newer:
        recallAt(recallIndex + 1);
        break;
    case KIT_Key::Oldest:
        recallAt(0);
        break;
    case KIT_Key::Newest:
        recallAt(recall.size());
        break;
    case KIT_Key::OlderAlike:
    case KIT_Key::NewerAlike:
        recallAlike(key);
        break;
    case KIT_Key::Yank:
        insert(cut);
        break;
    case KIT_Key::LastWord:
        insertLastWord();
        break;
    case KIT_Key::SearchOlder:
    case KIT_Key::SearchNewer:
        beginSearch();
        break;
    case KIT_Key::Complete:
        complete();
        break;
    default:
        break;
    }
}

/// Returns false when libedit does not implement the key.
bool KIT_LineEditor::runCommand(KIT_Key key) {
    static constexpr struct {
        KIT_Key key;
        EDL_Command command;
        bool cuts = false;
    } theCommands[] = {
        { KIT_Key::Left, EDL_Command::Left },
        { KIT_Key::Right, EDL_Command::Right },
        { KIT_Key::WordLeft, EDL_Command::WordLeft },
        { KIT_Key::WordRight, EDL_Command::WordRight },
        { KIT_Key::LineStart, EDL_Command::LineStart },
        { KIT_Key::LineEnd, EDL_Command::LineEnd },
        { KIT_Key::DeleteLeft, EDL_Command::DeleteLeft },
        { KIT_Key::DeleteRight, EDL_Command::DeleteRight },
        { KIT_Key::DeleteOrEnd, EDL_Command::DeleteRight },
        { KIT_Key::KillToStart, EDL_Command::KillToStart, true },
        { KIT_Key::KillToEnd, EDL_Command::KillToEnd, true },
        { KIT_Key::KillWordLeft, EDL_Command::KillWordLeft, true },
        { KIT_Key::KillWordRight, EDL_Command::KillWordRight, true },
        { KIT_Key::Transpose, EDL_Command::Transpose },
        { KIT_Key::ClearScreen, EDL_Command::ClearScreen },
    };
    const auto row = std::find_if(std::begin(theCommands), std::end(theCommands),
                                  [key](const auto &r) { return r.key == key; });
    if (row == std::end(theCommands))
        return false;
    if (key == KIT_Key::DeleteOrEnd && engine->getText().empty())
        state = State::Ended;
    else if (row->cuts)
        runCut(row->command);
    else
        engine->run(row->command);
    return true;
}

/// libedit's own cut buffer is not usable: it receives everything that is deleted.
void KIT_LineEditor::runCut(EDL_Command command) {
    const std::wstring before(engine->getText());
    engine->run(command);
    if (const std::size_t length = before.size() - engine->getText().size())
        cut = before.substr(engine->getCursor(), length);
}

void KIT_LineEditor::insert(std::wstring_view text) {
    const std::size_t cursor = engine->getCursor();
    engine->replace(cursor, cursor, text, cursor + text.size());
}

bool KIT_LineEditor::fitsScreen() const {
    KIT_EditPosition position(columnCount);
    position.advance(prompt);
    position.advance(engine->getText());
    return position.row + 1 < static_cast<std::size_t>(rowCount);
}

/// libedit's own typing crashes at the end of a line that does not fit on the screen. A combining mark becomes part of
/// the cluster before it.
void KIT_LineEditor::typeText() {
    const std::string &text = decoder.getText();
    const std::size_t cursor = engine->getCursor();
    const bool isMark = cursor > 0 && KITcolumnsOf(KITfirstCharacter(text).code) == 0;
    if (!isMark)
        return fitsScreen() ? engine->type(codec.encode(text)[0]) : insert(codec.encode(text));
    const std::wstring whole = codec.encode(codec.decode(engine->getText().substr(cursor - 1, 1)) + text);
    engine->replace(cursor - 1, cursor, whole, cursor - 1 + whole.size());
}

/// Pasted text is inserted as text: its line ends do not enter the line, and those at its end are dropped.
void KIT_LineEditor::paste() {
    std::string &text = decoder.getText();
    std::replace(text.begin(), text.end(), '\r', '\n');
    while (text.ends_with('\n'))
        text.pop_back();
    insert(codec.encode(text));
}

/// Enters the first of several lines. The others become input, and are shown when they are read.
void KIT_LineEditor::enter() {
    const std::string text = getText();
    const std::size_t end = text.find('\n');
    if (end != text.npos) {
        KIT_StandardInput::inst().confirm(text.substr(end + 1) + "\n");
        setLine(text.substr(0, end));
    }
    leaveRow();
    flush();
    isHidden = true;
    state = State::Entered;
}

void KIT_LineEditor::enterConfirmedLine() {
    std::string text;
    KIT_StandardInput::inst().readLine(text);
    setLine(text);
    enter();
}

/// Does nothing beyond both ends. A past line that was changed becomes the line that is being typed.
void KIT_LineEditor::recallAt(std::size_t index) {
    if (index > recall.size() || index == recallIndex)
        return;
    std::string text = getText();
    if (recallIndex == recall.size() || text != recall[recallIndex])
        typed = std::move(text);
    recallIndex = index;
    setLine(index == recall.size() ? typed : recall[index]);
}

void KIT_LineEditor::recallAlike(KIT_Key key) {
    if (lastKey != KIT_Key::OlderAlike && lastKey != KIT_Key::NewerAlike)
        alikeStart = getTextBeforeCursor();
    const bool isOlder = key == KIT_Key::OlderAlike;
    const std::string shown = getText();
    const std::size_t index = isOlder ? recall.findOlderAlike(alikeStart, shown, recallIndex)
                                      : recall.findNewerAlike(alikeStart, shown, recallIndex);
    if (index != KIT_Recall::None)
        recallAt(index);
    else if (!isOlder)
        recallAt(recall.size());
}

/// Inserts the last word of the latest line.
void KIT_LineEditor::insertLastWord() {
    if (recall.size() == 0)
        return;
    const std::string_view latest = recall[recall.size() - 1];
    const std::size_t end = latest.find_last_not_of(" \t\n");
    if (end == latest.npos)
        return;
    const std::size_t start = latest.find_last_of(" \t\n", end) + 1;
    insert(codec.encode(latest.substr(start, end + 1 - start)));
}
