// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/fml/FML_Cache.h>

#include <algorithm>

FML_Cache::Program FML_Cache::find(std::string_view text, std::size_t hash) {
    for (Slot &slot : setOf(hash)) {
        if (slot.hash != hash || !slot.program || slot.text != text)
            continue;
        slot.lastUse = ++uses;
        return slot.program;
    }
    return nullptr;
}

bool FML_Cache::isWorthStoring(std::string_view text, std::size_t hash) {
    if (text.size() > theLongestText)
        return false;
    std::size_t &sighting = sightings[(hash / theSets) % theSightings];
    const bool seenBefore = sighting == hash;
    sighting = hash;
    return seenBefore;
}

void FML_Cache::store(std::string_view text, std::size_t hash, Program program) {
    Set &set = setOf(hash);
    const auto usedEarlier = [](const Slot &a, const Slot &b) { return a.lastUse < b.lastUse; };
    Slot &slot = *std::min_element(set.begin(), set.end(), usedEarlier);
    slot = { hash, std::string(text), std::move(program), ++uses };
}

void FML_Cache::clear() {
    for (Set &set : sets)
        set.fill({});
    sightings.fill(0);
}

std::size_t FML_Cache::entries() const {
    std::size_t count = 0;
    for (const Set &set : sets)
        count += static_cast<std::size_t>(
            std::count_if(set.begin(), set.end(), [](const Slot &slot) { return slot.program != nullptr; }));
    return count;
}
