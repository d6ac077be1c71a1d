// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/kit/KIT_Export.h>

#include <cstdint>
#include <memory>
#include <vector>

class KIT_WorkBuffer;

/// The words of one command, with its options taken out of them.
///
/// The texts are borrowed from whoever set them. A copy of a KIT_Args has texts of its own.
class CMD_API KIT_Args {
public:
    KIT_Args() = default;
    KIT_Args(const KIT_Args &other) { copyFrom(other); }
    KIT_Args &operator=(const KIT_Args &other);
    virtual ~KIT_Args() = default;

    /// The number of words, the command's own at place 0 included. Negative after stripOptions has met an
    /// option that it does not know or that lacks a value.
    int argc() const { return count; }
    /// Null outside the count.
    const char *argv(int i) const { return i >= 0 && i < count ? table[i] : nullptr; }
    /// Whether the option was given.
    bool found(char option) const {
        const auto code = static_cast<unsigned char>(option);
        return code < 128 && (foundBits[code / 64] >> (code % 64) & 1) != 0;
    }
    /// A value of the option, slots counted from 0 in the order of the line; null for a slot that has none. A
    /// value may be an empty text.
    const char *argp(char option, int slot = 0) const;

    /// Borrows text as word i; the count becomes i + 1 at least, and places in between are null.
    void setArgument(int i, const char *text) {
        if (i != count || i >= tableCapacity)
            return setArgumentFar(i, text);
        table[count++] = text;
    }
    /// Puts a word in front of all others; borrows it.
    void insertFront(const char *text);
    /// Takes the options off the words behind place 0, up to the first word that is none.
    ///
    /// options holds a letter or digit for each option, and behind it a `:` for each value that it takes; null
    /// counts as empty. An option word is a - and a letter, or a digit that options holds; letters may be
    /// bundled. The first value is the rest of the word or, if that is empty, the next word; further ones are
    /// the next words. -- ends the options and is dropped. An option given again adds its values to the earlier
    /// ones; four values are kept for each option. On an unknown option or a missing value the count becomes
    /// negative.
    void stripOptions(const char *options);
    /// Replaces the text of buffer by the words from place first on with single blanks between them, each so
    /// that it can be read back as one word when protect is set.
    void fillCommandLine(KIT_WorkBuffer &buffer, int first, bool protect) const;
    /// Back to no words and no options.
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
