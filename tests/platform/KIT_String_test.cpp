// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <orvlang/platform/kit/KIT_Number.h>
#include <orvlang/platform/kit/KIT_String.h>
#include <orvlang/platform/kit/KIT_StringArray.h>
#include <orvlang/platform/kit/KIT_WorkBuffer.h>

#include <bit>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <random>
#include <sstream>
#include <string>

namespace {

TEST(KIT_Number, ReadsLikeTheCLibrary) {
    std::istringstream texts(
        "12 -12x +7 +-7 1.5e3 .5 5. . 1e 1e+ -.e1 0x10 0X1p4 -0x.8 0x 0xg 0x-1 0x1p9999 inf "
        "-INF e5 1e400 -1e400 1e-400 1e-310 --1 -0 0e99999999999999999999 0.0000001e400 "
        "1e-99999999999999999999 123456789012345678901234567890 1.7976931348623159e308 "
        "9007199254740993 1e99999999999999999999");
    for (std::string text; texts >> text;) {
        const double expected = std::strtod(text.c_str(), nullptr);
        EXPECT_EQ(KITatof(text.c_str()), expected) << text;
        EXPECT_EQ(std::signbit(KITatof(text.c_str())), std::signbit(expected)) << text;
    }
    EXPECT_EQ(KITatof(""), 0);
    EXPECT_EQ(KITatof(" \t\n1e1"), 10);
    EXPECT_EQ(KITatoi(" -12a"), -12);
    EXPECT_EQ(KITatoi("- 1"), 0);
    EXPECT_EQ(KITatoi("2147483648"), INT_MAX);
    EXPECT_EQ(KITatoi("-99999999999999999999"), INT_MIN);
}

TEST(KIT_Number, TellsWhatIsANumber) {
    for (const char *text : { "1", "0", "-12", "+5", "007", "99999999999" })
        EXPECT_TRUE(KIT_String(text).isFloat() && KIT_String(text).isInteger()) << text;
    for (const char *text : { "1.5", ".5", "5.", "1e5", "-1.5E-3", "1e999" })
        EXPECT_TRUE(KIT_String(text).isFloat() && !KIT_String(text).isInteger()) << text;
    for (const char *text :
         { "", ".", "-", "+-1", " 1", "1 ", "0x10", "inf", "nan", "-inf", "1e", "1.2.3", "12a", "e5" })
        EXPECT_FALSE(KIT_String(text).isFloat() || KIT_String(text).isInteger()) << text;
    double value = 0;
    const char *end = nullptr;
    EXPECT_TRUE(KIT_String::borrow("-1.5e1x").isFloat(&value, &end));
    EXPECT_EQ(value, -15);
    EXPECT_STREQ(end, "x");
    EXPECT_FALSE(KIT_String::borrow("x").isFloat(&value, &end));
    int whole = 0;
    EXPECT_TRUE(KIT_String("-99999999999").isInteger(&whole));
    EXPECT_EQ(whole, INT_MIN);
}

void checkFormats(double value) {
    KIT_NumberText room;
    char expected[64];
    std::snprintf(expected, sizeof expected, "%g", static_cast<double>(static_cast<float>(value)));
    EXPECT_EQ(KITformatFloat(static_cast<float>(value), room), expected);
    EXPECT_STREQ(room.text, expected);
    const bool whole = std::abs(value) < 1e15 && value == std::floor(value);
    std::snprintf(expected, sizeof expected, whole ? "%.0f" : "%.15g", value == 0 ? 0.0 : value);
    EXPECT_EQ(KITformatNumber(value, room), expected);
}

TEST(KIT_Number, FormatsLikePrintf) {
    for (const char *text : { "0", "-0", "1e5", "999999.5", "1e6", "1e-4", "1e-5", "999999999999999", "1e15",
                              "1e300", "0.30000000000000004", "inf", "-inf", "5e-324" })
        checkFormats(std::strtod(text, nullptr));
    std::mt19937_64 random(1);
    for (int i = 0; i < 5'000; ++i) {
        const double value = std::bit_cast<double>(random());
        if (std::isfinite(value) && std::abs(value) < 1e38)
            checkFormats(value);
        checkFormats(static_cast<double>(random() % 20'000'000) / (1 << random() % 20));
    }
}

TEST(KIT_String, OwnsBorrowsAndGivesUp) {
    EXPECT_TRUE(KIT_String(static_cast<const char *>(nullptr)).isNull());
    EXPECT_EQ(KIT_String().steal(), nullptr);
    EXPECT_TRUE(KIT_String() == "");
    char text[] = "borrowed";
    KIT_String borrowed = KIT_String::borrow(text);
    const KIT_String copy = borrowed;
    KIT_String moved = std::move(borrowed);
    KIT_String hardened = KIT_String::borrow(text);
    hardened.harden();
    text[0] = 'B';
    EXPECT_EQ(moved, "Borrowed");
    EXPECT_EQ(copy, std::string("borrowed"));
    EXPECT_EQ(hardened, copy);
    moved.toLower();
    EXPECT_STREQ(text, "Borrowed");
    EXPECT_EQ(moved, copy);
    const std::unique_ptr<char, decltype(&std::free)> stolen(moved.steal(), std::free);
    EXPECT_STREQ(stolen.get(), "borrowed");
    EXPECT_TRUE(moved.isNull());

    KIT_String s("0123456789");
    s = s.view().substr(2, 3);
    EXPECT_EQ(s, "234");
    for (int i = 0; i < 5; ++i)
        s.append(s);
    EXPECT_EQ(s.length(), 96U);
    EXPECT_EQ(s.substr(93, 99), "234");
    s = static_cast<const char *>(nullptr);
    EXPECT_TRUE(s.isNull());
    KIT_String late = KIT_String::borrow("a");
    late.append("").append("b");
    EXPECT_EQ(late, "ab");
    late = moved;
    EXPECT_TRUE(late.isNull());
}

TEST(KIT_String, CutsAndReplaces) {
    const KIT_String text("a,b,,c");
    EXPECT_EQ(text.substr(0, 0), "");
    EXPECT_EQ(text.substr(-5, 2), "a,");
    EXPECT_EQ(text.substr(99, 2), "");
    KIT_String s = text;
    EXPECT_EQ(s.substitute(",", " ", true), 3);
    EXPECT_EQ(s, "a b  c");
    EXPECT_EQ(s.substitute(" ", "<->", false), 1);
    EXPECT_EQ(s, "a<->b  c");
    EXPECT_EQ(s.substitute("", "x", true), 0);
    EXPECT_EQ(KIT_String::itoa(INT_MIN), "-2147483648");

    static const struct {
        const char *text;
        std::string_view result;
    } theEscapes[] = {
        { R"(\n\t\r\a\b\f\v\e\\\"\')", "\n\t\r\a\b\f\v\033\\\"'" },
        { R"(\033[1m\x1b\x41\xfz)", "\033[1m\033A\017z" },
        { R"(\0101\08)", { "A\0008", 3 } },
        { R"(\q\x\xg\)", R"(\q\x\xg\)" },
        { "", "" },
    };
    for (const auto &c : theEscapes) {
        s = c.text;
        s.expandControlSequences();
        EXPECT_EQ(s.view(), c.result) << c.text;
    }
    const auto lookup = [](const char *name, KIT_String &value) {
        value = std::string("<") + name + ">";
        return *name != 'u';
    };
    s = "'$a'/${b}/$u/${u:-x y}\\$c $ ${ $1 ${d";
    s.expandVariables(lookup);
    EXPECT_EQ(s, "'<a>'/<b>//x y\\<c> $ ${ $1 ${d");
    s = "$PATH";
    s.expandVariables();
    EXPECT_EQ(s, std::getenv("PATH"));
}

TEST(KIT_String, OrdersNumbersByValue) {
    static const char *const theSorted[] = { "",      "0",     "00",  "1",   "01",  "2",  "10",
                                             "A10",   "a",     "a1",  "a01", "a1b", "a2", "a2b1",
                                             "a02b2", "a2b10", "a10", "b",   "b-1", "b1", "\xc3" };
    constexpr int count = std::size(theSorted);
    for (int i = 0; i < count; ++i)
        for (int k = 0; k < count; ++k) {
            const int order = KIT_String::compareNumberedString(theSorted[i], theSorted[k], true);
            EXPECT_EQ((order > 0) - (order < 0), (i > k) - (i < k)) << theSorted[i] << " " << theSorted[k];
        }
    EXPECT_LT(KIT_String::compareNumberedString("99999999999999999999", "100000000000000000000", true), 0);
    EXPECT_EQ(KIT_String::compareNumberedString("aB1", "Ab1", false), 0);
    EXPECT_LT(KIT_String::compareNumberedString("a", "B", false), 0);
    const char *table[] = { "x10", "x9" };
    std::qsort(table, 2, sizeof *table, KIT_String::qsortCmpNumberedString);
    EXPECT_STREQ(table[0], "x9");
}

std::string show(const KIT_StringArray &texts) {
    std::string result;
    for (const char *text : texts)
        result += std::string(text ? text : "null") + " ";
    return result;
}

TEST(KIT_StringArray, KeepsTexts) {
    KIT_StringArray texts;
    for (const char *text : { "b10", "b9", "a", static_cast<const char *>(nullptr), "Z", "" })
        texts.append(text);
    texts.append(std::string("\xff"));
    texts.sort(true, false);
    EXPECT_EQ(show(texts), "null  Z a b10 b9 \xff ");
    texts.sort(false, true);
    EXPECT_EQ(show(texts), "\xff b10 b9 a Z  null ");
    EXPECT_EQ(texts.find(nullptr), 6);
    EXPECT_TRUE(texts.remove("b9"));
    EXPECT_FALSE(texts.remove("b9"));
    texts.resize(7);
    texts.collapse();
    EXPECT_EQ(show(texts), "\xff b10 a Z  ");
    texts.resize(2);
    KIT_StringArray copy(texts);
    copy.merge(copy);
    texts = copy;
    EXPECT_EQ(show(texts), "\xff b10 \xff b10 ");
    EXPECT_EQ(texts[4], nullptr);
}

TEST(KIT_WorkBuffer, BuildsText) {
    KIT_WorkBuffer buffer;
    buffer.strcat("b");
    buffer.append('c');
    buffer.prepend("a");
    buffer.strcat(buffer.c_str());
    buffer.prepend(buffer.view());
    EXPECT_EQ(buffer.view(), "abcabcabcabc");
    EXPECT_EQ(buffer.sprintf("%-*s|%s", 500, "x", buffer.c_str()), 513);
    EXPECT_EQ(buffer.view().substr(499), " |abcabcabcabc");
    buffer.strcpy(buffer.view().substr(501));
    buffer.write("\0z", 2);
    EXPECT_EQ(buffer.length(), 14U);
    const std::unique_ptr<std::FILE, decltype(&std::fclose)> file(std::tmpfile(), std::fclose);
    std::fputs("one\n\nlast", file.get());
    std::rewind(file.get());
    for (const char *line : { "one\n", "\n", "last" }) {
        EXPECT_TRUE(buffer.getline(file.get()));
        EXPECT_EQ(buffer.view(), line);
    }
    EXPECT_FALSE(buffer.getline(file.get()));
    EXPECT_EQ(buffer.view(), "");
}

}   // namespace
