// SPDX-License-Identifier: Apache-2.0
#include "Screen.h"

#include <algorithm>
#include <cctype>

namespace {

size_t lengthOf(char first) {
    const auto byte = static_cast<unsigned char>(first);
    return byte < 0xC0 ? 1 : byte < 0xE0 ? 2 : byte < 0xF0 ? 3 : 4;
}

unsigned codeOf(std::string_view character) {
    unsigned code = static_cast<unsigned char>(character[0]);
    if (character.size() > 1)
        code &= 0x7Fu >> character.size();
    for (const char byte : character.substr(1))
        code = code << 6 | (static_cast<unsigned char>(byte) & 0x3F);
    return code;
}

int columnsOf(unsigned code) {
    if ((code >= 0x300 && code < 0x370) || code == 0x200D)
        return 0;
    return (code >= 0x1100 && code < 0x1160) || (code >= 0x2E80 && code < 0xA4D0) || code >= 0x1F300 ? 2 : 1;
}

}   // namespace

void Screen::resize(int newColumnCount, int newRowCount) {
    columnCount = newColumnCount;
    rows.resize(static_cast<size_t>(newRowCount));
    for (Row &line : rows)
        line.resize(static_cast<size_t>(columnCount), " ");
    row = std::min(row, newRowCount - 1);
    column = std::min(column, columnCount - 1);
}

void Screen::write(std::string_view bytes) {
    const std::string text = unfinished + std::string(bytes);
    unfinished.clear();
    for (size_t i = 0; i < text.size();) {
        const std::string_view rest = std::string_view(text).substr(i);
        const size_t length = rest[0] == '\x1b' ? writeSequence(rest) : lengthOf(rest[0]);
        if (length == 0 || length > rest.size()) {
            unfinished = rest;
            return;
        }
        i += length;
        if (rest[0] == '\r')
            column = 0, wraps = false;
        else if (rest[0] == '\n')
            goDown();
        else if (rest[0] == '\b')
            column = std::max(0, column - 1), wraps = false;
        else if (static_cast<unsigned char>(rest[0]) >= ' ')
            put(rest.substr(0, length), columnsOf(codeOf(rest.substr(0, length))));
    }
}

/// Gives the length of an escape sequence, 0 when it is not complete.
size_t Screen::writeSequence(std::string_view text) {
    if (text.size() < 2)
        return 0;
    if (text[1] != '[')
        return text[1] == '(' ? 3 : 2;
    const auto end = std::find_if(text.begin() + 2, text.end(), [](char c) { return c >= '@' && c <= '~'; });
    if (end == text.end())
        return 0;
    control(*end,
            std::isdigit(static_cast<unsigned char>(text[2])) ? std::stoi(std::string(text.substr(2))) : 0);
    return static_cast<size_t>(end - text.begin()) + 1;
}

void Screen::control(char final, int number) {
    const int count = std::max(1, number);
    const int lastRow = static_cast<int>(rows.size()) - 1;
    Row &line = rows[static_cast<size_t>(row)];
    const auto here = line.begin() + column;
    switch (final) {
    case 'A':
        row = std::max(0, row - count);
        break;
    case 'B':
        row = std::min(lastRow, row + count);
        break;
    case 'C':
        column = std::min(columnCount - 1, column + count);
        break;
    case 'D':
        column = std::max(0, column - count);
        break;
    case 'G':
        column = count - 1;
        break;
    case 'H':
        row = column = 0;
        break;
    case 'J':
        if (number == 0)
            std::fill(here, line.end(), " ");
        for (size_t i = number == 0 ? static_cast<size_t>(row) + 1 : 0; i < rows.size(); ++i)
            std::fill(rows[i].begin(), rows[i].end(), " ");
        break;
    case 'K':
        std::fill(here, line.end(), " ");
        break;
    case 'P':
        line.erase(here, here + std::min(count, columnCount - column));
        line.resize(static_cast<size_t>(columnCount), " ");
        break;
    case '@':
        line.insert(here, static_cast<size_t>(count), " ");
        line.resize(static_cast<size_t>(columnCount));
        break;
    case 'n':
        answer = "\x1b[" + std::to_string(row + 1) + ";" + std::to_string(column + 1) + "R";
        return;
    default:
        return;   // colours and modes
    }
    wraps = false;
}

void Screen::put(std::string_view character, int columns) {
    if (columns == 0) {
        int place = wraps ? column : column - 1;
        while (place > 0 && rows[static_cast<size_t>(row)][static_cast<size_t>(place)].empty())
            --place;
        rows[static_cast<size_t>(row)][static_cast<size_t>(place)] += character;
        return;
    }
    if (wraps || column + columns > columnCount) {
        column = 0;
        goDown();
    }
    Row &line = rows[static_cast<size_t>(row)];
    for (int i = 0; i < columns; ++i)
        breakWide(line, static_cast<size_t>(column + i));
    line[static_cast<size_t>(column)] = character;
    if (columns == 2)
        line[static_cast<size_t>(column) + 1].clear();
    column += columns;
    wraps = column >= columnCount;
    column = std::min(column, columnCount - 1);
}

/// Whichever half of a wide character a place is, the other half goes with it.
void Screen::breakWide(Row &line, size_t place) {
    if (line[place].empty() && place > 0)
        line[place] = line[place - 1] = " ";
    if (place + 1 < line.size() && line[place + 1].empty())
        line[place + 1] = " ";
}

void Screen::goDown() {
    wraps = false;
    if (row + 1 < static_cast<int>(rows.size())) {
        ++row;
        return;
    }
    rows.erase(rows.begin());
    rows.emplace_back(static_cast<size_t>(columnCount), " ");
}

std::string Screen::lastRows(int count) const {
    std::string text;
    for (int i = std::max(0, row - count + 1); i <= row; ++i)
        text += textOf(rows[static_cast<size_t>(i)], i == row ? column : -1) + (i < row ? "\n" : "");
    return text;
}

std::string Screen::textOf(const Row &line, int markAt) const {
    std::string text;
    size_t end = 0;
    for (int i = 0; i < columnCount; ++i) {
        if (i == markAt) {
            text += '|';
            end = text.size();
        }
        text += line[static_cast<size_t>(i)];
        if (line[static_cast<size_t>(i)] != " ")
            end = text.size();
    }
    return text.substr(0, end);
}
