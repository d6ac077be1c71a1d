// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include <orvlang/platform/edit/EDL_Line.h>
#include <orvlang/platform/edit/KIT_ClusterCodec.h>
#include <orvlang/platform/edit/KIT_CmdLineReader.h>
#include <orvlang/platform/edit/KIT_EditPosition.h>
#include <orvlang/platform/edit/KIT_KeyDecoder.h>
#include <orvlang/platform/edit/KIT_Recall.h>

/// Edits lines on the terminal of the process, key by key, and never waits for a key. Between `begin` and `end` the
/// terminal is in its mode for editing and shows the prompt and the half-typed line. `yield`, which comes before any
/// other output, removes the line, and `show` draws it again below that output.
///
/// libedit keeps and draws the line. The decoding of keys, the recall, the search, the completion and pasted text are
/// implemented here, since libedit would wait during those or does not have them.
class KIT_LineEditor {
public:
    enum class State { Editing, Entered, Ended };

    /// Returns null when the terminal or the system does not support editing. The callbacks are those of the reader;
    /// that of the prompt must not be null.
    static std::unique_ptr<KIT_LineEditor> make(KIT_CmdLineReader::PromptCallback prompt,
                                                KIT_CmdLineReader::CompletionCallback completion);
    ~KIT_LineEditor();
    KIT_LineEditor(const KIT_LineEditor &) = delete;
    KIT_LineEditor &operator=(const KIT_LineEditor &) = delete;

    /// Starts a line. The half-typed line of another editor waits until this one ends.
    void begin();
    void end();
    /// Handles the keys that have arrived, up to the end of the line.
    State readKeys();
    /// Updates the terminal; cheap when nothing has changed.
    void show();

    /// Returns the line so far; of several lines that were entered together the first one.
    std::string getText() const { return codec.decode(engine->getText()); }
    KIT_Recall &getRecall() { return recall; }

    /// Must be called before anything else writes to the terminal, reads from it or passes it to a child process.
    static void yield() {
        if (theActive && !theActive->isHidden)
            theActive->hide();
    }

private:
    class Streams;

    KIT_LineEditor(KIT_CmdLineReader::PromptCallback prompt, KIT_CmdLineReader::CompletionCallback completion,
                   std::unique_ptr<EDL_Line> engine);

    void hide();
    void drawAnew();
    void redrawResized();
    void eraseRest();
    void redraw(std::size_t above);
    void erase(std::size_t above);
    KIT_EditPosition getCursorPosition() const;
    void leaveRow();
    void flush();
    void refreshPrompt();

    std::string getTextBeforeCursor() const;
    void setLine(std::string_view text);
    void setLine(std::string_view text, std::size_t cursor);

    void act(KIT_Key key);
    bool runCommand(KIT_Key key);
    void runCut(EDL_Command command);
    void changeLine(KIT_Key key);
    bool fitsScreen() const;
    void typeText();
    void paste();
    void enter();
    void enterConfirmedLine();
    void recallAt(std::size_t index);
    void recallAlike(KIT_Key key);
    void insertLastWord();
    void insert(std::wstring_view text);
    void complete();
    void listCandidates(const KIT_StringArray &candidates);
    void beginSearch();
    bool actInSearch(KIT_Key key);
    void search(KIT_Key direction, bool isFurther);
    void showSearch();
    void endSearch(bool accept);

    static KIT_LineEditor *theActive;   // the innermost one between its begin and end

    const KIT_CmdLineReader::PromptCallback promptCallback;
    const KIT_CmdLineReader::CompletionCallback completionCallback;
    const std::unique_ptr<EDL_Line> engine;
    KIT_LineEditor *around = nullptr;
    std::unique_ptr<Streams> streams;   // of the outermost editor
    State state = State::Ended;
    bool isHidden = true;
    int columnCount = 80, rowCount = 24;   // of the terminal
    // Rows above the drawing that are left over if the terminal did not wrap it again. It did not if its cursor was in
    // that column.
    std::size_t suspectRows = 0;
    int suspectColumn = 0;

    KIT_KeyDecoder decoder;
    KIT_ClusterCodec codec;
    std::wstring prompt;
    std::wstring cut;     // what the latest key that cuts removed
    std::string output;   // for the terminal, before the output of the engine

    KIT_Recall recall;
    std::size_t recallIndex = 0;   // the size of the recall for the line that is being typed
    std::string typed;             // that line, while a past line is shown
    KIT_Key lastKey = KIT_Key::Unknown;
    std::string alikeStart;

    bool isSearching = false;
    std::string query;
    std::string textBefore;   // the search
    std::size_t cursorBefore = 0;
    std::size_t found = KIT_Recall::None;
};
