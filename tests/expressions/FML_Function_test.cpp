// SPDX-License-Identifier: Apache-2.0
//
// What hosts add: functions and types of variables.
#include "ExpressionTest.h"

#include <orvlang/platform/fml/FML_Function.h>
#include <orvlang/platform/fml/FML_Symbol.h>
#include <orvlang/platform/fml/fml_Vector.h>

#include <cstdlib>
#include <cstring>
#include <sstream>

namespace {

constexpr int theNameType = 40;

int theCalls = 0;
int theLiveNames = 0;

char *copyOf(const std::string &text) {
    return strdup(text.c_str());
}

constexpr int theStrings[] = { FML_STRING, FML_STRING };
constexpr int theFloats[] = { FML_FLOAT, FML_FLOAT };
constexpr int theVectors[] = { FML_VECTOR };
constexpr int theNames[] = { theNameType };

FML_FUNCTION function(const char *name, int arguments, int type, const int *types,
                      FML_EvaluateCallback evaluate, unsigned flags = FML_VOLATILE, bool openEnded = false) {
    return { flags, name, arguments, type, types, evaluate, nullptr, nullptr, 1, openEnded };
}

// Joins its texts with a colon; a null argument shows as "null".
FML_FUNCTION theJoin =
    function("hostjoin", 2, FML_STRING, theStrings, [](auto, auto result, auto arguments, auto) {
        const auto text = [](FML_SYMBOL *s) { return std::string(s->value.text ? s->value.text : "null"); };
        result->value.text = copyOf(text(arguments[0]) + ":" + text(arguments[1]));
    });
void halve(FML_FUNCTION *, FML_SYMBOL *result, FML_SYMBOL **arguments, int) {
    theCalls++;
    result->value.number = arguments[0]->value.number / 2;
}
FML_FUNCTION theHalf = function("hosthalf", 1, FML_FLOAT, theFloats, halve, 0);
FML_FUNCTION theCount = function(
    "hostcount", 1, FML_FLOAT, theFloats, [](auto, auto result, auto, auto) { result->value.number = 7; }, 0,
    true);
FML_FUNCTION theDouble =
    function("hostdouble", 1, FML_VECTOR, theVectors, [](auto, auto result, auto arguments, auto) {
        for (const double entry : *arguments[0]->value.vector)
            result->value.vector->append(2 * entry);
    });
FML_FUNCTION theNull = function("hostnull", 0, FML_STRING, nullptr, [](auto, auto, auto, auto) {});
FML_FUNCTION theFailure = function("hostfail", 1, FML_STRING, theStrings, [](auto, auto result, auto, auto) {
    result->value.text = copyOf("lost");
    fml_Fail(77);
    fml_Fail(78);
});
void count(FML_FUNCTION *, FML_SYMBOL *, FML_SYMBOL **, int) {
    theCalls++;
}
FML_FUNCTION theUnsafe = function("hostunsafe", 0, FML_FLOAT, nullptr, count, FML_UNSAFE);
FML_FUNCTION theBadResult = function("hostbadresult", 0, 99, nullptr, count);
// Evaluates its argument, as a command that is run by an expression does.
FML_FUNCTION theNested =
    function("hostnested", 1, FML_STRING, theStrings, [](auto, auto result, auto arguments, auto thread) {
        KIT_String value;
        if (!fml_Evaluate(arguments[0]->value.text, value, thread))
            FML::theErrNo = FML_NO_ERROR;   // reported by the command
        result->value.text = copyOf(value.c_str());
    });
FML_FUNCTION theDeep = function("hostdeep", 0, FML_STRING, nullptr, [](auto, auto result, auto, auto thread) {
    KIT_String value;
    if (fml_Evaluate("1 + hostdeep()", value, thread))
        result->value.text = copyOf(value.c_str());
});
// Sees the name itself, since it takes values of the type.
FML_FUNCTION theNameOf =
    function("hostnameof", 1, FML_STRING, theNames, [](auto, auto result, auto arguments, auto) {
        result->value.text = copyOf(arguments[0]->type->getName(arguments[0]));
    });

/// Knows names that begin with `host_`: a number, a text, a vector, or nothing that can be read.
const FML_TYPEDEF theNameTypedef = {
    theNameType,
    "hostName",
    [](FML_SYMBOL *symbol) {
        theLiveNames++;
        symbol->value.text = nullptr;
    },
    [](FML_SYMBOL *symbol) {
        theLiveNames--;
        std::free(symbol->value.text);
    },
    [](const char *name, int thread) -> FML_SYMBOL * {
        if (std::strncmp(name, "host_", 5) != 0)
            return nullptr;
        FML_SYMBOL *symbol = fml_AllocSymbol(theNameType, thread);
        symbol->value.text = copyOf(name);
        return symbol;
    },
    [](FML_SYMBOL *symbol) -> const char * { return symbol->value.text; },
    [](FML_SYMBOL *target, FML_SYMBOL *source) {
        const std::string name = source->value.text;
        if (name == "host_float" && target->type->code == FML_FLOAT)
            target->value.number = 0.1f;
        else if (name == "host_text" && target->type->code == FML_STRING)
            target->value.text = copyOf("12");
        else if (name == "host_vector" && target->type->code == FML_VECTOR)
            target->value.vector->append(5);
        else
            return -1;
        return 0;
    },
    {},
};

class FML_Function : public ExpressionTest {
protected:
    static void SetUpTestSuite() {
        for (FML_FUNCTION *function : { &theJoin, &theHalf, &theCount, &theDouble, &theNull, &theFailure,
                                        &theUnsafe, &theBadResult, &theNested, &theDeep, &theNameOf })
            fml_AddFunction(function);
        fml_AddVariableType(&theNameTypedef, 0);
        fml_AddVariableType(&theNameTypedef, 1);   // known already
        fml_AddFunction(nullptr);
        fml_AddVariableType(nullptr, 0);
    }
    ~FML_Function() override { EXPECT_EQ(theLiveNames, 0); }
};

TEST_F(FML_Function, ArgumentsAndResults) {
    check({
        { "hostjoin(1 + 1, \"b\")", "2:b" },
        { "hostjoin([1, 2], 007)", "[1, 2]:007" },
        { "hostjoin(hostnull(), hostnull() + \"\")", "null:" },
        { "hosthalf(0.2) * 10", "1" },
        { "hosthalf(\"x\")", error(FML_WRONG_TYPE) },
        { "hosthalf(1e300)", error(FML_OUT_OF_RANGE) },
        { "hostcount(1) + hostcount(1, 2, 3)", "14" },
        { "hostdouble(\"[1, 2]\")", "[2, 4]" },
        { "hostdouble(\"x\")", error(FML_WRONG_TYPE) },
        { "\"kept\" + hostfail(\"x\")", error(77) },
        { "hostbadresult()", error(FML_WRONG_TYPE) },
    });
}

TEST_F(FML_Function, SafeMode) {
    EXPECT_EQ(evaluate("hostunsafe()"), "0");
    fml_setSafeMode(true);
    theCalls = 0;
    EXPECT_EQ(evaluate("hostunsafe()"), error(FML_NOT_ALLOWED));
    EXPECT_EQ(evaluate("hostcount(1)"), "7");
    fml_setSafeMode(false);
    EXPECT_EQ(theCalls, 0);
}

TEST_F(FML_Function, ConstantCallsAreFoldedWhenAllowed) {
    for (const auto &[level, calls] : { std::pair{ 1, 2 }, std::pair{ 0, 3 } }) {
        fml_SetOptimization(level);
        theCalls = 0;
        // The first two are compiled, the third comes out of the cache.
        check({ { "hosthalf(8) + 1", "5" } });
        EXPECT_EQ(theCalls, calls) << level;
    }
    fml_SetOptimization(1);
}

TEST_F(FML_Function, ExpressionsInFunctions) {
    manager.variables["x"] = "6";
    check({
        { "$x + hostnested(\"$x + hostnested(4)\") + 1", "17" },
        { "hostnested(\"1 / 0\") + \"after\"", "after" },
    });
    // An error of this statement is not lost in what a later expression runs.
    KIT_String value;
    EXPECT_FALSE(fml_Evaluate("1 / 0", value));
    EXPECT_TRUE(fml_Evaluate("hostnested(\"nosuch\")", value));
    EXPECT_EQ(FML::theErrNo, FML_DIVISION_BY_ZERO);
}

TEST_F(FML_Function, DepthIsBounded) {
    EXPECT_EQ(evaluate("hostdeep()"), error(FML_NESTING_TOO_DEEP));
}

TEST_F(FML_Function, Types) {
    check({
        { "host_float * 10", "1" },
        { "$host_text + 1", "13" },
        { "\"<$host_text>\"", "<12>" },
        { "hostdouble(host_vector)", "[10]" },
        { "hostnameof(host_float)", "host_float" },
        { "hostnameof(1)", error(FML_WRONG_TYPE) },
        { "host_other == 1", error(FML_WRONG_TYPE) },
        { "1 || host_other", "1" },
    });
    manager.variables["host_text"] = "variable";
    EXPECT_EQ(evaluate("host_text"), "12") << "a bare name asks the types first";
    EXPECT_EQ(evaluate("$host_text"), "variable");
    EXPECT_EQ(fml_AllocSymbol(99, 0), nullptr);
    fml_FreeSymbol(nullptr);
}

int theNotices = 0;

TEST_F(FML_Function, ANewFunctionTakesTheName) {
    static const auto notice = [](FML_FUNCTION *) { theNotices++; };
    static FML_FUNCTION older =
        function("abs", 0, FML_FLOAT, nullptr, [](auto, auto result, auto, auto) { result->value.number = 1; });
    static FML_FUNCTION newer =
        function("abs", 0, FML_FLOAT, nullptr, [](auto, auto result, auto, auto) { result->value.number = 2; });
    older.added = older.replaced = notice;
    check({ { "abs(-3)", "3" } });
    fml_AddFunction(&older);
    check({ { "abs(-3)", error(FML_ARGUMENT_COUNT) }, { "abs()", "1" } });
    fml_AddFunction(&newer, "abs()\nThe host's.");
    check({ { "abs()", "2" } });
    EXPECT_EQ(theNotices, 2);
    std::ostringstream printed;
    fml_PrintHelp(printed, "abs", nullptr);
    EXPECT_EQ(printed.str(), "abs()\n    The host's.\n");
}

TEST(fml_Vector, ScanAndText) {
    static const struct {
        const char *text, *result;
    } theCases[] = {
        { "1 2,3 , 4", "[1, 2, 3, 4]" }, { " [ -1.5 2e1 ] ", "[-1.5, 20]" }, { "[]", "[]" }, { "7", "[7]" }
    };
    static const char *const theWrongOnes[] = { "", nullptr, "1,,2", "1,", ",1", "[1", "1]", "[", "1 x" };
    fml_Vector vector;
    for (const auto &c : theCases) {
        EXPECT_TRUE(vector.scan(c.text)) << c.text;
        std::string text;
        vector.appendText(text);
        EXPECT_EQ(text, c.result) << c.text;
    }
    for (const char *text : theWrongOnes)
        EXPECT_FALSE(vector.scan(text)) << (text ? text : "null");
    EXPECT_EQ(vector.getValue(0), 7) << "it keeps what it had";
}

}   // namespace
