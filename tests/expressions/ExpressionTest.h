// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/fml/FML.h>
#include <orvlang/platform/kit/KIT_String.h>
#include <orvlang/platform/trk/TRK_Manager.h>

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <utility>

/// A manager whose variables are a map.
class MapManager : public TRK_Manager {
public:
    MapManager() : TRK_Manager(0) {}
    std::map<std::string, std::string> variables;

protected:
    bool getVariableString(const char *name, KIT_String &value, int &flags, int thread) override {
        if (TRK_Manager::getVariableString(name, value, flags, thread))
            return true;
        const auto found = variables.find(name);
        if (found == variables.end())
            return false;
        value = found->second;
        return true;
    }
};

/// Expressions in the context of a manager.
class ExpressionTest : public testing::Test {
protected:
    ExpressionTest() {
        manager.setContext();
        TRK_Manager::initExpressionLibrary();
        TRK_Manager::initLibraryGlue();
        FML::theErrNo = FML_NO_ERROR;
    }

    /// The result as text, or the error.
    static std::string evaluate(const std::string &expression) {
        KIT_String value("untouched");
        FML::theErrNo = FML_NO_ERROR;
        const bool succeeded = TRK_Manager::lookupExpressionNoThread(expression.c_str(), value);
        EXPECT_EQ(succeeded, FML::theErrNo == FML_NO_ERROR) << expression;
        if (!succeeded) {
            EXPECT_EQ(value, "untouched") << expression;
        }
        const int number = std::exchange(FML::theErrNo, FML_NO_ERROR);
        return succeeded ? std::string(value.view()) : error(number);
    }

    struct Case {
        const char *expression;
        std::string result;
    };
    /// The expression three times: run once, when it comes into the cache, and out of the cache.
    static void check(const std::string &expression, const std::string &result) {
        for (int round = 0; round < 3; round++)
            EXPECT_EQ(evaluate(expression), result) << expression << ", round " << round;
    }
    static void check(std::initializer_list<Case> cases) {
        for (const Case &c : cases)
            check(c.expression, c.result);
    }
    static std::string error(int number) {
        return "error " + std::to_string(number) + ": " + fml_GetErrorText(number);
    }

    MapManager manager;
};
