// SPDX-License-Identifier: Apache-2.0
// libedit without its reading: it gets keys that only this file makes, one by one, and so never waits. In its
// unbuffered mode it returns after each of them. What it draws goes into a buffer.
#include <cstdio>
#include <cwchar>
#include <functional>
#include <iterator>
#include <memory>
#include <utility>

#include <histedit.h>
#include <unistd.h>

#include <orvlang/platform/edit/EDL_Line.h>
#include <orvlang/platform/kit/KIT_Export.h>
#include <orvlang/platform/kit/KIT_UnicodeScope.h>

namespace {

constexpr wchar_t theApplyKey = L'\x1f';   // runs `pending`
constexpr const char *theFallbackTerminal = "xterm";

/// libedit's names of the commands, in the order of EDL_Command. Their keys are 1, 2, 3...
constexpr const char *theNames[] = {
    "ed-prev-char",        "ed-next-char",        "ed-prev-word",        "em-next-word",      "ed-move-to-beg",
    "ed-move-to-end",      "ed-delete-prev-char", "ed-delete-next-char", "vi-kill-line-prev", "ed-kill-line",
    "ed-delete-prev-word", "em-delete-next-word", "ed-transpose-chars",  "ed-clear-screen",
};
static_assert(std::size(theNames) == static_cast<std::size_t>(EDL_Command::Count));

constexpr wchar_t keyOf(EDL_Command command) {
    return static_cast<wchar_t>(command) + 1;
}

class LibeditLine : public EDL_Line {
public:
    LibeditLine();
    ~LibeditLine() override;

    bool isUsable() const { return editor != nullptr; }

    void setPrompt(std::wstring_view text) override { prompt = text; }
    void draw() override;
    void run(EDL_Command command) override { press(keyOf(command)); }
    void type(wchar_t character) override;
    void replace(std::size_t from, std::size_t to, std::wstring_view text, std::size_t cursor) override;
    void resize() override;
    std::wstring_view getText() const override;
    std::size_t getCursor() const override;
    std::string extractOutput() override;

private:
    void bindKeys();
    void press(wchar_t pressed);

    static LibeditLine &of(EditLine *editor);
    static int readKey(EditLine *editor, wchar_t *key);
    static wchar_t *getPrompt(EditLine *editor);
    static unsigned char apply(EditLine *editor, wint_t key);
    static ssize_t write(void *line, const char *bytes, std::size_t count);

    std::FILE *stream = nullptr;   // owned; appends to `output` what libedit writes
    EditLine *editor = nullptr;    // owned
    std::wstring prompt;
    std::string output;
    wchar_t key = L'\0';
    std::function<void()> pending;   // what theApplyKey runs
};

LibeditLine::LibeditLine() {
    const KIT_UnicodeScope scope;
    stream = fopencookie(this, "w", { nullptr, write, nullptr, nullptr });
    if (!stream)
        return;
    editor = el_init_fd("orvlang", stdin, stream, stream, STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO);
    if (!editor)
        return;
    // It complained about an unknown terminal, which mostly is newer than its list.
    if (!extractOutput().empty())
        el_set(editor, EL_TERMINAL, theFallbackTerminal);
    // Without these abilities of the terminal it draws again what moves. With them it would shift the rest of a row by
    // half a wide character.
    for (const char *shift : { "ic", "IC", "im", "dc", "DC", "dm" })
        el_set(editor, EL_SETTC, shift, "", nullptr);
    el_set(editor, EL_CLIENTDATA, this);
    el_set(editor, EL_EDITOR, "emacs");
    el_wset(editor, EL_GETCFN, readKey);
    el_wset(editor, EL_PROMPT, getPrompt);
    bindKeys();
    el_set(editor, EL_UNBUFFERED, 1);
    extractOutput();   // drops a first prompt
}

LibeditLine::~LibeditLine() {
    const KIT_UnicodeScope scope;
    if (editor) {
        el_set(editor, EL_EDITMODE, 0);   // so that it does not change the mode of the terminal
        el_end(editor);
    }
    if (stream)
        std::fclose(stream);
}

void LibeditLine::bindKeys() {
    char key[] = "?";
    const auto bind = [&](wchar_t code, const char *name) {
        key[0] = static_cast<char>(code);
        el_set(editor, EL_BIND, key, name, nullptr);
    };
    el_set(editor, EL_ADDFN, "apply", "", apply);
    bind(theApplyKey, "apply");
    for (std::size_t i = 0; i < std::size(theNames); ++i)
        bind(keyOf(static_cast<EDL_Command>(i)), theNames[i]);
}

LibeditLine &LibeditLine::of(EditLine *editor) {
    void *line = nullptr;
    el_get(editor, EL_CLIENTDATA, &line);
    return *static_cast<LibeditLine *>(line);
}

void LibeditLine::press(wchar_t pressed) {
    const KIT_UnicodeScope scope;
    key = pressed;
    int count;
    el_wgets(editor, &count);
}

int LibeditLine::readKey(EditLine *editor, wchar_t *key) {
    *key = of(editor).key;
    return 1;
}

wchar_t *LibeditLine::getPrompt(EditLine *editor) {
    return of(editor).prompt.data();
}

unsigned char LibeditLine::apply(EditLine *editor, wint_t) {
    of(editor).pending();
    return CC_REFRESH;
}

/// Pressed as a key, a control character would run a command, and so would one of Latin-1, which libedit treats as a
/// key with the meta key.
void LibeditLine::type(wchar_t character) {
    const bool isPlainKey = (character >= L' ' && character <= L'~') || character > L'\xFF';
    if (isPlainKey)
        press(character);
    else
        replace(getCursor(), getCursor(), { &character, 1 }, getCursor() + 1);
}

void LibeditLine::replace(std::size_t from, std::size_t to, std::wstring_view text, std::size_t cursor) {
    const std::wstring inserted(text);
    pending = [&] {
        const auto moveTo = [this](std::size_t offset) {
            el_cursor(editor, static_cast<int>(offset) - static_cast<int>(getCursor()));
        };
        moveTo(to);
        el_deletestr(editor, static_cast<int>(to - from));
        if (!inserted.empty())
            el_winsertstr(editor, inserted.c_str());
        moveTo(cursor);
    };
    press(theApplyKey);
}

void LibeditLine::draw() {
    const KIT_UnicodeScope scope;
    el_set(editor, EL_REFRESH);
}

void LibeditLine::resize() {
    const KIT_UnicodeScope scope;
    el_resize(editor);
    extractOutput();
}

std::wstring_view LibeditLine::getText() const {
    const LineInfoW *const line = el_wline(editor);
    return { line->buffer, static_cast<std::size_t>(line->lastchar - line->buffer) };
}

std::size_t LibeditLine::getCursor() const {
    const LineInfoW *const line = el_wline(editor);
    return static_cast<std::size_t>(line->cursor - line->buffer);
}

std::string LibeditLine::extractOutput() {
    std::fflush(stream);
    return std::exchange(output, {});
}

ssize_t LibeditLine::write(void *line, const char *bytes, std::size_t count) {
    static_cast<LibeditLine *>(line)->output.append(bytes, count);
    return static_cast<ssize_t>(count);
}

}   // namespace

extern "C" CMD_API EDL_Line *EDL_MAKE_FUNCTION() {
    auto line = std::make_unique<LibeditLine>();
    return line->isUsable() ? line.release() : nullptr;
}
