// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/kit/KIT_Export.h>
#include <orvlang/platform/kit/KIT_String.h>

#include <cstddef>
#include <cstring>
#include <memory>
#include <string_view>

/// A list of words in one piece of memory, with the table of pointers that a main program takes. It keeps its memory when
/// it is cleared, so filling it again needs none: three words take 15 ns, in a std::vector<std::string> with such a table
/// 39 ns (bench/parts.cpp). The pointers that it returns are valid until the next change.
class CMD_API KIT_WorkArgs {
public:
    KIT_WorkArgs() = default;
    KIT_WorkArgs(const KIT_WorkArgs &) = delete;
    KIT_WorkArgs &operator=(const KIT_WorkArgs &) = delete;

    int argc() const { return count; }
    /// Returns the words and a null pointer after them, also when there are none.
    char **argv() { return table ? table.get() : none; }
    /// Returns null outside the count.
    const char *operator[](int i) const {
        return static_cast<unsigned>(i) < static_cast<unsigned>(count) ? table[i] : nullptr;
    }

    /// Returns the words from index first on, with a blank between each two; empty when there are none.
    KIT_String join(int first) const;

    void clear() {
        used = 0;
        count = 0;
        if (table)
            table[0] = nullptr;
    }
    /// Appends one word, which may be one of this list. Its readers see it up to its first NUL.
    void append(std::string_view word) {
        if (capacity - used <= word.size() || count >= tableCapacity || word.empty())
            return appendSlowly(word);
        char *start = buffer.get() + used;
        std::memcpy(start, word.data(), word.size());
        start[word.size()] = 0;
        used += word.size() + 1;
        table[count] = start;
        table[++count] = nullptr;
    }

    // A word made of pieces: beginWord, any number of appendPiece, endWord; nothing else in between.
    void beginWord() { wordStart = used; }
    void appendPiece(std::string_view piece) {
        if (capacity - used < piece.size())
            return appendAndGrow(piece);
        if (!piece.empty())
            std::memcpy(buffer.get() + used, piece.data(), piece.size());
        used += piece.size();
    }
    void endWord() {
        appendPiece(std::string_view("", 1));
        if (count >= tableCapacity)
            growTable();
        table[count] = buffer.get() + wordStart;
        table[++count] = nullptr;
    }
    /// Returns the word that is being made, so far.
    std::string_view pieces() const { return { buffer.get() + wordStart, used - wordStart }; }
    /// Drops the word that is being made; instead of endWord.
    void cancelWord() { used = wordStart; }

    /// Returns a text for the caller that fills this list: values of lookups are stored there, so that it keeps their
    /// memory.
    KIT_String &valueRoom() { return value; }

private:
    void appendSlowly(std::string_view word);
    void appendAndGrow(std::string_view piece);
    void growTable();

    std::unique_ptr<char[]> buffer;   // the words, each with its NUL
    std::size_t used = 0;
    std::size_t capacity = 0;
    std::size_t wordStart = 0;
    std::unique_ptr<char *[]> table;   // count pointers into buffer, then a null pointer
    int count = 0;
    int tableCapacity = 0;         // without the null pointer
    char *none[1] = { nullptr };   // the table before there is one
    KIT_String value;
};
