// SPDX-License-Identifier: Apache-2.0
#include <orvlang/symbols/CMD_HistoryTable.h>

#include <algorithm>
#include <ostream>

#include <orvlang/engine/CMD_Manager.h>
#include <orvlang/platform/kit/KIT_Char.h>
#include <orvlang/platform/kit/KIT_ErrorManager.h>
#include <orvlang/platform/kit/KIT_Number.h>

namespace {

constexpr size_t theHistorySize = 200;

/// The characters after which a `!` is a plain character.
bool endsHistoryForm(char next) {
    return next == '\0' || next == ' ' || next == '\t' || next == '\r' || next == '\n' || next == '=' ||
           next == '(';
}

/// The word of a form, and the length of the form after its `!`.
struct HistoryWord {
    std::string_view word;
    size_t used;
};

HistoryWord takeWord(std::string_view spec) {
    const char first = spec.empty() ? '\0' : spec[0];
    const char second = spec.size() > 1 ? spec[1] : '\0';
    if (first == '{') {
        const size_t end = spec.find('}');
        if (end == std::string_view::npos)
            return { spec.substr(1), spec.size() };
        return { spec.substr(1, end - 1), end + 1 };
    }
    size_t length = 1;
    if (first == '!')
        return { spec.substr(0, length), length };
    if (KITisDigit(first) || (first == '-' && KITisDigit(second))) {
        while (length < spec.size() && KITisDigit(spec[length]))
            ++length;
    } else {
        length = 0;
        while (length < spec.size() && !KITisSpace(spec[length]))
            ++length;
    }
    return { spec.substr(0, length), length };
}

}   // namespace

void CMD_HistoryTable::addHistory(const char *line) {
    addHistory(CMD_Line::copyOf(line ? line : ""));
}

void CMD_HistoryTable::addHistory(CMD_Line line) {
    const int number = lines.empty() ? 1 : lines.back().number + 1;
    if (lines.size() >= theHistorySize)
        lines.erase(lines.begin());
    lines.push_back({ std::move(line), number });
}

int CMD_HistoryTable::historyExpand(CMD_Manager *manager, KIT_String &line) const {
    if (lines.empty())
        return 0;
    const bool isEdit = line.view().starts_with('^');
    if (isEdit)
        editHistory(line);
    else if (!expandForms(line))
        return 0;
    manager->getError(0) << line << std::endl;
    return 1;
}

bool CMD_HistoryTable::expandForms(KIT_String &line) const {
    const std::string_view text = line.view();
    std::string expanded;
    bool foundForm = false;
    char quote = '\0';
    char previous = '\0';
    for (size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        const char next = i + 1 < text.size() ? text[i + 1] : '\0';
        if (previous != '\\') {
            if (quote != '\0' && c == quote)
                quote = '\0';
            else if (quote == '\0' && (c == '"' || c == '\''))
                quote = c;
        }
        if (c != '!' || next == '=' || quote == '\'') {
            expanded += c;
            previous = c == '\\' && previous == '\\' ? '\0' : c;
            continue;
        }
        if (previous == '\\') {
            expanded.back() = '!';
        } else if (endsHistoryForm(next)) {
            expanded += '!';
        } else {
            i += getHistory(text.substr(i + 1), expanded);
            foundForm = true;
        }
        previous = '\0';
    }
    if (foundForm || expanded.size() != text.size())
        line = expanded;
    return foundForm;
}

size_t CMD_HistoryTable::getHistory(std::string_view spec, std::string &out) const {
    const HistoryWord form = takeWord(spec);
    if (const CMD_History *found = findLine(form.word))
        out += found->line.text;
    return form.used;
}

const CMD_History *CMD_HistoryTable::findLine(std::string_view word) const {
    const int last = lines.back().number;
    if (word.starts_with('!'))
        return &lines.back();
    if (word.starts_with('-') || (!word.empty() && KITisDigit(word[0]))) {
        const int n = KITatoi(word);
        // In 64 bits: a number that is read as the lowest int must not wrap round.
        const long long target = n > 0 ? n : n == 0 ? last : static_cast<long long>(n) + last + 1;
        const long long place = target - lines.front().number;
        return place >= 0 && place < static_cast<long long>(lines.size()) ? &lines[static_cast<size_t>(place)]
                                                                          : nullptr;
    }
    const auto found = std::find_if(lines.rbegin(), lines.rend(),
                                    [&](const CMD_History &line) { return line.line.text.starts_with(word); });
    return found == lines.rend() ? nullptr : &*found;
}

int CMD_HistoryTable::editHistory(KIT_String &line) const {
    constexpr size_t none = std::string_view::npos;
    const std::string_view text = line.view().substr(1);
    std::string_view replacement;
    std::string_view rest;
    const size_t second = text.find('^');
    const std::string_view old = text.substr(0, second);
    if (second != none) {
        replacement = text.substr(second + 1);
        const size_t third = replacement.find('^');
        if (third != none) {
            rest = replacement.substr(third + 1);
            replacement = replacement.substr(0, third);
        } else if (replacement.ends_with('\n')) {
            replacement.remove_suffix(1);
        }
    }
    if (old.empty()) {
        line = "";
        return -1;
    }
    std::string edited(lines.back().line.text);
    const size_t place = edited.find(old);
    if (place != none)
        edited.replace(place, old.size(), replacement);
    edited += rest;
    line = edited;
    return 1;
}

const char *CMD_HistoryTable::getCommand(int index) const {
    if (index < 0 || static_cast<size_t>(index) >= lines.size())
        return nullptr;
    return lines[lines.size() - 1 - static_cast<size_t>(index)].line.text.data();
}

void CMD_HistoryTable::saveHistory(std::ostream &os) const {
    for (const CMD_History &line : lines) {
        os << line.number << "  " << line.line.text << std::endl;
        KITcheckOutStream(os, "Save History", 0);
        if (KITgetErrorSeverity() >= KIT_ErrorManager::Failure)
            return;
    }
}
