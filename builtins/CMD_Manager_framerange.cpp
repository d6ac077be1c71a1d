// SPDX-License-Identifier: Apache-2.0
// The range of frames that a command of a host works on, from the command's options.
#include <orvlang/engine/CMD_Manager.h>

#include <orvlang/engine/CMD_Args.h>
#include <orvlang/platform/kit/KIT_Number.h>
#include <orvlang/platform/osl/KIT_Thread.h>

#include <algorithm>
#include <limits>

namespace {

int numberOf(const CMD_Args &args, char option, int slot) {
    const char *text = args.argp(option, slot);
    return text ? KITatoi(text) : 0;
}

int frameAt(double seconds, float framesPerSecond) {
    constexpr int thePlaces = 3;
    const double frame = seconds * double(framesPerSecond) + 1.0;
    const double nice = double(TRK_Manager::niceNumber(static_cast<float>(frame), thePlaces));
    return static_cast<int>(
        std::clamp(nice, double(std::numeric_limits<int>::min()), double(std::numeric_limits<int>::max())));
}

}   // namespace

void CMD_Manager::getFrameRange(CMD_Args &args, int &start, int &end, int &inc, char rangeOption,
                                char incOption) {
    if (args.found(rangeOption)) {
        start = numberOf(args, rangeOption, 0);
        end = numberOf(args, rangeOption, 1);
    } else {
        start = end = frameAt(getEvaluateTime(KIT_Thread::getMySequentialThreadIndex()), getFramesPerSecond());
    }
    inc = args.found(incOption) ? numberOf(args, incOption, 0) : 1;
    if (inc == 0)
        inc = 1;
    if ((end < start && inc > 0) || (end > start && inc < 0))
        inc = inc == std::numeric_limits<int>::min() ? std::numeric_limits<int>::max() : -inc;
}
