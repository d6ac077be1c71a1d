// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/fml/fml_Vector.h>

#include <orvlang/platform/kit/KIT_Char.h>
#include <orvlang/platform/kit/KIT_Number.h>

#include <string_view>

namespace {

std::string_view trimBlanks(std::string_view text) {
    const std::size_t first = text.find_first_not_of(KITspaces);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(KITspaces) - first + 1);
}

}   // namespace

int fml_Vector::scan(std::string_view text) {
    std::string_view rest = trimBlanks(text);
    if (rest.empty())
        return 0;
    std::vector<double> scanned;
    if (rest.front() == '[') {
        if (rest.size() < 2 || rest.back() != ']')
            return 0;
        rest = trimBlanks(rest.substr(1, rest.size() - 2));
    }
    while (!rest.empty()) {
        const std::size_t end = rest.find_first_of(" \t\n\r\f\v,");
        double number = 0;
        if (!KITisNumber(rest.substr(0, end), &number))
            return 0;
        scanned.push_back(number);
        if (end == std::string_view::npos)
            break;
        rest = trimBlanks(rest.substr(end));
        if (rest.front() != ',')
            continue;
        rest = trimBlanks(rest.substr(1));
        if (rest.empty())   // a comma promises another number
            return 0;
    }
    values = std::move(scanned);
    return 1;
}

void fml_Vector::grow(int count) {
    if (count > entries())
        values.resize(static_cast<std::size_t>(count));
}

void fml_Vector::setValue(int index, double value) {
    if (index >= 0 && index < entries())
        values[static_cast<std::size_t>(index)] = value;
}

double fml_Vector::getValue(int index) const {
    return index >= 0 && index < entries() ? values[static_cast<std::size_t>(index)] : 0;
}

void fml_Vector::appendText(std::string &out) const {
    KIT_NumberText room;
    out += '[';
    for (std::size_t i = 0; i < values.size(); i++) {
        if (i > 0)
            out += ", ";
        out += KITformatNumber(values[i], room);
    }
    out += ']';
}
