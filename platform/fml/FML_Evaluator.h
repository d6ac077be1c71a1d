// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/fml/FML_Cache.h>

#include <memory>
#include <string_view>
#include <vector>

class FML_Evaluation;
class KIT_String;

/// Evaluates expressions: compiles a text or finds it in the cache, runs it in an evaluation, and returns the result
/// as text. One for the process, used by one thread at a time; running expressions may call it again.
class FML_Evaluator {
public:
    FML_Evaluator();
    ~FML_Evaluator();
    static FML_Evaluator &get();

    /// Returns an error number, or FML_NO_ERROR with `value` set.
    int evaluate(std::string_view text, KIT_String &value, int thread);

    const FML_Cache &getCache() const { return cache; }

private:
    class Lease;

    int evaluateIn(FML_Evaluation &evaluation, std::string_view text, KIT_String &value, int thread);

    FML_Cache cache;
    unsigned cacheGeneration = 0;
    std::vector<std::unique_ptr<FML_Evaluation>> idle;
};
