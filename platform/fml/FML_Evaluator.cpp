// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/fml/FML_Evaluator.h>

#include <orvlang/platform/fml/FML_Compiler.h>
#include <orvlang/platform/fml/FML_Evaluation.h>
#include <orvlang/platform/fml/FML_Registry.h>
#include <orvlang/platform/kit/KIT_Nesting.h>
#include <orvlang/platform/kit/KIT_String.h>
#include <orvlang/platform/osl/KIT_Immortal.h>

#include <new>
#include <stdexcept>

namespace {

// An expression may call a function of a host, and that one whatever it likes.
constexpr std::size_t theStackReserve = 256 * 1024;
// Evaluations kept for the next expressions: more only matter while that many are nested.
constexpr std::size_t theMostIdle = 8;
// A stored program holds little text, and there are many of them.
constexpr std::size_t theStoredTextBlock = 64;

}   // namespace

/// An evaluation for the time of one expression.
class FML_Evaluator::Lease {
public:
    explicit Lease(FML_Evaluator &evaluator) : evaluator(evaluator) {
        if (evaluator.idle.empty()) {
            evaluation = std::make_unique<FML_Evaluation>();
            return;
        }
        evaluation = std::move(evaluator.idle.back());
        evaluator.idle.pop_back();
    }
    ~Lease() {
        // What it frees may belong to a host, whose code may evaluate: it is not idle before that is done.
        evaluation->reset();
        if (evaluator.idle.size() < theMostIdle)
            evaluator.idle.push_back(std::move(evaluation));
    }
    Lease(const Lease &) = delete;
    Lease &operator=(const Lease &) = delete;

    FML_Evaluation &operator*() { return *evaluation; }

private:
    FML_Evaluator &evaluator;
    std::unique_ptr<FML_Evaluation> evaluation;
};

FML_Evaluator::FML_Evaluator() {
    idle.reserve(theMostIdle);
}

FML_Evaluator::~FML_Evaluator() = default;

FML_Evaluator &FML_Evaluator::get() {
    static KIT_Immortal<FML_Evaluator> theEvaluator;
    return theEvaluator.object;
}

int FML_Evaluator::evaluate(std::string_view text, KIT_String &value, int thread) {
    if (KIT_Nesting::isStackShort(theStackReserve))
        return FML_NESTING_TOO_DEEP;
    try {
        Lease evaluation(*this);
        return evaluateIn(*evaluation, text, value, thread);
    } catch (const std::bad_alloc &) {
        return FML_TEXT_TOO_LONG;
    } catch (const std::length_error &) {
        return FML_TEXT_TOO_LONG;
    }
}

int FML_Evaluator::evaluateIn(FML_Evaluation &evaluation, std::string_view text, KIT_String &value,
                              int thread) {
    const unsigned generation = FML_Registry::get().getGeneration();
    if (cacheGeneration != generation) {
        cache.clear();
        cacheGeneration = generation;
    }
    const std::size_t hash = FML_Cache::hash(text);
    FML_Cache::Program stored = cache.find(text, hash);
    const FML_Program *program = stored.get();
    if (!program) {
        std::shared_ptr<FML_Program> toStore;
        if (cache.isWorthStoring(text, hash))
            toStore = std::make_shared<FML_Program>(theStoredTextBlock);
        FML_Program &compiled = toStore ? *toStore : evaluation.getScratchProgram();
        const FML_ERROR error = FML_Compiler(compiled, evaluation).compile(text);
        if (error != FML_NO_ERROR)
            return error;
        program = &compiled;
        stored = std::move(toStore);
        if (stored)
            cache.store(text, hash, stored);
    }
    FML_Value result;
    if (!evaluation.run(*program, thread, result))
        return evaluation.getError();
    const std::string_view resultText = evaluation.textOf(result);
    if (evaluation.getError() != FML_NO_ERROR)
        return evaluation.getError();
    value.assign(resultText);
    return FML_NO_ERROR;
}
