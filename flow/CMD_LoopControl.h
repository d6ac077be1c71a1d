// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <limits>

/// What `break` and `continue` request of the loops of a manager, which read it when they are asked for their next line.
struct CMD_LoopControl {
    static constexpr int theMost = std::numeric_limits<int>::max();

    int breakLevel = 0;      // the number of loops that still have to end
    int continueLevel = 0;   // not 0: the pass ends
    int nestLevel = 0;       // the number of loops alive

    /// The level saturates: a script that fails again and again doubles it each time.
    void bumpBreakLevel(int delta) {
        const long long level = static_cast<long long>(breakLevel) + delta;
        breakLevel = static_cast<int>(std::clamp<long long>(level, -theMost, theMost));
    }
    void doubleBreakLevel() { breakLevel = breakLevel > theMost / 2 ? theMost : breakLevel * 2; }
    void bumpNestLevel(int delta) {
        nestLevel += delta;
        if (nestLevel == 0)
            breakLevel = 0;
    }
};
