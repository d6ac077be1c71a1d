// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/edit/KIT_ClusterCodec.h>

#include <algorithm>

#include <orvlang/platform/kit/KIT_Utf8.h>

namespace {

// Ranges of rarely used characters of one width each: a plane for private use, rare ideographs.
constexpr char32_t theNarrowStart = 0xF0000, theNarrowEnd = 0xFFFFE;
constexpr char32_t theWideStart = 0x20000, theWideEnd = 0x2A6DF;
constexpr char32_t theReplacement = 0xFFFD;
constexpr std::string_view theReplacementText = "\xEF\xBF\xBD";

constexpr bool isInRange(char32_t code) {
    return (code >= theNarrowStart && code < theNarrowEnd) || (code >= theWideStart && code < theWideEnd);
}

constexpr std::string_view thePlainStyle = "\x1b[0m";

/// Returns the length of the escape sequence at the start of a text; 0 when there is none.
std::size_t escapeLength(std::string_view text) {
    if (text.size() < 2 || text[0] != '\x1b')
        return 0;
    if (text[1] != '[')
        return 2;
    const auto end = std::find_if(text.begin() + 2, text.end(), [](char c) { return c >= '@' && c <= '~'; });
    return std::min(static_cast<std::size_t>(end - text.begin()) + 1, text.size());
}

void addToStyle(std::string &style, std::string_view escape) {
    if (escape == thePlainStyle || escape == "\x1b[m")
        style.clear();
    else if (escape.ends_with('m'))
        style += escape;
}

}   // namespace

std::wstring KIT_ClusterCodec::encode(std::string_view text) {
    std::wstring encoded;
    while (!text.empty()) {
        const KIT_Character first = KITfirstCharacter(text);
        const std::size_t length = KITfirstClusterLength(text);
        const bool isSimple = length == first.length && KIThasColumns(first.code) && !isInRange(first.code);
        encoded += isSimple ? static_cast<wchar_t>(first.code) : findOrAddStandIn(text.substr(0, length), {});
        text.remove_prefix(length);
    }
    return encoded;
}

std::wstring KIT_ClusterCodec::encodeStyled(std::string_view text) {
    std::wstring encoded;
    for (std::string style; !text.empty();) {
        std::size_t length = escapeLength(text);
        if (length > 0) {
            addToStyle(style, text.substr(0, length));
        } else {
            length = KITfirstClusterLength(text);
            const std::string_view cluster = text.substr(0, length);
            encoded += style.empty() ? encode(cluster) : std::wstring(1, findOrAddStandIn(cluster, style));
        }
        text.remove_prefix(length);
    }
    return encoded;
}

/// The text is that of one cluster.
wchar_t KIT_ClusterCodec::findOrAddStandIn(std::string_view text, const std::string &style) {
    const auto [entry, isNew] = codes.try_emplace(style + std::string(text), L'\0');
    if (!isNew)
        return entry->second;
    const KIT_Character first = KITfirstCharacter(text);
    const int columns = KITcolumnsOf(first.code);
    std::vector<StandIn> &table = columns == 2 ? wide : narrow;
    const char32_t start = columns == 2 ? theWideStart : theNarrowStart;
    const char32_t end = columns == 2 ? theWideEnd : theNarrowEnd;
    if (table.size() == end - start)
        return entry->second = static_cast<wchar_t>(theReplacement);
    std::string shown(KITisUnshowable(first.code) ? theReplacementText : text);
    if (columns == 0)
        shown.insert(0, " ");   // a mark with nothing to combine with
    table.push_back({ std::string(text), std::move(shown), style });
    return entry->second = static_cast<wchar_t>(start + table.size() - 1);
}

const KIT_ClusterCodec::StandIn *KIT_ClusterCodec::find(char32_t code) const {
    if (!isInRange(code))
        return nullptr;
    const bool isWide = code < theNarrowStart;
    const std::vector<StandIn> &table = isWide ? wide : narrow;
    const std::size_t index = code - (isWide ? theWideStart : theNarrowStart);
    return index < table.size() ? &table[index] : nullptr;
}

std::string KIT_ClusterCodec::decode(std::wstring_view encoded) const {
    std::string text;
    for (const wchar_t character : encoded) {
        const char32_t code = static_cast<char32_t>(character);
        if (const StandIn *standIn = find(code))
            text += standIn->text;
        else
            KITappendCharacter(text, code);
    }
    return text;
}

void KIT_ClusterCodec::translate(std::string &drawing) const {
    if (codes.empty())
        return;
    std::string translated;
    std::string_view style;
    const auto change = [&](std::string_view wanted) {
        if (wanted == style)
            return;
        if (!style.empty())
            translated += thePlainStyle;
        translated += style = wanted;
    };
    for (std::string_view rest = drawing; !rest.empty();) {
        const KIT_Character first = KITfirstCharacter(rest);
        const StandIn *const standIn = find(first.code);
        change(standIn ? std::string_view(standIn->style) : std::string_view());
        translated += standIn ? std::string_view(standIn->shown) : rest.substr(0, first.length);
        rest.remove_prefix(first.length);
    }
    change({});
    drawing = std::move(translated);
}
