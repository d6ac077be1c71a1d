// SPDX-License-Identifier: Apache-2.0
// What the keys do, those of the search apart.
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
        takeConfirmedLine();
    for (char byte; state == State::Editing && input.takeByte(byte);)
        if (decoder.take(byte))
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

/// What libedit does not do.
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
        recallAt(recallPlace - 1);
        break;
    case KIT_Key::Newer:
        recallAt(recallPlace + 1);
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

/// False when the key is no command of libedit's.
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

/// libedit's own memory of what was cut does not serve: everything that it deletes goes there.
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

/// libedit's own typing crashes at the end of a line that the screen cannot hold. A mark that combines goes into the
/// place before it.
void KIT_LineEditor::typeText() {
    const std::string &text = decoder.getText();
    const std::size_t cursor = engine->getCursor();
    const bool isMark = cursor > 0 && KITcolumnsOf(KITfirstCharacter(text).code) == 0;
    if (!isMark)
        return fitsScreen() ? engine->type(places.encode(text)[0]) : insert(places.encode(text));
    const std::wstring whole = places.encode(places.decode(engine->getText().substr(cursor - 1, 1)) + text);
    engine->replace(cursor - 1, cursor, whole, cursor - 1 + whole.size());
}

/// Pasted text is nothing but text: its line ends do not enter anything, and the last ones are dropped.
void KIT_LineEditor::paste() {
    std::string &text = decoder.getText();
    std::replace(text.begin(), text.end(), '\r', '\n');
    while (text.ends_with('\n'))
        text.pop_back();
    insert(places.encode(text));
}

/// Of several lines the first is entered; the others are there to be read by whoever wants a line, and are shown then.
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

void KIT_LineEditor::takeConfirmedLine() {
    std::string text;
    KIT_StandardInput::inst().readLine(text);
    setLine(text);
    enter();
}

/// Beyond both ends nothing happens. A past line that was changed becomes the line that is being typed.
void KIT_LineEditor::recallAt(std::size_t place) {
    if (place > recall.size() || place == recallPlace)
        return;
    std::string text = getText();
    if (recallPlace == recall.size() || text != recall[recallPlace])
        typed = std::move(text);
    recallPlace = place;
    setLine(place == recall.size() ? typed : recall[place]);
}

void KIT_LineEditor::recallAlike(KIT_Key key) {
    if (lastKey != KIT_Key::OlderAlike && lastKey != KIT_Key::NewerAlike)
        alikeStart = getTextBeforeCursor();
    const bool isOlder = key == KIT_Key::OlderAlike;
    const std::string shown = getText();
    const std::size_t place = isOlder ? recall.findOlderAlike(alikeStart, shown, recallPlace)
                                      : recall.findNewerAlike(alikeStart, shown, recallPlace);
    if (place != KIT_Recall::None)
        recallAt(place);
    else if (!isOlder)
        recallAt(recall.size());
}

/// Of the latest line.
void KIT_LineEditor::insertLastWord() {
    if (recall.size() == 0)
        return;
    const std::string_view latest = recall[recall.size() - 1];
    const std::size_t end = latest.find_last_not_of(" \t\n");
    if (end == latest.npos)
        return;
    const std::size_t start = latest.find_last_of(" \t\n", end) + 1;
    insert(places.encode(latest.substr(start, end + 1 - start)));
}
