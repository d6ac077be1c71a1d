// SPDX-License-Identifier: Apache-2.0
// Keys and places on the screen, made of whatever bytes arrive.
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <orvlang/platform/edit/KIT_ClusterCodec.h>
#include <orvlang/platform/edit/KIT_KeyDecoder.h>
#include <orvlang/platform/kit/KIT_Utf8.h>

namespace {

/// Bytes in which sequences, halves of them and rubbish are likely.
std::string randomBytes(std::mt19937 &generator) {
    static const std::vector<std::string> thePieces = [] {
        std::istringstream text(
            "\x1b|[|O|A|1;5|~|\x1b[200~|\x1b[201~|\x16|\xC3|\xA4|\xF0\x9F|\xE4\xB8\xAD|e\xCC\x81|"
            "\xCC\x81|\xFF|\xED\xA0\x80|\xF0\xA0\x80\x81|\xF3\xB0\x80\x81|x|\t|\x7f|\xC2\x85");
        std::vector<std::string> pieces;
        for (std::string piece; std::getline(text, piece, '|');)
            pieces.push_back(piece);
        return pieces;
    }();
    std::string bytes;
    for (int i = 0; i < 12; ++i)
        bytes += thePieces[generator() % thePieces.size()];
    return bytes;
}

std::vector<std::string> keysOf(const std::string &bytes) {
    KIT_KeyDecoder decoder;
    std::vector<std::string> keys;
    for (const char byte : bytes)
        if (decoder.addByte(byte)) {
            const bool hasText = decoder.getKey() == KIT_Key::Text || decoder.getKey() == KIT_Key::Paste;
            keys.push_back(std::to_string(int(decoder.getKey())) + (hasText ? decoder.getText() : ""));
        }
    return keys;
}

}   // namespace

TEST(KIT_KeyDecoder, FindsTheNextKeyBehindAnything) {
    std::mt19937 generator(1);
    const std::string end = "\x1b[201~z\x1b[201~\n";   // of a paste, of a quoted key, of anything
    for (int i = 0; i < 20000; ++i) {
        const std::string bytes = randomBytes(generator) + end;
        const std::vector<std::string> keys = keysOf(bytes);
        ASSERT_EQ(keys.back(), std::to_string(int(KIT_Key::Enter))) << testing::PrintToString(bytes);
    }
}

TEST(KIT_KeyDecoder, PastedTextIsTakenAsItIs) {
    EXPECT_EQ(keysOf("\x1b[200~a\x03\x1b[A\nb\x1b[201~"),
              std::vector<std::string>{ std::to_string(int(KIT_Key::Paste)) + "a\x03\x1b[A\nb" });
}

TEST(KIT_ClusterCodec, KeepsEveryByteAndTakesRoomForEachPlace) {
    std::mt19937 generator(2);
    KIT_ClusterCodec places;
    for (int i = 0; i < 20000; ++i) {
        const std::string text = randomBytes(generator);
        const std::wstring encoded = places.encode(text);
        ASSERT_EQ(places.decode(encoded), text);
        for (const wchar_t place : encoded)
            ASSERT_TRUE(place <= 0x7F || KIThasColumns(char32_t(place))) << testing::PrintToString(text);
    }
}

TEST(KIT_ClusterCodec, ShowsNothingThatWouldConfuseATerminal) {
    static const struct {
        std::string text, shown;
    } theCases[] = {
        { "a\xE4\xB8\xAD", "a\xE4\xB8\xAD" },
        { "e\xCC\x81x", "e\xCC\x81x" },
        { "\xCC\x81x", " \xCC\x81x" },                    // an accent with nothing below it
        { "\xFF\xC2\x85", "\xEF\xBF\xBD\xEF\xBF\xBD" },   // no character; a control character of Latin-1
        { "\xF0\xA0\x80\x81\xF3\xB0\x80\x81", "\xF0\xA0\x80\x81\xF3\xB0\x80\x81" },   // would be stand-ins
    };
    KIT_ClusterCodec places;
    for (const auto &c : theCases) {
        std::string drawn;
        for (const wchar_t place : places.encode(c.text))
            KITappendCharacter(drawn, char32_t(place));
        places.translate(drawn);
        EXPECT_EQ(drawn, c.shown) << testing::PrintToString(c.text);
    }
}

TEST(KIT_ClusterCodec, StylesStayWithTheirPlaces) {
    KIT_ClusterCodec places;
    const std::wstring prompt = places.encodeStyled("a\x1b[1;32mbc\x1b[0m\x1b[2Jd\x1b[31m");
    ASSERT_EQ(prompt.size(), 4u);
    const auto drawn = [&](std::wstring_view part) {
        std::string text;
        for (const wchar_t place : part)
            KITappendCharacter(text, char32_t(place));
        places.translate(text);
        return text;
    };
    EXPECT_EQ(drawn(prompt), "a\x1b[1;32mbc\x1b[0md");
    EXPECT_EQ(drawn(std::wstring_view(prompt).substr(2)), "\x1b[1;32mc\x1b[0md");
}
