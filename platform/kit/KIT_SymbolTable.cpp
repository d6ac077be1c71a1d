// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/kit/KIT_SymbolTable.h>

#include <cassert>
#include <cstring>
#include <utility>

namespace {

uint64_t readWord(const char *bytes) {
    uint64_t word;
    std::memcpy(&word, bytes, sizeof word);
    return word;
}

uint32_t readHalf(const char *bytes) {
    uint32_t half;
    std::memcpy(&half, bytes, sizeof half);
    return half;
}

uint64_t mix(uint64_t a, uint64_t b) {
    __extension__ typedef unsigned __int128 Product;
    const Product product = static_cast<Product>(a) * b;
    return static_cast<uint64_t>(product) ^ static_cast<uint64_t>(product >> 64);
}

/// Most names have up to 16 bytes: two loads, which may overlap, and two multiplications. The constants are the
/// first digits of the fractions of the square roots of 2, 3 and 5.
uint32_t hashOf(std::string_view name) {
    constexpr uint64_t K0 = 0x6a09e667f3bcc909, K1 = 0xbb67ae8584caa73b, K2 = 0x3c6ef372fe94f82b;
    const char *bytes = name.data();
    size_t left = name.size();
    uint64_t seed = K2 ^ left;
    for (; left > 16; bytes += 16, left -= 16)
        seed = mix(readWord(bytes) ^ K0, readWord(bytes + 8) ^ seed);
    uint64_t a = 0, b = 0;
    if (left >= 8) {
        a = readWord(bytes);
        b = readWord(bytes + left - 8);
    } else if (left >= 4) {
        a = readHalf(bytes);
        b = readHalf(bytes + left - 4);
    } else if (left > 0) {
        const auto byte = [&](size_t i) { return static_cast<uint64_t>(static_cast<unsigned char>(bytes[i])); };
        a = byte(0) << 16 | byte(left / 2) << 8 | byte(left - 1);
    }
    const uint64_t hash = mix(mix(a ^ K0, b ^ seed), K1);
    return static_cast<uint32_t>(hash ^ (hash >> 32));
}

}   // namespace

int KIT_SymbolTable::findSymbol(std::string_view name, KIT_Thing &thing) const {
    if (count == 0)
        return 0;
    const Slot *const slot = findSlot(name, hashOf(name));
    if (!slot)
        return 0;
    thing = slot->thing;
    return 1;
}

int KIT_SymbolTable::add(std::string_view name, KIT_Thing thing, bool copyName) {
    assert(name.size() < 1U << 31);
    const uint32_t hash = hashOf(name);
    if (Slot *const known = count > 0 ? findSlot(name, hash) : nullptr) {
        known->thing = thing;
        return 0;
    }
    const char *stored = name.data() ? name.data() : "";
    if (copyName && !name.empty()) {
        char *const copy = std::make_unique<char[]>(name.size()).release();   // freeName has it back
        stored = static_cast<const char *>(std::memcpy(copy, name.data(), name.size()));
    }
    if ((count + 1) * 5 > capacity * 4)
        grow();
    Slot &slot = firstFree(slots.get(), capacity, hash);
    slot.name = stored;
    slot.thing = thing;
    slot.hash = hash;
    slot.length = static_cast<uint32_t>(name.size()) & 0x7fffffff;
    slot.owned = copyName && !name.empty();
    ++count;
    return 1;
}

int KIT_SymbolTable::deleteSymbol(std::string_view name) {
    Slot *const slot = count > 0 ? findSlot(name, hashOf(name)) : nullptr;
    if (!slot)
        return 0;
    freeName(*slot);
    --count;
    // Close the gap: each slot after it moves there when its search would pass there.
    const size_t mask = capacity - 1;
    size_t gap = static_cast<size_t>(slot - slots.get());
    for (size_t i = (gap + 1) & mask; slots[i].name; i = (i + 1) & mask) {
        const size_t home = slots[i].hash & mask;
        if (((i - home) & mask) < ((i - gap) & mask))
            continue;
        slots[gap] = slots[i];
        gap = i;
    }
    slots[gap] = Slot();
    return 1;
}

void KIT_SymbolTable::clear() {
    for (size_t i = 0; i < capacity; ++i)
        freeName(slots[i]);
    slots.reset();
    capacity = 0;
    count = 0;
}

KIT_SymbolTable::Slot *KIT_SymbolTable::findSlot(std::string_view name, uint32_t hash) const {
    const size_t mask = capacity - 1;
    for (size_t i = hash & mask; slots[i].name; i = (i + 1) & mask)
        if (slots[i].hash == hash && slots[i].view() == name)
            return &slots[i];
    return nullptr;
}

KIT_SymbolTable::Slot &KIT_SymbolTable::firstFree(Slot *table, size_t size, uint32_t hash) {
    size_t i = hash & (size - 1);
    while (table[i].name)
        i = (i + 1) & (size - 1);
    return table[i];
}

void KIT_SymbolTable::grow() {
    const size_t size = capacity > 0 ? 2 * capacity : 8;
    auto larger = std::make_unique<Slot[]>(size);
    for (size_t i = 0; i < capacity; ++i)
        if (slots[i].name)
            firstFree(larger.get(), size, slots[i].hash) = slots[i];
    slots = std::move(larger);
    capacity = size;
}

void KIT_SymbolTable::freeName(Slot &slot) {
    if (slot.owned)
        std::unique_ptr<const char[]>(slot.name).reset();
}
