// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/kit/KIT_WorkBuffer.h>

#include <orvlang/platform/kit/KIT_Char.h>

#include <algorithm>
#include <cstdarg>
#include <utility>

void KIT_WorkBuffer::prepend(std::string_view source) {
    KIT_String joined;
    joined.reserve(source.size() + text.length());
    joined.append(source).append(text.view());
    text = std::move(joined);
}

int KIT_WorkBuffer::sprintf(const char *format, ...) {
    KIT_String made;   // apart, since an argument may point into the text
    std::va_list arguments;
    va_start(arguments, format);
    std::va_list again;
    va_copy(again, arguments);
    made.reserve(128);
    const int length = std::vsnprintf(made.data(), 129, format, arguments);
    const std::size_t size = static_cast<std::size_t>(std::max(length, 0));
    made.reserve(size);
    if (size > 128)
        std::vsnprintf(made.data(), size + 1, format, again);
    va_end(again);
    va_end(arguments);
    made.resizeUninitialized(size);
    text = std::move(made);
    return static_cast<int>(size);
}

bool KIT_WorkBuffer::getline(std::FILE *file) {
    text.clear();
    flockfile(file);
    int c;
    while ((c = getc_unlocked(file)) != EOF) {
        text.append(static_cast<char>(c));
        if (c == '\n')
            break;
    }
    funlockfile(file);
    return !text.isEmpty();
}

bool KIT_WorkBuffer::isBare(char c) {
    static constexpr std::string_view theMarks = "_-./,:+@%";
    return KITisAlnum(c) || theMarks.find(c) != theMarks.npos;
}

char *KIT_WorkBuffer::lock(std::size_t length) {
    text.reserve(length);
    return text.data();
}

void KIT_WorkBuffer::protectedStrcat(const char *source, bool always) {
    const std::string_view word = orEmpty(source);
    if (!always && !word.empty() && std::all_of(word.begin(), word.end(), isBare)) {
        text.append(word);
        return;
    }
    // The search for the end of a quote treats a backslash right before a quote as its escape, and does not see
    // that the backslash is escaped itself. So there may be none before the closing quote.
    const std::size_t bodyEnd = word.find_last_not_of('\\') + 1;
    KIT_String quoted;   // apart, since source may point into the text
    quoted.append('\'');
    for (const char c : word.substr(0, bodyEnd)) {
        if (c == '\'' || c == '\\')
            quoted.append('\\');
        if (c == '\n')
            quoted.append("\\n");
        else
            quoted.append(c);
    }
    quoted.append('\'');
    for (std::size_t i = bodyEnd; i < word.size(); ++i)
        quoted.append("\\\\");
    text.append(quoted);
}
