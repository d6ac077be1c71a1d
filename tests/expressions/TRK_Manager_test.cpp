// SPDX-License-Identifier: Apache-2.0
#include "Cases.h"
#include "ExpressionTest.h"

#include <orvlang/platform/trk/TRK_EventManager.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <optional>
#include <vector>

namespace {

class TRK_ManagerTest : public ExpressionTest {
protected:
    std::string expand(const char *text, int what = 3, double time = 0) {
        KIT_String out("before");
        manager.expandString(text, out, time, nullptr, 0, what);
        return std::string(out.view());
    }
};

TEST_F(TRK_ManagerTest, ExpandString) {
    manager.variables = { { "x", "5" }, { "q", "a 'b' \"c\"" }, { "tick", "`1+1`" } };
    for (const auto &row : casesOf(ORVLANG_CASES "/expansions.cases"))
        EXPECT_EQ(expand(row.at(0).c_str()), row.at(1)) << row[0];
    EXPECT_EQ(expand(nullptr), "");
    EXPECT_EQ(expand("$x`1+1`", 1), "5`1+1`");
    EXPECT_EQ(expand("$x`1+1`", 2), "$x2");
    KIT_String same("[$x]");
    manager.expandString(same.c_str(), same, 0, nullptr, 0, 3);
    EXPECT_EQ(same, "[5]");
}

TEST_F(TRK_ManagerTest, TimeLine) {
    EXPECT_EQ(evaluate("FRAME + 100 * TIME + FPS"), "25");
    EXPECT_EQ(expand("`FRAME` $TIME", 3, 0.1), "3.4 0.1");
    EXPECT_EQ(manager.getEvaluateTime(0), 0) << "the time of an expansion ends with it";
    manager.setEvaluateTime(2);
    manager.setFramesPerSecond(29.97f);
    EXPECT_EQ(evaluate("\"$FRAME $TIME $FPS\""), "60.94 2 29.97");
    for (const float bad : { 0.0f, -1.0f, std::nanf(""), std::numeric_limits<float>::infinity() })
        manager.setFramesPerSecond(bad);
    manager.setEvaluateTime(std::nan(""));
    EXPECT_EQ(manager.getFramesPerSecond(), 29.97f);
    EXPECT_EQ(manager.getEvaluateTime(0), 2);
    std::vector<std::string> names;
    for (const TRK_LocalVariable *local = TRK_Manager::getLocalVariableTable(); local->name; local++)
        names.push_back(std::string(local->name) + "=" +
                        std::to_string(manager.getVariableValue(local->id, 0)));
    EXPECT_EQ(names, (std::vector<std::string>{ "FRAME=60.939999", "TIME=2.000000", "FPS=29.969999" }));
}

TEST_F(TRK_ManagerTest, NiceNumber) {
    EXPECT_EQ(TRK_Manager::niceNumber(23.9999f, 3), 24.0f);
    EXPECT_EQ(TRK_Manager::niceNumber(-1.2345f, 2), -1.23f);
    EXPECT_EQ(TRK_Manager::niceNumber(1.5f, -7), 2.0f);
    EXPECT_EQ(TRK_Manager::niceNumber(1e38f, 99), 1e38f);
}

TEST_F(TRK_ManagerTest, ExpressionsDoNotAskTheEnvironment) {
    setenv("ONLY_THERE", "environment", 1);
    KIT_String value;
    EXPECT_TRUE(TRK_Manager::lookupVariableNoThread("ONLY_THERE", value));
    EXPECT_EQ(value, "environment");
    EXPECT_EQ(evaluate("ONLY_THERE"), error(FML_UNKNOWN_VARIABLE));
    unsetenv("ONLY_THERE");
}

TEST_F(TRK_ManagerTest, CurrentManager) {
    manager.variables["x"] = "first";
    std::optional<MapManager> second(std::in_place);
    second->variables["x"] = "second";
    KIT_String out;
    second->expandString("$x `$x`", out, 0, nullptr, 0, 3);
    EXPECT_EQ(out, "second second");
    EXPECT_EQ(evaluate("$x"), "first");
    second->setContext();
    second.reset();
    EXPECT_EQ(TRK_Manager::getCurrentManager(), nullptr);
    EXPECT_EQ(evaluate("FRAME"), error(FML_UNKNOWN_VARIABLE));
}

TEST(TRK_EventManager, EventsAreHeldBack) {
    static std::vector<const void *> theEvents;
    TRK_EventManager &events = TRKgetEventManager();
    events.setListener(
        [](const void *channel, void *data) { static_cast<decltype(theEvents) *>(data)->push_back(channel); },
        &theEvents);
    const int channels[2] = {};
    const void *a = &channels[0];
    const void *b = &channels[1];
    events.sendEvent(a);
    EXPECT_EQ(theEvents, (std::vector{ a }));
    const TRK_AutoEventHandler handler;
    events.beginHandlingEvents(TRK_EventHandlerHash::newHandler);
    for (const void *channel : { b, a, b })
        events.sendEvent(channel);
    events.endHandlingEvents();
    EXPECT_TRUE(events.isHandlingEvents());
    EXPECT_EQ(theEvents, (std::vector{ a }));
    events.endHandlingEvents();
    events.endHandlingEvents();   // one too many
    EXPECT_EQ(theEvents, (std::vector{ a, b, a }));
    EXPECT_FALSE(events.isHandlingEvents());
    events.beginHandlingEvents(nullptr);
    events.sendEvent(b);
    EXPECT_EQ(theEvents.back(), b);
    events.endHandlingEvents();
    events.setListener(nullptr, nullptr);
    events.sendEvent(a);
}

}   // namespace
