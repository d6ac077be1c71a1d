// SPDX-License-Identifier: Apache-2.0
// Draws the line on the terminal and removes it. The other sources of the class implement the keys.
#include <orvlang/platform/edit/KIT_LineEditor.h>

#include <algorithm>
#include <iostream>
#include <streambuf>
#include <utility>

#include <unistd.h>

#include <orvlang/platform/edit/KIT_EditPosition.h>
#include <orvlang/platform/kit/KIT_Component.h>
#include <orvlang/platform/osl/OSL_File.h>
#include <orvlang/platform/osl/OSL_Terminal.h>

KIT_LineEditor *KIT_LineEditor::theActive = nullptr;

namespace {

constexpr const char *theQuestionForPosition = "\x1b[6n";

/// Replaces the buffer of a stream: removes the half-typed line before it passes output on.
class YieldingBuffer : public std::streambuf {
public:
    explicit YieldingBuffer(std::ostream &stream) : stream(stream), target(stream.rdbuf()) { install(this); }
    ~YieldingBuffer() override { install(target); }

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
    /// Keeps the state of the stream, errors included.
    void install(std::streambuf *buffer) {
        const std::ios::iostate state = stream.rdstate();
        stream.rdbuf(buffer);
        stream.clear(state);
    }

    std::ostream &stream;
    std::streambuf *const target;
};

/// Returns null when the component is missing, or libedit cannot work on this terminal.
std::unique_ptr<EDL_Line> makeEngine() {
    std::string failure;   // not reported: lines are read without editing then
    static EDL_MakeFunction *const make = reinterpret_cast<EDL_MakeFunction *>(
        KIT_Component::load("liborvlang_edit.so", KIT_NAME_OF(EDL_MAKE_FUNCTION), nullptr, failure));
    return std::unique_ptr<EDL_Line>(make ? make() : nullptr);
}

}   // namespace

class KIT_LineEditor::Streams {
    YieldingBuffer out{ std::cout }, err{ std::cerr }, log{ std::clog };
};

std::unique_ptr<KIT_LineEditor> KIT_LineEditor::make(KIT_CmdLineReader::PromptCallback prompt,
                                                     KIT_CmdLineReader::CompletionCallback completion) {
    if (!OSL_Terminal::canEdit())
        return nullptr;
    const OSL_Terminal::ModeKeeper keeper;   // libedit sets its own mode when it starts, and only then
    std::unique_ptr<EDL_Line> engine = makeEngine();
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
    recallIndex = recall.size();
    lastKey = KIT_Key::Unknown;
    decoder = {};   // after an interrupt, which drops input, the rest of a key or of a paste is missing
    if (!around)
        streams = std::make_unique<Streams>();
    setLine("");
    show();
}

/// A line that was not entered stays on the terminal, with the cursor after it.
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
    if (OSL_Terminal::clearStale()) {
        isHidden = true;
        decoder = {};
    }
    const bool isResized = OSL_Terminal::clearResized();
    if (isHidden)
        drawAnew();
    else if (isResized)
        redrawResized();
}

/// Starts a new row unless the cursor is at the left edge: blanks over the whole width end in the next row then.
void KIT_LineEditor::drawAnew() {
    if (!OSL_Terminal::enterEditMode())
        return;
    if (!isSearching)
        refreshPrompt();   // evaluates the text of the prompt, which may write
    std::cout.flush();
    isHidden = false;
    suspectRows = 0;
    OSL_Terminal::getSize(columnCount, rowCount);
    output.append(static_cast<std::size_t>(columnCount), ' ').append("\r\x1b[J");
    engine->extractOutput();
    engine->resize();
    engine->draw();
    flush();
}

/// Most terminals wrap their rows again. The others leave some rows above a line that now needs fewer. The position of
/// the cursor before the line is drawn again distinguishes them, once the terminal has reported it.
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

/// The cursor is `above` rows below the start of the present drawing.
void KIT_LineEditor::redraw(std::size_t above) {
    erase(above);
    engine->resize();
    engine->draw();
    flush();
}

/// Moves the cursor to the start of what it erases.
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

/// Moves the cursor to the row after the drawing.
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
    std::string drawing = engine->extractOutput();
    codec.translate(drawing);
    output += drawing;
    OSLwriteAll(STDOUT_FILENO, output.data(), output.size());
    output.clear();
}

void KIT_LineEditor::refreshPrompt() {
    const char *const text = promptCallback();
    std::string shown = text ? text : "";
    if (!shown.empty() && shown.find('\x1b') == shown.npos && OSL_Terminal::hasColour())
        shown = "\x1b[1;32m" + shown + "\x1b[0m";
    prompt = codec.encodeStyled(shown);
    engine->setPrompt(prompt);
}

std::string KIT_LineEditor::getTextBeforeCursor() const {
    return codec.decode(engine->getText().substr(0, engine->getCursor()));
}

void KIT_LineEditor::setLine(std::string_view text) {
    setLine(text, text.size());
}

/// The cursor is an offset in bytes.
void KIT_LineEditor::setLine(std::string_view text, std::size_t cursor) {
    engine->replace(0, engine->getText().size(), codec.encode(text),
                    codec.encode(text.substr(0, cursor)).size());
}
