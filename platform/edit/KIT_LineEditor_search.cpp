// SPDX-License-Identifier: Apache-2.0
// Ctrl-R: while it is on, what is typed is looked for in the past lines, and each key that is none of the search's own
// ends it and then does what it always does.
#include <orvlang/platform/edit/KIT_LineEditor.h>

void KIT_LineEditor::beginSearch() {
    isSearching = true;
    textBefore = getText();
    cursorBefore = getTextBeforeCursor().size();
    query.clear();
    found = KIT_Recall::None;
    showSearch();
}

/// False when the key is for the line.
bool KIT_LineEditor::actInSearch(KIT_Key key) {
    switch (key) {
    case KIT_Key::Text:
        query += decoder.getText();
        search(KIT_Key::SearchOlder, false);
        return true;
    case KIT_Key::DeleteLeft: {
        std::wstring shorter = places.encode(query);
        if (!shorter.empty())
            shorter.pop_back();
        query = places.decode(shorter);
        found = KIT_Recall::None;
        search(KIT_Key::SearchOlder, false);
        return true;
    }
    case KIT_Key::SearchOlder:
    case KIT_Key::SearchNewer:
        search(key, true);
        return true;
    case KIT_Key::Cancel:
        endSearch(false);
        return true;
    default:
        endSearch(true);
        return false;
    }
}

/// Looks from the line that was found last, or past it, or from the newest one. When nothing is found further on, the line
/// stays.
void KIT_LineEditor::search(KIT_Key direction, bool isFurther) {
    const bool isFromFound = found != KIT_Recall::None;
    std::size_t from = isFromFound ? found : recall.size() - 1;
    const bool isOlder = direction == KIT_Key::SearchOlder;
    if (isFurther && isFromFound)
        from += isOlder ? -1 : 1;
    if (query.empty()) {
        found = KIT_Recall::None;
    } else {
        const std::size_t next = isOlder ? recall.searchOlder(query, from) : recall.searchNewer(query, from);
        if (next != KIT_Recall::None || !isFurther)
            found = next;
    }
    showSearch();
}

void KIT_LineEditor::showSearch() {
    const bool isFound = found != KIT_Recall::None;
    const bool isMissing = !isFound && !query.empty();
    prompt = places.encode((isMissing ? "(no match)`" : "(search)`") + query + "': ");
    engine->setPrompt(prompt);
    if (isFound)
        setLine(recall[found], recall[found].find(query));
    else
        setLine(textBefore, cursorBefore);
}

void KIT_LineEditor::endSearch(bool accept) {
    isSearching = false;
    refreshPrompt();
    setLine(textBefore, cursorBefore);
    if (accept && found != KIT_Recall::None)
        recallAt(found);
    lastKey = KIT_Key::Unknown;
}
