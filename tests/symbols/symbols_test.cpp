// SPDX-License-Identifier: Apache-2.0
// The tables themselves: which names are legal, how values are read as numbers, what is dirty, what is exported.
#include <string>

#include <gtest/gtest.h>

#include <orvlang/platform/osl/OrvaneEnvironment.h>
#include <orvlang/symbols/CMD_AliasTable.h>
#include <orvlang/symbols/CMD_VariableTable.h>

namespace {

std::string joined(const KIT_StringArray &names) {
    std::string text;
    for (const char *name : names)
        text += std::string(name) + " ";
    return text;
}

TEST(Symbols, LegalNames) {
    static const struct {
        const char *name;
        bool isVariable, isAlias;
    } theCases[] = {
        { "aB9_", true, true },  { "_", true, true },  { "alias", true, false }, { "9a", false, false },
        { "a-b", false, false }, { "", false, false }, { "\xe4", false, false }, { "a=", false, false },
    };
    CMD_VariableTable variables;
    CMD_AliasTable aliases;
    for (const auto &c : theCases) {
        variables.setVariable(c.name, "x", false);
        aliases.setAlias(c.name, "x");
        EXPECT_EQ(variables.hasVariable(c.name), c.isVariable) << c.name;
        EXPECT_EQ(aliases.hasAlias(c.name), c.isAlias) << c.name;
    }
}

TEST(Symbols, ValuesAsTextAndNumbers) {
    static const struct {
        const char *value;
        float number;
        int whole;
        bool isWhole;
    } theCases[] = {
        { "", 0, 0, false },      { "word", 0, 0, true },
        { "12", 12, 12, true },   { " -1.5x", -1.5f, -1, true },
        { "1e3", 1000, 1, true }, { "0x10", 16, 0, true },
        { ".5", .5f, 0, true },   { "99999999999", 1e11f, 2147483647, true },
    };
    CMD_VariableTable table;
    for (const auto &c : theCases) {
        table.setVariable("v", c.value, false);
        KIT_String text;
        float number = 7;
        int whole = 7;
        EXPECT_TRUE(table.getVariable("v", text) && table.getVariable("v", number)) << c.value;
        EXPECT_EQ(table.getVariable("v", whole), c.isWhole) << c.value;
        EXPECT_STREQ(text.c_str(), c.value);
        EXPECT_EQ(number, c.number) << c.value;
        EXPECT_EQ(whole, c.whole) << c.value;
    }
    KIT_String text = "stale";
    float number = 7;
    int whole = 7;
    EXPECT_FALSE(table.getVariable("no", text) || table.getVariable("no", number) ||
                 table.getVariable("no", whole));
    EXPECT_TRUE(text.isEmpty() && number == 0 && whole == 0);
}

TEST(Symbols, NamesAndDirtyFlags) {
    CMD_VariableTable table;
    KIT_StringArray names;
    names.append("mm");
    for (const char *name : { "z", "a10", "a9", "M" })
        table.setVariable(name, "1", false);
    EXPECT_EQ(table.getSymbolNames(names), 4);
    EXPECT_EQ(joined(names), "M a10 a9 mm z ");
    EXPECT_EQ(table.clearDirtyFlags(), 4);
    EXPECT_EQ(table.clearDirtyFlags(), 0);
    table.setVariable("z", "1", false);   // the same value is a change
    table.setVariable("b", "1", false);
    EXPECT_EQ(table.getVariableNames(names, 1), 2);
    EXPECT_EQ(joined(names), "M a10 a9 b mm z z ");
    EXPECT_EQ(table.getVariableNames(names, 0), 12);
    EXPECT_EQ(table.clearDirtyFlags(), 2);
}

TEST(Symbols, ExportedOnesKeepTheEnvironmentInStep) {
    {
        CMD_VariableTable table;
        table.setVariable("exported", "1", true);
        table.setVariable("private", "1", false);
        table.setVariable("exported", "2", false);   // each stays what it was made
        table.setVariable("private", "2", true);
        EXPECT_STREQ(OrvaneGetenv("exported"), "2");
        EXPECT_EQ(OrvaneGetenv("private"), nullptr);
        EXPECT_EQ(table.destroyVariable("exported"), 1);
        EXPECT_EQ(OrvaneGetenv("exported"), nullptr);
        table.setVariable("exported", "", true);
        EXPECT_STREQ(OrvaneGetenv("exported"), "");
    }
    EXPECT_EQ(OrvaneGetenv("exported"), nullptr);
}

}   // namespace
