// SPDX-License-Identifier: Apache-2.0
#include <orvlang/flow/CMD_ForLoop.h>

#include <orvlang/engine/CMD_Manager.h>
#include <orvlang/platform/kit/KIT_Number.h>

namespace {

/// The last value that is still in the loop. Inexact arithmetic puts the last step of `0 to 1 step 0.1` just past
/// the limit, so the limit moves a thousandth of a step ahead, in double precision. It does not when the steps lead
/// away from it, or are 0 before it.
float widen(float start, float end, float step) {
    const bool ahead = start < end ? step > 0 : start > end ? step < 0 : start == end;
    return ahead ? static_cast<float>(end + step * 0.001) : end;
}

}   // namespace

CMD_ForLoop::~CMD_ForLoop() = default;

int CMD_ForLoop::setInitialState(CMD_Manager *, int argc, char *argv[]) {
    const auto isWord = [argc, argv](int i, std::string_view text) { return i < argc && argv[i] == text; };
    const auto number = [argv](int i) { return static_cast<float>(KITatof(argv[i])); };
    if (argc < 6 || !isWord(2, "=") || !isWord(4, "to"))
        return 0;
    variable = argv[1];
    start = number(3);
    if (argc >= 8 && isWord(6, "step"))
        step = number(7);
    end = widen(start, number(5), step);
    return 1;
}

int CMD_ForLoop::evaluateCondition(CMD_Manager *manager) {
    // From the count, and not from the value before: so the errors of the arithmetic do not add up.
    const float value = static_cast<float>(getIterationCount()) * step + start;
    if ((step > 0 && value > end) || (step < 0 && value < end))
        return 0;
    KIT_NumberText room;
    statement.assign("set -l '").append(variable.view()).append("' = ").append(KITformatFloat(value, room));
    manager->execute(statement.c_str(), 0, nullptr, nullptr, 1, true);
    return 1;
}
