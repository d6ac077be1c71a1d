// SPDX-License-Identifier: Apache-2.0
// Ctrl-R starts a search: typed text is looked up in the past lines. A key that does not belong to the search ends it
// and then has its usual effect.
#include <orvlang/platform/edit/KIT_LineEditor.h>

void KIT_LineEditor::beginSearch() {
    isSearching = true;
    textBefore = getText();
    cursorBefore = getTextBeforeCursor().size();
    query.clear();
    found = KIT_Recall::None;
    showSearch();
}

/// Returns false when the key is meant for the line.
bool KIT_LineEditor::actInSearch(KIT_Key key) {
    switch (key) {
    case KIT_Key::Text:
        query += decoder.getText();
        search(KIT_Key::SearchOlder, false);
        return true;
    case KIT_Key::DeleteLeft: {
        std::wstring shorter = codec.encode(query);
        if (!shorter.empty())
            shorter.pop_back();
        query = codec.decode(shorter);
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

/// Searches from the line that was found last (or after it, if isFurther) or else from the newest one. The line stays
/// when no further one is found.
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
    prompt = codec.encode((isMissing ? "(no match)`" : "(search)`") + query + "': ");
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
