// SPDX-License-Identifier: Apache-2.0
#include "ExpressionTest.h"

#include <orvlang/platform/fml/FML_Cache.h>
#include <orvlang/platform/fml/FML_Evaluator.h>
#include <orvlang/platform/fml/FML_Function.h>
#include <orvlang/platform/fml/FML_Symbol.h>

namespace {

using FML_CacheOfExpressions = ExpressionTest;

TEST_F(FML_CacheOfExpressions, WhatRunsOnceIsNotKept) {
    const FML_Cache &cache = FML_Evaluator::get().getCache();
    fml_SetOptimization(1);   // empties the cache
    evaluate("1 + 1");
    EXPECT_EQ(cache.entries(), 0u);
    evaluate("1 + 1");
    EXPECT_EQ(cache.entries(), 1u);
    for (int i = 0; i < 10000; i++)
        evaluate("1 + 0 * " + std::to_string(i));
    EXPECT_LT(cache.entries(), 20u);
}

TEST_F(FML_CacheOfExpressions, SizeIsBounded) {
    const FML_Cache &cache = FML_Evaluator::get().getCache();
    for (int i = 0; i < 5000; i++)
        for (int round = 0; round < 2; round++)
            EXPECT_EQ(evaluate("1 + " + std::to_string(i)), std::to_string(i + 1));
    EXPECT_LE(cache.entries(), 1024u);
    fml_SetOptimization(1);
    const std::string longText = "1" + std::string(5000, ' ');
    for (int round = 0; round < 3; round++)
        EXPECT_EQ(evaluate(longText), "1");
    EXPECT_EQ(cache.entries(), 0u);
}

// Drives every place of the cache to others while its caller runs out of the cache.
FML_FUNCTION theFlood(
    FML_VOLATILE, "flood", 0, FML_FLOAT, nullptr,
    [](FML_FUNCTION *, FML_SYMBOL *result, FML_SYMBOL **, int) {
        KIT_String value;
        for (int i = 0; i < 3000; i++)
            for (int round = 0; round < 2; round++)
                fml_Evaluate(("2 + " + std::to_string(i)).c_str(), value);
        fml_SetOptimization(1);
        result->value.number = 1;
    },
    nullptr, nullptr, 1, false);

TEST_F(FML_CacheOfExpressions, AProgramOutlivesItsPlace) {
    fml_AddFunction(&theFlood);
    manager.variables["x"] = "4";
    check({ { "\"$x and \" + flood() + \" and ${x}5\" + max(1, $x)", "4 and 1 and 454" } });
}

}   // namespace
