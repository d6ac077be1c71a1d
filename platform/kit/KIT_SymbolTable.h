// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

#include <orvlang/platform/kit/KIT_Export.h>
#include <orvlang/platform/kit/KIT_Thing.h>

/// Maps exact names to one pointer each, by hash. What the pointers point to belongs to the user. A look-up allocates
/// nothing, and an empty table has no memory. The order of `forEach` is that of the hash, so it means nothing.
///
/// Open addressing with linear probing, at most four fifths full: one cache line for most look-ups, and half the memory
/// of a table of nodes. A look-up takes 7.6 ns among 100 names and 10 ns among 10 000; std::unordered_map takes 12 and
/// 27 ns (bench/parts.cpp).
class CMD_API KIT_SymbolTable {
public:
    constexpr KIT_SymbolTable() = default;
    ~KIT_SymbolTable() { clear(); }
    KIT_SymbolTable(const KIT_SymbolTable &) = delete;
    KIT_SymbolTable &operator=(const KIT_SymbolTable &) = delete;

    /// Stores a copy of the name. Returns 1 when the name is new; 0 when it was there, and has the new thing now.
    int addSymbol(std::string_view name, KIT_Thing thing) { return add(name, thing, true); }
    /// The same, but a new name is borrowed: its bytes must stay alive and unchanged until the symbol is deleted.
    int addBorrowedSymbol(std::string_view name, KIT_Thing thing) { return add(name, thing, false); }
    /// Returns non-zero when the name is there; otherwise the thing is unchanged.
    int findSymbol(std::string_view name, KIT_Thing &thing) const;
    /// Returns non-zero when the name was there.
    int deleteSymbol(std::string_view name);
    void clear();

    size_t entries() const { return count; }

    /// Calls the visitor with each name and thing. It must not change the table.
    template <typename Visitor>
    void forEach(Visitor visitor) const {
        for (size_t i = 0; i < capacity; ++i)
            if (slots[i].name)
                visitor(slots[i].view(), slots[i].thing);
    }

private:
    struct Slot {
        const char *name = nullptr;   // null in a free slot
        KIT_Thing thing;
        uint32_t hash = 0;
        uint32_t length : 31 = 0;
        uint32_t owned : 1 = 0;   // the name is a copy of the table's own

        std::string_view view() const { return { name, length }; }
    };

    int add(std::string_view name, KIT_Thing thing, bool copyName);
    Slot *findSlot(std::string_view name, uint32_t hash) const;
    static Slot &firstFree(Slot *table, size_t size, uint32_t hash);
    void grow();
    static void freeName(Slot &slot);

    std::unique_ptr<Slot[]> slots;
    size_t capacity = 0;   // a power of two, or 0
    size_t count = 0;
};
