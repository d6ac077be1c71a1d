// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/kit/KIT_Places.h>

#include <orvlang/platform/kit/KIT_Utf8.h>

namespace {

// Ranges of characters that are seldom used and all have that width: a plane for private use, rare ideographs.
constexpr char32_t theNarrowStart = 0xF0000, theNarrowEnd = 0xFFFFE;
constexpr char32_t theWideStart = 0x20000, theWideEnd = 0x2A6DF;
constexpr char32_t theReplacement = 0xFFFD;
constexpr std::string_view theReplacementText = "\xEF\xBF\xBD";

constexpr bool isInRange(char32_t code) {
    return (code >= theNarrowStart && code < theNarrowEnd) || (code >= theWideStart && code < theWideEnd);
}

}   // namespace

std::wstring KIT_Places::encode(std::string_view text) {
    std::wstring places;
    while (!text.empty()) {
        const KIT_Character first = KITfirstCharacter(text);
        const std::size_t length = KITfirstPlace(text);
        const bool isSimple = length == first.length && KIThasPlace(first.code) && !isInRange(first.code);
        places += isSimple ? static_cast<wchar_t>(first.code) : standFor(text.substr(0, length));
        text.remove_prefix(length);
    }
    return places;
}

/// The text of one place.
wchar_t KIT_Places::standFor(std::string_view text) {
    const auto [entry, isNew] = known.try_emplace(std::string(text), L'\0');
    if (!isNew)
        return entry->second;
    const KIT_Character first = KITfirstCharacter(text);
    const int columns = KITcolumnsOf(first.code);
    std::vector<StandIn> &table = columns == 2 ? wide : narrow;
    const char32_t start = columns == 2 ? theWideStart : theNarrowStart;
    const char32_t end = columns == 2 ? theWideEnd : theNarrowEnd;
    if (table.size() == end - start)
        return entry->second = static_cast<wchar_t>(theReplacement);
    StandIn added = { entry->first, entry->first };
    if (columns == 0)
        added.shown.insert(0, " ");   // a mark with nothing to combine with
    else if (KITisUnshowable(first.code))
        added.shown = theReplacementText;
    table.push_back(std::move(added));
    return entry->second = static_cast<wchar_t>(start + table.size() - 1);
}

const KIT_Places::StandIn *KIT_Places::find(char32_t code) const {
    if (!isInRange(code))
        return nullptr;
    const bool isWide = code < theNarrowStart;
    const std::vector<StandIn> &table = isWide ? wide : narrow;
    const std::size_t index = code - (isWide ? theWideStart : theNarrowStart);
    return index < table.size() ? &table[index] : nullptr;
}

std::string KIT_Places::decode(std::wstring_view places) const {
    std::string text;
    for (const wchar_t place : places) {
        const char32_t code = static_cast<char32_t>(place);
        if (const StandIn *standIn = find(code))
            text += standIn->text;
        else
            KITappendCharacter(text, code);
    }
    return text;
}

void KIT_Places::translate(std::string &drawing) const {
    if (known.empty())
        return;
    std::string translated;
    for (std::string_view rest = drawing; !rest.empty();) {
        const KIT_Character first = KITfirstCharacter(rest);
        if (const StandIn *standIn = find(first.code))
            translated += standIn->shown;
        else
            translated += rest.substr(0, first.length);
        rest.remove_prefix(first.length);
    }
    drawing = std::move(translated);
}
