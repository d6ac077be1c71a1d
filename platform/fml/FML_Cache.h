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
/// A text comes in at its second evaluation, so that what runs once takes no place from what runs often. The number
/// of places is fixed; a newcomer takes that of the one that has waited longest among a few. Who runs a program
/// shares in it, and so it outlives its place.
class FML_Cache {
public:
    using Program = std::shared_ptr<const FML_Program>;

    static std::size_t hash(std::string_view text) { return std::hash<std::string_view>()(text); }

    /// The program of `text`, whose hash is `hash`; null when it has none.
    Program find(std::string_view text, std::size_t hash);
    /// Whether the text has been asked for before, lately, and may thus be stored.
    bool isWorthStoring(std::string_view text, std::size_t hash);
    void store(std::string_view text, std::size_t hash, Program program);
    void clear();

    std::size_t entries() const;

private:
    static constexpr std::size_t theWays = 4;
    static constexpr std::size_t theSets = 256;
    static constexpr std::size_t theSightings = 1024;
    static constexpr std::size_t theLongestText = 1024;

    struct Place {
        std::size_t hash = 0;
        std::string text;
        Program program;   // null: the place is free
        std::uint64_t lastUse = 0;
    };
    using Set = std::array<Place, theWays>;

    Set &setOf(std::size_t hash) { return sets[hash % theSets]; }

    std::array<Set, theSets> sets;
    std::array<std::size_t, theSightings> sightings = {};   // hashes of texts that have no place yet
    std::uint64_t uses = 0;
};
