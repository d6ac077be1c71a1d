// SPDX-License-Identifier: Apache-2.0
//
// Functions of the words of a text, which are separated by runs of white space or of other separators. Words count
// from 0, and a negative index counts from the end.
#include <orvlang/platform/fml/FML_Call.h>
#include <orvlang/platform/fml/FML_Library.h>
#include <orvlang/platform/kit/KIT_Char.h>
#include <orvlang/platform/kit/KIT_String.h>

#include <algorithm>
#include <unordered_set>
#include <vector>

namespace {

using Words = std::vector<std::string_view>;

/// Returns the words of argument 0, by the separators in that argument if there is one.
Words splitWords(const FML_Call &call, std::size_t separatorArgument) {
    const std::string_view text = call.text(0);
    const std::string_view separators = call.textOr(separatorArgument, KITspaces);
    Words words;
    for (std::size_t at = text.find_first_not_of(separators); at != text.npos;) {
        const std::size_t end = std::min(text.find_first_of(separators, at), text.size());
        words.push_back(text.substr(at, end - at));
        at = text.find_first_not_of(separators, end);
    }
    return words;
}

/// Sets the result to the words as one text, with the first of the separators between them.
void giveWords(FML_Call &call, std::size_t separatorArgument, const Words &words) {
    const std::string_view separator = call.textOr(separatorArgument, " ").substr(0, 1);
    std::string joined;
    for (const std::string_view word : words) {
        if (word.data() != words.front().data())
            joined += separator;
        joined += word;
    }
    call.giveText(joined);
}

void word(FML_Call &call) {
    const Words words = splitWords(call, 2);
    const long index = call.place(1, words.size());
    call.giveShared(index >= 0 && index < static_cast<long>(words.size())
                        ? words[static_cast<std::size_t>(index)]
                        : std::string_view(""));
}

void wordFind(FML_Call &call) {
    const Words words = splitWords(call, 2);
    const auto found = std::find(words.begin(), words.end(), call.text(1));
    call.give(found == words.end() ? -1.0 : static_cast<double>(found - words.begin()));
}

void wordRange(FML_Call &call) {
    const Words words = splitWords(call, 3);
    const long count = static_cast<long>(words.size());
    const long start = std::clamp(call.place(1, words.size()), 0L, count);
    const long taken = std::clamp(call.integer(2), 0L, count - start);
    giveWords(call, 3, Words(words.begin() + start, words.begin() + start + taken));
}

void wordSort(FML_Call &call) {
    const Words words = splitWords(call, 1);
    std::vector<std::string> sorted(words.begin(), words.end());   // what is compared ends with a NUL
    std::sort(sorted.begin(), sorted.end(), [](const std::string &a, const std::string &b) {
        return KIT_String::compareNumberedString(a.c_str(), b.c_str(), true) < 0;
    });
    giveWords(call, 1, Words(sorted.begin(), sorted.end()));
}

void wordUnique(FML_Call &call) {
    Words kept;
    std::unordered_set<std::string_view> seen;
    for (const std::string_view word : splitWords(call, 1))
        if (seen.insert(word).second)
            kept.push_back(word);
    giveWords(call, 1, kept);
}

constexpr FML_LibraryFunction theRows[] = {
    { "word", "tn|t", word, "word(text, index, [separators])",
      "One word of a text; empty when there is none at that index.\n"
      "Words count from 0, negative ones from the end." },
    { "wordcount", "t|t", [](FML_Call &call) { call.give(splitWords(call, 1).size()); },
      "wordcount(text, [separators])", "How many words a text has." },
    { "wordfind", "tt|t", wordFind, "wordfind(text, word, [separators])",
      "The index of the first such word in a text; -1 when it is not there." },
    { "wordrange", "tnn|t", wordRange, "wordrange(text, start, count, [separators])",
      "Some words of a text, from start on." },
    { "wordsort", "t|t", wordSort, "wordsort(text, [separators])",
      "The words of a text in order.\n"
      "Digits in them count by their value, so that a2 is before a10." },
    { "wordunique", "t|t", wordUnique, "wordunique(text, [separators])",
      "The words of a text, each only once, at its first position." },
};

}   // namespace

constinit const FML_LibraryRows theWordFunctions = theRows;
