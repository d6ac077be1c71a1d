// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/fml/FML_Call.h>

#include <algorithm>

long FML_Call::integer(std::size_t i) const {
    // All whole numbers up to here are exact in a double, and no place in a text is farther away.
    constexpr double theFarthest = 9007199254740992.0;
    return static_cast<long>(std::clamp(number(i), -theFarthest, theFarthest));
}

long FML_Call::place(std::size_t i, std::size_t count) const {
    return integer(i) < 0 ? static_cast<long>(count) + integer(i) : integer(i);
}

bool FML_Call::extend(std::string &text, std::string_view piece) {
    if (!evaluation.allowText(text.size() + piece.size()))
        return false;
    text += piece;
    return true;
}

char *FML_Call::giveRoom(std::size_t size) {
    char *room = evaluation.allocateText(size);
    giveShared(room ? std::string_view(room, size) : std::string_view());
    return room;
}

void FML_Call::giveText(std::string_view text) {
    if (char *room = giveRoom(text.size()))
        std::copy(text.begin(), text.end(), room);
}

fml_Vector &FML_Call::giveVector() {
    fml_Vector &vector = evaluation.newVector();
    give(FML_Value::ofVector(&vector));
    return vector;
}
