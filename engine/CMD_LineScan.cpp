// SPDX-License-Identifier: Apache-2.0
#include <orvlang/engine/CMD_LineScan.h>

#include <array>

#include <orvlang/platform/kit/KIT_Char.h>

namespace {

enum ByteClass : unsigned char { plainByte, quoteByte, commentByte, separatorByte, operatorByte };

constexpr std::array<ByteClass, 256> makeByteClasses() {
    std::array<ByteClass, 256> classes{};
    for (const char c : { '"', '\'', '`' })
        classes[static_cast<unsigned char>(c)] = quoteByte;
    for (const char c : { '!', '(', ')', '=', '|', '<', '>' })
        classes[static_cast<unsigned char>(c)] = operatorByte;
    classes['#'] = commentByte;
    classes[';'] = separatorByte;
    return classes;
}
constexpr auto theByteClasses = makeByteClasses();

/// The first place from the given one on that means something; the length when there is none.
size_t nextSpecialByte(std::string_view line, size_t place) {
    const char *const end = line.data() + line.size();
    const char *byte = line.data() + place;
    while (byte != end && theByteClasses[static_cast<unsigned char>(*byte)] == plainByte)
        ++byte;
    return static_cast<size_t>(byte - line.data());
}

/// The length of the operator at the place; 0 when the byte stays as it is.
size_t operatorLength(std::string_view line, size_t place) {
    const char c = line[place];
    const char next = place + 1 < line.size() ? line[place + 1] : '\0';
    switch (c) {
    case '!':
        return next == '=' ? 2 : 0;
    case '=':
    case '|':
        return next == c ? 2 : 1;
    case '<':
        return next == '<' || next == '>' || next == '=' ? 2 : 1;
    case '>':
        if (next != '>' && next != '=' && next != '&')
            return 1;
        return place + 2 < line.size() && line[place + 2] == '&' ? 3 : 2;
    default:
        return 1;   // a parenthesis
    }
}

/// Whether blanks stand around the bytes already. A blank behind a backslash is part of a word.
bool standsApart(std::string_view line, size_t place, size_t length) {
    const size_t behind = place + length;
    return place > 1 && line[place - 1] == ' ' && line[place - 2] != '\\' && behind < line.size() &&
           line[behind] == ' ';
}

}   // namespace

CMD_LineScan CMDscanLine(std::string_view line, std::string &buffer) {
    CMD_LineScan scan;
    char openQuote = '\0';
    size_t copied = 0;   // everything before this place is in the buffer, once an operator has been set apart
    size_t i = nextSpecialByte(line, 0);
    for (; i < line.size(); i = nextSpecialByte(line, i + 1)) {
        const char c = line[i];
        // The plain byte before: a backslash that is itself escaped still counts.
        if (i > 0 && line[i - 1] == '\\')
            continue;
        const ByteClass byteClass = theByteClasses[static_cast<unsigned char>(c)];
        if (byteClass == quoteByte) {
            if (openQuote == '\0')
                openQuote = c;
            else if (openQuote == c)
                openQuote = '\0';
            continue;
        }
        if (openQuote != '\0')
            continue;
        if (byteClass == commentByte)
            break;
        if (byteClass == separatorByte) {
            scan.restOffset = i + 1;
            break;
        }
        const size_t length = operatorLength(line, i);
        if (length == 0)
            continue;
        if (!standsApart(line, i, length)) {
            if (copied == 0)
                buffer.clear();
            buffer.append(line, copied, i - copied);
            buffer += ' ';
            buffer.append(line, i, length);
            buffer += ' ';
            copied = i + length;
        }
        i += length - 1;
    }
    if (copied == 0) {
        scan.statement = line.substr(0, i);
    } else {
        buffer.append(line, copied, i - copied);
        scan.statement = buffer;
    }
    return scan;
}

size_t CMDskipWhiteSpace(std::string_view line) {
    size_t start = 0;
    while (start < line.size() && KITisSpace(line[start]))
        ++start;
    return start;
}

CMD_FirstWord CMDfirstWord(std::string_view line) {
    line.remove_prefix(CMDskipWhiteSpace(line));
    size_t end = 0;
    while (end < line.size() && !KITisSpace(line[end]))
        ++end;
    return { line.substr(0, end), line.substr(end) };
}
