// SPDX-License-Identifier: Apache-2.0
//
// Expressions in the context of a command manager.
#include "EngineFixture.h"

#include <orvlang/platform/fml/FML.h>
#include <orvlang/platform/fml/FML_Function.h>
#include <orvlang/platform/fml/FML_Registry.h>
#include <orvlang/platform/fml/FML_Symbol.h>
#include <orvlang/platform/fml/fml_Vector.h>

namespace {

constexpr int theGlobalVariable = 20;

class CMD_Expressions : public EngineFixture {
protected:
    static std::string evaluate(const char *expression) {
        KIT_String value;
        FML::theErrNo = FML_NO_ERROR;
        if (!TRK_Manager::lookupExpressionNoThread(expression, value))
            return fml_GetErrorText(FML::theErrNo);
        return std::string(value.view());
    }
    void set(const char *variable, const char *text) { manager.setVariable(variable, text, 0, 0); }
};

TEST_F(CMD_Expressions, OneLineForm) {
    static const struct {
        const char *written;
        const char *form;
    } theCases[] = {
        { "", "" },     { "\n\n", "" },     { "a\nb\n\n", "a b" }, { "a\tb\t", "a b\t" },
        { "\t", "\t" }, { "a\t\n", "a\t" }, { "\na", " a" },       { "a \n b", "a   b" },
    };
    static const char *theText = nullptr;
    install("writetext", [](CMD_Args &args) { args.out() << theText; });
    install("writeerror", [](CMD_Args &args) { args.err(0) << theText; });
    for (const auto &c : theCases) {
        theText = c.written;
        EXPECT_EQ(evaluate("execute('writetext')"), c.form) << c.written;
        EXPECT_EQ(evaluate("executee('writeerror')"), c.form) << c.written;
        EXPECT_EQ(evaluate("executeb('writetext')"), c.form) << c.written;
    }
    EXPECT_EQ(transcript.take(), "");
}

TEST_F(CMD_Expressions, ABareNameIsAVariableOfTheLanguage) {
    set("count", "007");
    set("tenth", "0.1");
    set("vector", "[1, 2]");
    set("TIME", "hidden");
    EXPECT_EQ(evaluate("count"), "007");
    EXPECT_EQ(evaluate("count + 1"), "8");
    EXPECT_EQ(evaluate("tenth * 3"), "0.3");
    EXPECT_EQ(evaluate("size(vector)"), "2");
    EXPECT_EQ(evaluate("TIME"), "0");
    EXPECT_EQ(evaluate("HOME"), fml_GetErrorText(FML_UNKNOWN_VARIABLE));
    // What a name stands for is read when it is used.
    EXPECT_EQ(evaluate("concat(execute('set count = 8'), count)"), "8");
    EXPECT_EQ(evaluate("$count + execute('set count = 9')"), "8");
}

TEST_F(CMD_Expressions, GlobalVariableCasts) {
    static const struct {
        const char *value;   // null: the variable is gone
        int type, result;
        const char *text;
    } theCases[] = {
        { "2.5", FML_FLOAT, 0, "2.5" },       { "text", FML_STRING, 0, "text" },
        { "[1 2]", FML_VECTOR, 0, "[1, 2]" }, { "text", FML_VECTOR, -1, "[]" },
        { nullptr, FML_VECTOR, 1, "[0]" },    { nullptr, FML_STRING, 0, "" },
        { "1", theGlobalVariable, -1, "" },
    };
    for (const auto &c : theCases) {
        set("casted", "any");
        const FML_SymbolPointer source = FML_Registry::get().resolve("casted", 0);
        ASSERT_NE(source, nullptr);
        EXPECT_EQ(source->type->code, theGlobalVariable);
        EXPECT_STREQ(source->type->name, "globalVar");
        EXPECT_STREQ(source->type->getName(source.get()), "casted");
        if (c.value)
            set("casted", c.value);
        else
            manager.unsetVariable("casted");
        const FML_SymbolPointer target(fml_AllocSymbol(c.type, 0));
        EXPECT_EQ(source->type->cast(target.get(), source.get()), c.result) << c.text;
        std::string text;
        if (c.type == FML_FLOAT)
            text = KIT_String(std::to_string(target->value.number)).view().substr(0, 3);
        else if (c.type == FML_VECTOR)
            target->value.vector->appendText(text);
        else if (target->value.text)
            text = target->value.text;
        EXPECT_EQ(text, c.text);
    }
    manager.unsetVariable("casted");
    EXPECT_EQ(FML_Registry::get().resolve("casted", 0), nullptr);
}

TEST_F(CMD_Expressions, InstalledOnceForAllManagers) {
    const unsigned generation = FML_Registry::get().getGeneration();
    {
        CMD_Manager second("second");
        second.setContext();
        second.setVariable("here", "second", 0, 0);
        EXPECT_EQ(evaluate("here"), "second");
    }
    EXPECT_EQ(FML_Registry::get().getGeneration(), generation);
    EXPECT_EQ(evaluate("here"), fml_GetErrorText(FML_UNKNOWN_VARIABLE));
    EXPECT_EQ(evaluate("execute('echo a')"), "") << "no manager, nobody to run it";
    manager.setContext();
    EXPECT_EQ(FML_Registry::get().getOptimization(), 0);
}

TEST_F(CMD_Expressions, WhatAnExpandedTextSetsStays) {
    install("goto", [](CMD_Args &) { CMD_Manager::getContext()->setEvaluateTime(5); });
    KIT_String out;
    manager.expandString("`TIME` `execute('goto')``TIME`", out, 1, nullptr, 0, 3);
    EXPECT_EQ(out, "1 5");
    EXPECT_EQ(manager.getEvaluateTime(0), 5);
}

TEST_F(CMD_Expressions, EveryFunctionHasHelp) {
    EXPECT_GT(FML_Registry::get().getHelp().size(), 90u);
    for (const auto &[function, entry] : FML_Registry::get().getHelp())
        EXPECT_TRUE(entry.starts_with(function + "(") && entry.ends_with(".")) << function << ": " << entry;
}

TEST_F(CMD_Expressions, ManyNestedLevels) {
    static int theDepth;
    theDepth = 0;
    install("down2", [](CMD_Args &args) {
        if (++theDepth < 60)
            CMD_Manager::getContext()->execute("echo x`execute('down2')`\n", 0, &args.out(), nullptr, 1, true);
    });
    EXPECT_EQ(evaluate("length(execute('down2'))"), "59");
    EXPECT_EQ(transcript.take(), "");
}

TEST_F(CMD_Expressions, FrameRange) {
    static const struct {
        const char *words;
        const char *range;
    } theCases[] = {
        { "frames", "49 49 1" },
        { "frames -i -3", "49 49 -3" },
        { "frames -r 1 10", "1 10 1" },
        { "frames -r 10 1", "10 1 -1" },
        { "frames -r 1 10 -i -2", "1 10 2" },
        { "frames -r 10 1 -i 2", "10 1 -2" },
        { "frames -r 10 1 -i 0", "10 1 -1" },
        { "frames -r x 7y -i z", "0 7 1" },
        { "frames -r 1 0 -i 99999999999", "1 0 -2147483647" },
        { "frames -r 0 1 -i -2147483648", "0 1 2147483647" },
    };
    const auto frames = [](CMD_Args &args) {
        int start = -1, end = -1, inc = -1;
        CMD_Manager::getContext()->getFrameRange(args, start, end, inc, 'r', 'i');
        args.out() << start << ' ' << end << ' ' << inc;
    };
    install("frames", frames, "r::i:");
    manager.setEvaluateTime(2);
    for (const auto &c : theCases)
        EXPECT_EQ(type(c.words), c.range) << c.words;
    EXPECT_EQ(evaluate("FRAME"), "49");
    // 23.9999 is frame 24, and 23.99 is still in frame 23.
    manager.setFramesPerSecond(1);
    for (const auto &[seconds, frame] : { std::pair{ 22.9999, "24 24 1" }, std::pair{ 22.99, "23 23 1" } }) {
        manager.setEvaluateTime(seconds);
        EXPECT_EQ(type("frames"), frame) << seconds;
    }
}

}   // namespace
