// SPDX-License-Identifier: Apache-2.0
// How the line comes on the terminal and off it again; what the keys do stands in the other sources of the class.
#include <orvlang/platform/edit/KIT_LineEditor.h>

#include <algorithm>
#include <iostream>
#include <streambuf>
#include <utility>

#include <unistd.h>

#include <orvlang/platform/edit/KIT_EditPosition.h>
#include <orvlang/platform/osl/OSL_File.h>
#include <orvlang/platform/osl/OSL_Terminal.h>

KIT_LineEditor *KIT_LineEditor::theActive = nullptr;

namespace {

constexpr const char *theQuestionForPosition = "\x1b[6n";

/// Stands in front of a stream's buffer: what is written takes the half-typed line away first.
class YieldingBuffer : public std::streambuf {
public:
    explicit YieldingBuffer(std::ostream &stream) : stream(stream), target(stream.rdbuf()) { put(this); }
    ~YieldingBuffer() override { put(target); }

protected:
    int_type overflow(int_type byte) override {
        KIT_LineEditor::yield();
        return traits_type::eq_int_type(byte, traits_type::eof())
                   ? traits_type::not_eof(byte)
                   : target->sputc(traits_type::to_char_type(byte));
    }
    std::streamsize xsputn(const char *bytes, std::streamsize count) override {
        KIT_LineEditor::yield();
        return target->sputn(bytes, count);
    }
    int sync() override { return target->pubsync(); }

private:
    /// The state of the stream stays, errors included.
    void put(std::streambuf *buffer) {
        const std::ios::iostate state = stream.rdstate();
        stream.rdbuf(buffer);
        stream.clear(state);
    }

    std::ostream &stream;
    std::streambuf *const target;
};

}   // namespace

class KIT_LineEditor::Streams {
    YieldingBuffer out{ std::cout }, err{ std::cerr }, log{ std::clog };
};

std::unique_ptr<KIT_LineEditor> KIT_LineEditor::make(KIT_CmdLineReader::PromptCallback prompt,
                                                     KIT_CmdLineReader::CompletionCallback completion) {
    if (!OSL_Terminal::canEdit())
        return nullptr;
    const OSL_Terminal::ModeKeeper keeper;   // libedit sets a mode of its own at its start, and never again
    std::unique_ptr<EDL_Line> engine = EDLmakeLine();
    if (!engine)
        return nullptr;
    return std::unique_ptr<KIT_LineEditor>(new KIT_LineEditor(prompt, completion, std::move(engine)));
}

KIT_LineEditor::KIT_LineEditor(KIT_CmdLineReader::PromptCallback prompt,
                               KIT_CmdLineReader::CompletionCallback completion,
                               std::unique_ptr<EDL_Line> engine)
    : promptCallback(prompt), completionCallback(completion), engine(std::move(engine)) {}

KIT_LineEditor::~KIT_LineEditor() {
    end();
}

void KIT_LineEditor::begin() {
    yield();
    around = theActive;
    theActive = this;
    OSLsetTerminalYield(yield);
    state = State::Editing;
    isHidden = true;
    isSearching = false;
    recallPlace = recall.size();
    lastKey = KIT_Key::Unknown;
    decoder = {};   // an interrupt has the terminal drop input: the rest of a key, the end of a paste
    if (!around)
        streams = std::make_unique<Streams>();
    setLine("");
    show();
}

/// What was not entered stays on the terminal, with the cursor behind it.
void KIT_LineEditor::end() {
    if (theActive != this)
        return;
    if (!isHidden) {
        engine->run(EDL_Command::LineEnd);
        flush();
        isHidden = true;
    }
    streams.reset();
    theActive = around;
    if (around)
        return;
    OSLsetTerminalYield(nullptr);
    OSL_Terminal::leaveEditMode();
}

void KIT_LineEditor::hide() {
    isHidden = true;
    flush();
    erase(getCursorPosition().row);
    flush();
    OSL_Terminal::leaveEditMode();
}

void KIT_LineEditor::show() {
    if (OSL_Terminal::takeStale()) {
        isHidden = true;
        decoder = {};
    }
    const bool isResized = OSL_Terminal::takeResized();
    if (isHidden)
        drawAnew();
    else if (isResized)
        redrawResized();
}

/// In a row of its own: blanks over the whole width end in the next row unless they began at the left edge.
void KIT_LineEditor::drawAnew() {
    if (!OSL_Terminal::enterEditMode())
        return;
    if (!isSearching)
        refreshPrompt();   // runs what the prompt holds, which may write
    std::cout.flush();
    isHidden = false;
    suspectRows = 0;
    OSL_Terminal::getSize(columnCount, rowCount);
    output.append(static_cast<std::size_t>(columnCount), ' ').append("\r\x1b[J");
    engine->takeOutput();
    engine->resize();
    engine->draw();
    flush();
}

/// Most terminals wrap their rows anew, and some do not: of a line that now takes fewer rows those leave some above. Where
/// the cursor was before it is drawn anew tells them apart, as soon as the terminal answers.
void KIT_LineEditor::redrawResized() {
    const KIT_EditPosition before = getCursorPosition();
    OSL_Terminal::getSize(columnCount, rowCount);
    const KIT_EditPosition after = getCursorPosition();
    suspectRows = before.row > after.row && before.column != after.column ? before.row - after.row : 0;
    suspectColumn = before.column;
    if (suspectRows > 0)
        output += theQuestionForPosition;
    redraw(after.row);
}

void KIT_LineEditor::eraseRest() {
    const std::size_t rows = std::exchange(suspectRows, 0);
    if (rows == 0 || decoder.getText() != std::to_string(suspectColumn + 1) + 'R')
        return;
    flush();
    redraw(getCursorPosition().row + rows);
}

/// With the cursor so many rows below the start of what is there.
void KIT_LineEditor::redraw(std::size_t above) {
    erase(above);
    engine->resize();
    engine->draw();
    flush();
}

/// Leaves the cursor at the start of what it erases.
void KIT_LineEditor::erase(std::size_t above) {
    above = std::min(above, static_cast<std::size_t>(rowCount - 1));
    output += '\r';
    if (above > 0)
        output += "\x1b[" + std::to_string(above) + 'A';
    output += "\x1b[J";
}

KIT_EditPosition KIT_LineEditor::getCursorPosition() const {
    KIT_EditPosition position(columnCount);
    position.advance(prompt);
    position.advance(engine->getText().substr(0, engine->getCursor()));
    return position;
}

/// Goes behind the drawing, to the next row.
void KIT_LineEditor::leaveRow() {
    engine->run(EDL_Command::LineEnd);
    flush();
    KIT_EditPosition position(columnCount);
    position.advance(prompt);
    position.advance(engine->getText());
    const bool isInNextRow = position.row > 0 && position.column == 0;
    output += isInNextRow ? "\r" : "\n";
}

void KIT_LineEditor::flush() {
    std::string drawing = engine->takeOutput();
    places.translate(drawing);
    output += drawing;
    OSLwriteAll(STDOUT_FILENO, output.data(), output.size());
    output.clear();
}

void KIT_LineEditor::refreshPrompt() {
    const char *const text = promptCallback();
    std::string shown = text ? text : "";
    if (!shown.empty() && shown.find('\x1b') == shown.npos && OSL_Terminal::hasColour())
        shown = "\x1b[1;32m" + shown + "\x1b[0m";
    prompt = places.encodeStyled(shown);
    engine->setPrompt(prompt);
}

std::string KIT_LineEditor::getTextBeforeCursor() const {
    return places.decode(engine->getText().substr(0, engine->getCursor()));
}

void KIT_LineEditor::setLine(std::string_view text) {
    setLine(text, text.size());
}

/// The cursor is given in bytes of the text.
void KIT_LineEditor::setLine(std::string_view text, std::size_t cursor) {
    engine->replace(0, engine->getText().size(), places.encode(text),
                    places.encode(text.substr(0, cursor)).size());
}
