// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/kit/KIT_Export.h>

#include <cstdint>
#include <memory>
#include <vector>

class KIT_WorkBuffer;

/// The words of one command, with its options taken out of them.
///
/// The texts are borrowed from the caller that set them. A copy of a KIT_Args has texts of its own.
class CMD_API KIT_Args {
public:
    KIT_Args() = default;
    KIT_Args(const KIT_Args &other) { copyFrom(other); }
    KIT_Args &operator=(const KIT_Args &other);
    virtual ~KIT_Args() = default;

    /// Returns the number of words, with the command's own at index 0. Negative after stripOptions has found an
    /// option that it does not know or that lacks a value.
    int argc() const { return count; }
    /// Returns null outside the count.
    const char *argv(int i) const { return i >= 0 && i < count ? table[i] : nullptr; }
    /// Returns whether the option is there.
    bool found(char option) const {
        const auto code = static_cast<unsigned char>(option);
        return code < 128 && (foundBits[code / 64] >> (code % 64) & 1) != 0;
    }
    /// Returns a value of the option, slots counted from 0 in the order of the line; null for a slot without a value.
    /// A value may be an empty text.
    const char *argp(char option, int slot = 0) const;

    /// Borrows text as word i; the count becomes i + 1 at least, and words in between are null.
    void setArgument(int i, const char *text) {
        if (i != count || i >= tableCapacity)
            return setArgumentFar(i, text);
        table[count++] = text;
    }
    /// Inserts a word before all others; borrows it.
    void insertFront(const char *text);
    /// Removes the options after the word at index 0, up to the first word that is not one.
    ///
    /// options holds a letter or digit for each option, followed by a `:` for each value that it takes; null
    /// counts as empty. An option word is a - and a letter, or a digit that options holds; letters may be
    /// bundled. The first value is the rest of the word or, if that is empty, the next word; further ones are
    /// the next words. -- ends the options and is dropped. A repeated option adds its values to the earlier
    /// ones; four values are kept for each option. On an unknown option or a missing value the count becomes
    /// negative.
    void stripOptions(const char *options);
    /// Replaces the text of buffer by the words from index first on, with a blank between each two. With protect each
    /// is quoted so that it is read back as one word.
    void fillCommandLine(KIT_WorkBuffer &buffer, int first, bool protect) const;
    /// Removes all words and options.
    void clear();

private:
    struct OptionValue {
        char option;
        const char *text;   // borrowed
    };

    void setArgumentFar(int i, const char *text);
    bool takeOptionWord(const char *options, const char *word, int &next);
    void addValue(char option, const char *text);
    void growTable();
    void copyFrom(const KIT_Args &other);

    static constexpr int theInlineRoom = 12;   // enough for most commands, so that they need no memory

    int count = 0;
    int tableCapacity = theInlineRoom;
    const char **table = inlineTable;   // inlineTable or largeTable
    std::uint64_t foundBits[2] = { 0, 0 };
    std::vector<OptionValue> optionValues;   // in the order of the line
    std::unique_ptr<const char *[]> largeTable;
    std::unique_ptr<char[]> ownTexts;   // what a copy points into
    const char *inlineTable[theInlineRoom];
};
