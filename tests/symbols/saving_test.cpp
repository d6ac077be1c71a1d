// SPDX-License-Identifier: Apache-2.0
// Variables, aliases and words written as lines of the language, and read back.
#include "EngineFixture.h"

#include <orvlang/platform/kit/KIT_ErrorManager.h>
#include <orvlang/symbols/CMD_AliasTable.h>
#include <orvlang/symbols/CMD_VariableTable.h>

namespace {

class Saving : public EngineFixture {
protected:
    std::string saved(void (CMD_Manager::*save)(std::ostream &)) {
        std::ostringstream text;
        (manager.*save)(text);
        return text.str();
    }
    std::string protectedText(const char *text) {
        std::ostringstream os;
        CMD_Manager::saveProtectedString(os, text);
        return os.str();
    }
};

TEST_F(Saving, Formats) {
    type("alias ll ls -l\nalias q \"echo it's\"\nalias b 'a\\\\b'");
    manager.setAlias("n", "two\nlines");
    EXPECT_EQ(saved(&CMD_Manager::saveAliases),
              "alias b 'a\\b'\nalias ll 'ls -l'\nalias n 'two\nlines'\nalias q 'echo it\\'s'\n");
    type("set x = 1\nset b = \"it's\"");
    const std::string lines = saved(&CMD_Manager::saveVariables);
    EXPECT_TRUE(lines.starts_with(
        "set -l b = 'it\\'s'\nset -l x = '1'\nset -g E = '2.7182818284590452354'\nset -g JOB = '"))
        << lines;
    EXPECT_NE(lines.find("set -g status = '0'\n"), std::string::npos);
    EXPECT_EQ(type("set -s"), lines + "\n");
    EXPECT_TRUE(script("set l = 1\nset -s")
                    .starts_with("set -l arg0 = 's.cmd'\nset -l argc = '1'\nset -l l = '1'\nset -g "));
}

TEST_F(Saving, ReadsBack) {
    static const char *const theValues[] = {
        "",      "a",         "two words", " lead and trail ", "it's", "'",         "''''",
        "\"q\"", "$HOME `1`", "a;b#c",     "a>b|c&d<e=f(g)",   "!x^y", "tab\there", "\xc3\xa4\xff",
        "-g",    "a\\ b\\c",  "\\$x"
    };
    for (const char *text : theValues) {
        manager.setVariable("gv", text, 0, 0);
        manager.setVariable("lv", text, 1, 0);
        manager.setAlias("av", text);
        const std::string lines = saved(&CMD_Manager::saveVariables) + saved(&CMD_Manager::saveAliases);
        manager.unsetVariable("gv");
        manager.unsetVariable("lv");
        manager.destroyAliases();
        folder.write("saved.cmd", lines + "set -p read_back = $lv\nset -g read_back = \"$lv\"");
        EXPECT_EQ(type("source saved.cmd"), "") << lines;
        EXPECT_EQ(value("gv"), text);
        KIT_String alias;
        EXPECT_TRUE(manager.getAlias("av", alias)) << text;
        EXPECT_STREQ(alias.c_str(), text);
    }
    manager.beginLoading();
    manager.setVariable("ORPNAME", "not while loading", 0, 0);
    EXPECT_EQ(value("ORPNAME"), "untitled1.orp");
    manager.endLoading();
}

TEST_F(Saving, ProtectedWords) {
    install("show", [](CMD_Args &args) {
        for (int i = 1; i < args.argc(); ++i)
            args.out() << '[' << args.argv(i) << ']';
    });
    static const struct {
        const char *text, *saved;
    } theCases[] = {
        { nullptr, "\"\"" }, { "", "\"\"" },       { "abc", "abc" },   { "it's", "'it\\'s'" },
        { "a=1", "'a=1'" },  { "$x", "'$x'" },     { "a#", "'a#'" },   { "a\nb\tc", "'a\\nb\tc'" },
        { "a&b", "'a&b'" },  { "a>b", "'a>b'" },   { "a<b", "'a<b'" }, { "a|b", "'a|b'" },
        { "(", "'('" },      { ")", "')'" },       { "\"", "'\"'" },   { "a!b*{}~", "a!b*{}~" },
        { "a b", "'a b'" },  { "\\n", "'\\\\n'" }, { "\\", "'\\\\'" }, { "\\'", "'\\\\\\''" },
    };
    for (const auto &c : theCases) {
        EXPECT_EQ(protectedText(c.text), c.saved);
        EXPECT_EQ(type("show " + protectedText(c.text)), "[" + std::string(c.text ? c.text : "") + "]")
            << c.saved;
    }
    KIT_String text = "a\\tb\\\\";
    CMD_Manager::expandControlSequences(text);
    EXPECT_STREQ(text.c_str(), "a\tb\\");
}

TEST_F(Saving, AStreamThatFailsEndsTheSave) {
    manager.setAlias("a", "1");
    manager.setAlias("b", "2");
    const auto saveTo = [&](auto save) {
        std::ostringstream text;
        text.setstate(std::ios::badbit);
        save(text);
        EXPECT_GE(KITgetErrorSeverity(), 4);
        text.clear();
        save(text);   // an error that is pending stops it after its first line
        KITgetErrorManager()->clearAndDestroyErrors();
        return text.str();
    };
    EXPECT_EQ(saveTo([&](std::ostream &os) { manager.saveAliases(os); }), "alias a '1'\n");
    manager.setVariable("x", "1", 1, 0);
    EXPECT_EQ(saveTo([&](std::ostream &os) { manager.saveVariables(os); }), "set -l x = '1'\n");
}

}   // namespace
