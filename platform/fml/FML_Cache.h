// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/fml/FML_Program.h>

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

/// The compiled forms of the texts that are evaluated again and again.
///
/// A text is stored at its second evaluation, so that what runs once does not displace what runs often. The number of
/// slots is fixed; a new text replaces the one of its set that was used least recently. An evaluation shares the
/// ownership of its program, which may thus outlive its slot.
class FML_Cache {
public:
    using Program = std::shared_ptr<const FML_Program>;

    static std::size_t hash(std::string_view text) { return std::hash<std::string_view>()(text); }

    /// Returns the program of `text`, whose hash is `hash`; null when it has none.
    Program find(std::string_view text, std::size_t hash);
    /// Returns whether the text was looked up before, lately, and may thus be stored.
    bool isWorthStoring(std::string_view text, std::size_t hash);
    void store(std::string_view text, std::size_t hash, Program program);
    void clear();

    std::size_t entries() const;

private:
    static constexpr std::size_t theWays = 4;
    static constexpr std::size_t theSets = 256;
    static constexpr std::size_t theSightings = 1024;
    static constexpr std::size_t theLongestText = 1024;

    struct Slot {
        std::size_t hash = 0;
        std::string text;
        Program program;   // null: the slot is free
        std::uint64_t lastUse = 0;
    };
    using Set = std::array<Slot, theWays>;

    Set &setOf(std::size_t hash) { return sets[hash % theSets]; }

    std::array<Set, theSets> sets;
    std::array<std::size_t, theSightings> sightings = {};   // hashes of texts that have no slot yet
    std::uint64_t uses = 0;
};
