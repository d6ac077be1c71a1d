// SPDX-License-Identifier: Apache-2.0
// The manager's variables: which table a name is read from and stored in, the names of the scene, what is built in.
#include "EngineFixture.h"

#include <orvlang/platform/osl/OrvaneEnvironment.h>
#include <orvlang/symbols/CMD_VariableTable.h>

namespace {

class Variables : public EngineFixture {
protected:
    std::string global(const char *variable) const {
        KIT_String text;
        return manager.getGlobalVariables()->getVariable(variable, text) ? text.c_str() : "(none)";
    }
    std::string environment(const char *variable) const {
        const char *text = OrvaneGetenv(variable);
        return text ? text : "(none)";
    }
};

TEST_F(Variables, LocalAndGlobal) {
    manager.setVariable("x", "1", 1, 0);
    manager.setVariable("x", "2", 0, 0);   // overwrites the local of that level
    EXPECT_EQ(value("x") + global("x") + environment("x"), "2(none)(none)");
    manager.unsetVariable("x");
    manager.setVariable("x", "3", 0, 1);   // parent is nothing without local
    EXPECT_EQ(value("x") + global("x") + environment("x"), "333");
    manager.setVariable("x", "4", 1, 0);
    EXPECT_EQ(value("x") + global("x") + environment("x"), "433");
    manager.unsetVariable("x");
    EXPECT_EQ(value("x"), "3");
    manager.unsetVariable("x");
    EXPECT_EQ(value("x") + environment("x"), "(none)(none)");
    manager.setVariable("PI", "3", 0, 0);
    EXPECT_EQ(value("PI") + environment("PI"), "3(none)");
    manager.setVariable("null", nullptr, 0, 0);
    EXPECT_EQ(value("null"), "");
}

TEST_F(Variables, TheIntegerFormPassesAnEmptyLocalBy) {
    manager.setVariable("n", "5", 0, 0);
    manager.setVariable("n", "", 1, 0);
    float number = 1;
    int whole = 1;
    EXPECT_TRUE(manager.getVariable("n", whole) && manager.getVariable("n", number));
    EXPECT_EQ(whole, 5);
    EXPECT_EQ(number, 0);
}

TEST_F(Variables, Environment) {
    OrvaneSetenv("outside", "env");
    KIT_String text = "stale";
    EXPECT_FALSE(manager.getVariable("outside", text));
    EXPECT_TRUE(manager.getEnv("outside", text) && manager.hasEnv("outside") &&
                !manager.hasVariable("outside"));
    EXPECT_STREQ(text.c_str(), "env");
    EXPECT_EQ(type("setenv outside = glob; set -u outside; echo \"<$outside>\""), "<>\n");
    EXPECT_FALSE(manager.getEnv("outside", text) || manager.hasEnv("outside"));
    // Exported ones go with their manager.
    {
        CMD_Manager other("other");
        other.setVariable("gone", "1", 0, 0);
        EXPECT_EQ(environment("gone"), "1");
    }
    EXPECT_EQ(environment("gone"), "(none)");
}

TEST_F(Variables, NamesThatSetRefuses) {
    for (const char *name : { "1", "a-b", "FRAME", "TIME", "FPS", "a b", "\xe4" })
        EXPECT_FALSE(manager.isVariableNameOk(name)) << name;
    for (const char *name : { "", "a", "_1", "FRAMES", "frame" })
        EXPECT_TRUE(manager.isVariableNameOk(name)) << name;
    EXPECT_FALSE(manager.isVariableNameOk(nullptr));
}

TEST_F(Variables, TheScene) {
    const std::string here = std::filesystem::canonical(folder.path());
    std::filesystem::create_directories("sub/dir");
    OrvaneSetenv("SUBDIR", "sub");
    const struct {
        const char *path;
        std::string directory;
        const char *name;
    } theCases[] = {
        { "scene.orp", here, "scene.orp" },
        { "/scene.orp", "/", "scene.orp" },
        { "sub/scene.orp", here + "/sub", "scene.orp" },
        { "sub/../sub/dir//s:x", here + "/sub/dir", "s:x" },
        { "$SUBDIR/dir/$SUBDIR", here + "/sub/dir", "$SUBDIR" },
        { "sub/", here + "/sub", "" },
        { "nosuch/scene", here, "scene" },
        { "C:scene", here, "scene" },
        { ":", here, "" },
        { "", here, "" },
    };
    manager.beginLoading();
    for (const auto &c : theCases) {
        manager.setMotName(c.path);
        EXPECT_EQ(value("ORP"), c.directory) << c.path;
        EXPECT_EQ(environment("ORPNAME"), c.name) << c.path;
        EXPECT_EQ(std::filesystem::current_path(), here);
    }
    manager.setMotName(nullptr);
    // While it loads only that changes them; unset never does, and a local is none.
    manager.setMotName("sub/kept");
    type("set ORP = x; set -g ORPNAME = y; set -u ORP ORPNAME JOB; set JOB = local");
    EXPECT_EQ(value("ORP") + value("ORPNAME"), here + "/subkept");
    manager.endLoading();
    type("set ORP = x; set -l ORPNAME = y; set -u JOB");
    EXPECT_EQ(global("ORP") + environment("ORPNAME") + value("JOB"), "xylocal");
    OrvaneUnsetenv("SUBDIR");
}

TEST_F(Variables, BuiltInsAndReset) {
    type("set -g ORPNAME = kept; setenv mine = 1; set both = local; setenv PI = 4; set -g E = 5");
    manager.getGlobalVariables()->setVariable("both", "global", true);
    manager.setJob("/job");
    EXPECT_EQ(environment("JOB"), "/job");
    OrvaneSetenv("JOB", "/other");
    manager.resetVariables();
    EXPECT_EQ(value("ORPNAME") + value("mine") + value("JOB") + environment("mine"), "kept(none)/other(none)");
    EXPECT_EQ(value("both"), "global");   // a local of that name went in its place
    EXPECT_EQ(value("PI") + value("E"), "3.14159265358979323842.7182818284590452354");
    KIT_StringArray names;
    EXPECT_GT(manager.clearDirtyVariables(), 0);
    manager.setVariable("z", "1", 1, 0);
    manager.setVariable("PI", "3", 0, 0);
    manager.getVariableNames(names, 1);
    ASSERT_EQ(names.entries(), 2);
    EXPECT_STREQ(names[0], "PI");
    EXPECT_EQ(manager.clearDirtyVariables(), 2);
}

}   // namespace
