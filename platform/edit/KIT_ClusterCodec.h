// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

/// Converts UTF-8 text into wide characters and back. Each wide character is one cluster on the terminal, one or two
/// columns wide. A cluster that libedit could not draw as one character gets a stand-in, a rare character of the same
/// width: a character with combining marks, a byte that is not UTF-8, a control character. A drawing with stand-ins is
/// translated before it is sent to the terminal.
class KIT_ClusterCodec {
public:
    std::wstring encode(std::string_view text);
    /// Encodes a text that may contain escape sequences. Keeps those for colours and the like: each cluster gets its
    /// own copy, so that it can be drawn alone.
    std::wstring encodeStyled(std::string_view text);
    std::string decode(std::wstring_view encoded) const;
    /// Replaces the stand-ins in a drawing by what they represent.
    void translate(std::string &drawing) const;

private:
    struct StandIn {
        std::string text;
        std::string shown;
        std::string style;   // escape sequences
    };

    wchar_t findOrAddStandIn(std::string_view text, const std::string &style);
    const StandIn *find(char32_t code) const;

    std::vector<StandIn> narrow, wide;
    std::unordered_map<std::string, wchar_t> codes;   // of the stand-ins, by style and text
};
