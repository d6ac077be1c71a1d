// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <orvlang/platform/kit/KIT_Args.h>
#include <orvlang/platform/kit/KIT_WorkArgs.h>
#include <orvlang/platform/kit/KIT_WorkBuffer.h>

#include <optional>
#include <string>

#include "Cases.h"

namespace {

void fill(KIT_Args &args, const KIT_WorkArgs &words) {
    args.clear();
    for (int i = 0; i < words.argc(); ++i)
        args.setArgument(i, words[i]);
}

/// The words, then each option found with its values.
std::string show(const KIT_Args &args) {
    if (args.argc() < 0)
        return "refused";
    std::string result;
    for (int i = 0; i < args.argc(); ++i)
        result.append(i ? " " : "").append(args.argv(i));
    for (int c = 0; c < 128; ++c) {
        const char option = static_cast<char>(c);
        if (!args.found(option))
            continue;
        result += std::string(" -") + option;
        for (int slot = 0; args.argp(option, slot); ++slot)
            result += std::string("=") + args.argp(option, slot);
    }
    return result;
}

TEST(KIT_Args, StripsOptions) {
    KIT_Args args;
    KIT_WorkArgs words;
    for (const auto &row : casesOf(ORVLANG_CASES "/options.cases")) {
        KIT_String(row.at(0)).parseInPlace(words);
        fill(args, words);
        args.stripOptions(row.at(1).c_str());
        EXPECT_EQ(show(args), row.at(2)) << row[0] << " with " << row[1];
    }
    args.stripOptions(nullptr);
    EXPECT_EQ(args.argv(1), nullptr);
    EXPECT_EQ(args.argv(-1), nullptr);
    EXPECT_FALSE(args.found(static_cast<char>(0xe4)));
    EXPECT_EQ(args.argp('n', 1), nullptr);
}

TEST(KIT_Args, KeepsAnyNumberOfWords) {
    std::optional<KIT_Args> original(std::in_place);
    KIT_WorkArgs words;
    KIT_String("script -t value 'a b' c").parseInPlace(words);
    fill(*original, words);
    original->insertFront("cmdread");
    EXPECT_EQ(show(*original), "cmdread script -t value a b c");
    original->setArgument(0, "x");
    original->stripOptions("t:");
    for (int i = original->argc(); i < 1000; ++i)
        original->setArgument(i, "more");
    original->insertFront("front");
    KIT_Args copy(*original);
    original.reset();
    words.clear();
    words.append("something else in the memory of the words");
    KIT_Args assigned;
    assigned = copy;
    copy = assigned;
    EXPECT_EQ(copy.argc(), 1001);
    EXPECT_EQ(show(copy).substr(0, 31), "front x script -t value a b c m");
    copy.setArgument(1003, "gap");
    assigned = copy;
    EXPECT_EQ(assigned.argv(1002), nullptr);

    KIT_WorkBuffer buffer;
    copy.clear();
    copy.setArgument(0, "c");
    copy.setArgument(1, "a b");
    copy.setArgument(2, "");
    copy.setArgument(3, "x\\");
    copy.fillCommandLine(buffer, 1, false);
    EXPECT_EQ(buffer.view(), "a b  x\\");
    copy.fillCommandLine(buffer, 1, true);
    EXPECT_EQ(buffer.view(), "'a b' '' 'x'\\\\");
}

}   // namespace
