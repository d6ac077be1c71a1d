// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include <orvlang/platform/edit/EDL_Line.h>
#include <orvlang/platform/edit/KIT_CmdLineReader.h>
#include <orvlang/platform/edit/KIT_EditPosition.h>
#include <orvlang/platform/edit/KIT_KeyDecoder.h>
#include <orvlang/platform/edit/KIT_Places.h>
#include <orvlang/platform/edit/KIT_Recall.h>

/// Edits lines on the terminal of the process, key by key and without ever waiting for one. Between `begin` and `end` the
/// terminal is in its mode for editing, the prompt and the half-typed line stand on it, and whoever wants to write there
/// says so (`yield`): the line is taken away, and `show` draws it again below what was written.
///
/// The line itself and its drawing are libedit's. What the keys are, the recall, the search, the completion and pasted
/// text are dealt with here, since libedit waits in the middle of those or does not know them.
class KIT_LineEditor {
public:
    enum class State { Editing, Entered, Ended };

    /// Null when the terminal or the system does not allow for it. The callbacks are those of the reader; that of the
    /// prompt is not null.
    static std::unique_ptr<KIT_LineEditor> make(KIT_CmdLineReader::PromptCallback prompt,
                                                KIT_CmdLineReader::CompletionCallback completion);
    ~KIT_LineEditor();
    KIT_LineEditor(const KIT_LineEditor &) = delete;
    KIT_LineEditor &operator=(const KIT_LineEditor &) = delete;

    /// A line that another editor has begun waits until this one ends.
    void begin();
    void end();
    /// Acts on the keys that have arrived, up to the end of the line.
    State readKeys();
    /// Brings the terminal up to date; costs next to nothing when it is.
    void show();

    /// The line so far; the first one of several that were entered together.
    std::string getText() const { return places.decode(engine->getText()); }
    KIT_Recall &getRecall() { return recall; }

    /// For anything that is about to write to the terminal, read from it or hand it to a child process.
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
    void takeConfirmedLine();
    void recallAt(std::size_t place);
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

    static KIT_LineEditor *theActive;   // the innermost between its begin and its end

    const KIT_CmdLineReader::PromptCallback promptCallback;
    const KIT_CmdLineReader::CompletionCallback completionCallback;
    const std::unique_ptr<EDL_Line> engine;
    KIT_LineEditor *around = nullptr;
    std::unique_ptr<Streams> streams;   // of the outermost
    State state = State::Ended;
    bool isHidden = true;
    int columnCount = 80, rowCount = 24;   // of the terminal
    std::size_t suspectRows = 0;   // above the drawing: still there if the terminal has not wrapped it anew,
    int suspectColumn = 0;         // which it has not when its cursor was here

    KIT_KeyDecoder decoder;
    KIT_Places places;
    std::wstring prompt;
    std::wstring cut;     // by the latest key that cuts
    std::string output;   // for the terminal, besides what the engine has

    KIT_Recall recall;
    std::size_t recallPlace = 0;   // the size of the recall: the line that is being typed
    std::string typed;             // that line, while another one is looked at
    KIT_Key lastKey = KIT_Key::Unknown;
    std::string alikeStart;

    bool isSearching = false;
    std::string query;
    std::string textBefore;   // the search
    std::size_t cursorBefore = 0;
    std::size_t found = KIT_Recall::None;
};
