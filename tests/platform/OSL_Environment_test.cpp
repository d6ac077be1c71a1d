// SPDX-License-Identifier: Apache-2.0
#include <cstdlib>
#include <map>
#include <random>
#include <string>

#include <gtest/gtest.h>
#include <unistd.h>

#include <orvlang/platform/kit/KIT_EnvControl.h>
#include <orvlang/platform/osl/OrvaneEnvironment.h>

namespace {

std::string textOf(const char *value) {
    return value ? value : "(none)";
}

}   // namespace

// The C library's own operations and ours act on the same environment, in any order.
TEST(Environment, AgreesWithTheCLibrary) {
    std::map<std::string, std::string> model;
    std::mt19937 random(7);
    static char put[] = "T3=put";
    for (int step = 0; step < 6000; ++step) {
        const std::string name = "T" + std::to_string(random() % 12);
        const std::string value(random() % 40, static_cast<char>('a' + step % 26));
        const unsigned action = random() % 100;
        if (action < 45) {
            ASSERT_TRUE(OrvaneSetenv(name.c_str(), value.c_str()));
            model[name] = value;
        } else if (action < 60) {
            setenv(name.c_str(), value.c_str(), 1);
            model[name] = value;
        } else if (action < 80) {
            ASSERT_TRUE(OrvaneUnsetenv(name.c_str()));
            model.erase(name);
        } else if (action < 95) {
            unsetenv(name.c_str());
            model.erase(name);
        } else if (action < 99) {
            putenv(put);
            model["T3"] = "put";
        } else if (random() % 20 == 0) {
            clearenv();
            model.clear();
        }
        for (int i = 0; i < 12; ++i) {
            const std::string asked = "T" + std::to_string(i);
            const std::string expected = model.count(asked) ? model[asked] : "(none)";
            ASSERT_EQ(textOf(getenv(asked.c_str())), expected) << "step " << step << " " << asked;
            ASSERT_EQ(textOf(OrvaneGetenv(asked.c_str())), expected) << "step " << step << " " << asked;
        }
    }
}

TEST(Environment, TextsStayReadableAndNamesAreTested) {
    OrvaneSetenv("KEPT", "first");
    const char *const early = OrvaneGetenv("KEPT");
    OrvaneSetenv("KEPT", OrvaneGetenv("KEPT"));
    EXPECT_STREQ(OrvaneGetenv("KEPT"), "first");
    OrvaneSetenv("KEPT", std::string(1000, 'x').c_str());
    OrvaneUnsetenv("KEPT");
    EXPECT_STREQ(early, "first");
    EXPECT_EQ(OrvaneGetenv("KEPT"), nullptr);

    OrvaneSetenv("KEPT", nullptr);
    EXPECT_STREQ(OrvaneGetenv("KEPT"), "");
    for (const char *bad : { static_cast<const char *>(nullptr), "", "a=b" }) {
        EXPECT_FALSE(OrvaneSetenv(bad, "x")) << textOf(bad);
        EXPECT_FALSE(OrvaneUnsetenv(bad)) << textOf(bad);
        EXPECT_EQ(OrvaneGetenv(bad), nullptr) << textOf(bad);
    }
}

TEST(EnvControl, IsReadAgainOnlyWhenChanged) {
    EXPECT_EQ(KIT_EnvControl::getInt(KIT_EnvControl::PlainInput), 0);
    OrvaneSetenv("ORVANE_PLAIN_INPUT", "3");
    KIT_EnvControl::varChanged("ORVANE_OTHER");
    EXPECT_EQ(KIT_EnvControl::getInt(122), 0);
    KIT_EnvControl::varChanged("ORVANE_PLAIN_INPUT");
    EXPECT_EQ(KIT_EnvControl::getInt(122), 3);
    EXPECT_EQ(KIT_EnvControl::getInt(1), 0);
    OrvaneUnsetenv("ORVANE_PLAIN_INPUT");
    KIT_EnvControl::varChanged("ORVANE_PLAIN_INPUT");
    EXPECT_EQ(KIT_EnvControl::getInt(122), 0);
}
