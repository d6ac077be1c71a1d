// SPDX-License-Identifier: Apache-2.0
// Tab inserts the common start of all candidates; when that adds nothing, they are listed below the line.
#include <orvlang/platform/edit/KIT_LineEditor.h>

#include <algorithm>
#include <string>
#include <string_view>

#include <orvlang/platform/kit/KIT_StringArray.h>
#include <orvlang/platform/kit/KIT_Utf8.h>

namespace {

constexpr int theGap = 2;   // columns between two candidates

/// Returns what all candidates start with, in whole characters.
std::string_view commonStart(const KIT_StringArray &candidates) {
    std::string_view common = candidates[0];
    for (int i = 1; i < candidates.entries(); ++i) {
        const std::string_view other = candidates[i];
        const auto difference = std::mismatch(common.begin(), common.end(), other.begin(), other.end());
        common = common.substr(0, static_cast<std::size_t>(difference.first - common.begin()));
    }
    while (!common.empty() && (candidates[0][common.size()] & 0xC0) == 0x80)
        common.remove_suffix(1);
    return common;
}

int columnsOf(std::string_view text) {
    int columns = 0;
    while (!text.empty()) {
        columns += KITcolumnsOf(KITfirstCharacter(text).code);
        text.remove_prefix(KITfirstClusterLength(text));
    }
    return columns;
}

/// The name of a file may contain what must not be sent to a terminal.
std::string makeShowable(std::string_view text) {
    std::string shown;
    while (!text.empty()) {
        const KIT_Character first = KITfirstCharacter(text);
        KITappendCharacter(shown, KITisUnshowable(first.code) ? U'\uFFFD' : first.code);
        text.remove_prefix(first.length);
    }
    return shown;
}

}   // namespace

void KIT_LineEditor::complete() {
    if (!completionCallback)
        return;
    const std::string before = getTextBeforeCursor();
    KIT_StringArray candidates;
    const int start = completionCallback(getText().c_str(), static_cast<int>(before.size()), candidates);
    if (candidates.entries() == 0 || start < 0 || static_cast<std::size_t>(start) > before.size())
        return;
    const std::string_view present = std::string_view(before).substr(static_cast<std::size_t>(start));
    const std::string common(commonStart(candidates));
    if (candidates.entries() > 1 && common.size() <= present.size())
        return listCandidates(candidates);
    const std::size_t from = codec.encode(before.substr(0, before.size() - present.size())).size();
    const std::wstring text = codec.encode(common);
    engine->replace(from, engine->getCursor(), text, from + text.size());
}

/// Lists as many as the terminal has rows for, in columns, without the folders that all of them share.
void KIT_LineEditor::listCandidates(const KIT_StringArray &candidates) {
    const std::string_view common = commonStart(candidates);
    const std::size_t slash = common.rfind('/');
    const std::size_t shared = slash == common.npos ? 0 : slash + 1;
    const auto shown = [&](int i) {
        const std::string_view text = std::string_view(candidates[i]).substr(shared);
        return makeShowable(text.substr(0, text.find_last_not_of(' ') + 1));
    };
    int width = 1;
    for (int i = 0; i < candidates.entries(); ++i)
        width = std::max(width, columnsOf(shown(i)) + theGap);
    const int perRow = std::max(1, columnCount / width);
    const int most = std::max(1, rowCount - 3) * perRow;
    const int count = std::min(candidates.entries(), most);

    const std::string text = getText();
    const std::size_t cursor = getTextBeforeCursor().size();
    leaveRow();
    for (int i = 0; i < count; ++i) {
        const bool isLast = (i + 1) % perRow == 0 || i + 1 == count;
        output += shown(i);
        output += isLast ? "\n" : std::string(static_cast<std::size_t>(width - columnsOf(shown(i))), ' ');
    }
    if (count < candidates.entries())
        output += "... and " + std::to_string(candidates.entries() - count) + " more\n";
    engine->draw();
    flush();
    setLine(text, cursor);
}
