// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/kit/KIT_Args.h>

#include <orvlang/platform/kit/KIT_Char.h>
#include <orvlang/platform/kit/KIT_WorkBuffer.h>

#include <algorithm>
#include <cstring>

namespace {

constexpr int theValuesPerOption = 4;

/// The place of an option in an option string, null when it is not there.
const char *findOption(const char *options, char option) {
    return KITisAlnum(option) ? std::strchr(options, option) : nullptr;
}

bool isOptionWord(const char *options, const char *word) {
    if (!word || word[0] != '-')
        return false;
    if (KITisDigit(word[1]))
        return findOption(options, word[1]) != nullptr;
    return KITisAlpha(word[1]) || std::strcmp(word, "--") == 0;
}

}   // namespace

KIT_Args &KIT_Args::operator=(const KIT_Args &other) {
    if (this != &other)
        copyFrom(other);
    return *this;
}

const char *KIT_Args::argp(char option, int slot) const {
    for (const OptionValue &value : optionValues) {
        if (value.option == option && slot-- == 0)
            return value.text;
    }
    return nullptr;
}

void KIT_Args::setArgumentFar(int i, const char *text) {
    if (i < 0)
        return;
    count = std::max(count, 0);
    while (i >= tableCapacity)
        growTable();
    for (; count <= i; ++count)
        table[count] = nullptr;
    table[i] = text;
}

void KIT_Args::insertFront(const char *text) {
    setArgument(std::max(count, 0), nullptr);
    std::copy_backward(table, table + count - 1, table + count);
    table[0] = text;
}

void KIT_Args::stripOptions(const char *options) {
    if (!options)
        options = "";
    int next = 1;
    while (next < count && isOptionWord(options, table[next])) {
        const char *word = table[next++];
        if (word[1] == '-')
            break;
        if (!takeOptionWord(options, word, next)) {
            count = -1;
            return;
        }
    }
    if (next == 1)
        return;
    std::copy(table + next, table + count, table + 1);
    count -= next - 1;
}

/// Takes the options of one word, and the words from place next on that are values of theirs.
bool KIT_Args::takeOptionWord(const char *options, const char *word, int &next) {
    for (const char *letter = word + 1; *letter; ++letter) {
        const char *option = findOption(options, *letter);
        if (!option)
            return false;
        const auto code = static_cast<unsigned char>(*letter);
        foundBits[code / 64] |= std::uint64_t(1) << (code % 64);
        const std::size_t values = std::strspn(option + 1, ":");
        if (values == 0)
            continue;
        const char *rest = letter[1] ? letter + 1 : nullptr;
        for (std::size_t i = 0; i < values; ++i) {
            const char *text = i == 0 && rest ? rest : argv(next++);
            if (!text)
                return false;
            addValue(*letter, text);
        }
        return true;
    }
    return true;
}

void KIT_Args::addValue(char option, const char *text) {
    if (!argp(option, theValuesPerOption - 1))
        optionValues.push_back({ option, text });
}

void KIT_Args::fillCommandLine(KIT_WorkBuffer &buffer, int first, bool protect) const {
    buffer.clear();
    for (int i = std::max(first, 0); i < count; ++i) {
        if (i > std::max(first, 0))
            buffer.append(' ');
        if (protect)
            buffer.protectedStrcat(table[i], false);
        else
            buffer.strcat(table[i]);
    }
}

void KIT_Args::clear() {
    count = 0;
    foundBits[0] = foundBits[1] = 0;
    optionValues.clear();
}

void KIT_Args::growTable() {
    const int larger = 2 * tableCapacity;
    auto memory = std::make_unique_for_overwrite<const char *[]>(static_cast<std::size_t>(larger));
    std::copy_n(table, std::max(count, 0), memory.get());
    largeTable = std::move(memory);
    table = largeTable.get();
    tableCapacity = larger;
}

/// Takes over all that other has, with the texts in one piece of memory.
void KIT_Args::copyFrom(const KIT_Args &other) {
    const auto sizeOf = [](const char *text) { return text ? std::strlen(text) + 1 : 0; };
    std::size_t size = 0;
    for (int i = 0; i < other.count; ++i)
        size += sizeOf(other.table[i]);
    for (const OptionValue &value : other.optionValues)
        size += sizeOf(value.text);
    auto texts = std::make_unique_for_overwrite<char[]>(size);
    char *at = texts.get();
    const auto copyOf = [&](const char *text) -> const char * {
        if (!text)
            return nullptr;
        const char *start = at;
        at = std::copy_n(text, std::strlen(text) + 1, at);
        return start;
    };
    clear();
    for (int i = 0; i < other.count; ++i)
        setArgument(i, copyOf(other.table[i]));
    count = other.count;
    std::copy_n(other.foundBits, 2, foundBits);
    for (const OptionValue &value : other.optionValues)
        optionValues.push_back({ value.option, copyOf(value.text) });
    ownTexts = std::move(texts);
}
