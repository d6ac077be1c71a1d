// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

/// Turns UTF-8 text into wide characters of which each is one place on a terminal, one or two columns wide, and back. A
/// character with marks that combine with it, a byte that is no UTF-8, and whatever else does not simply take its place,
/// gets a stand-in: a rare character of the same width. What is drawn with stand-ins is translated on its way to the
/// terminal.
class KIT_Places {
public:
    std::wstring encode(std::string_view text);
    /// The same for a text with escape sequences in it, of which colours and their kin stay: each place has those that
    /// hold for it, so that it may be drawn alone.
    std::wstring encodeStyled(std::string_view text);
    std::string decode(std::wstring_view places) const;
    /// Puts what the stand-ins in a drawing stand for in their places.
    void translate(std::string &drawing) const;

private:
    struct StandIn {
        std::string text;
        std::string shown;
        std::string style;   // escape sequences
    };

    wchar_t standFor(std::string_view text, const std::string &style);
    const StandIn *find(char32_t code) const;

    std::vector<StandIn> narrow, wide;
    std::unordered_map<std::string, wchar_t> known;
};
