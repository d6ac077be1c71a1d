// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/osl/OSL_Environment.h>

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>

#include <unistd.h>

#include <orvlang/platform/osl/KIT_Lock.h>

/// What is known of a name: its place in the table and, with room for a value, a string of our own for it.
struct OSL_Environment::Text {
    static constexpr uint32_t NoSlot = UINT32_MAX;
    static constexpr size_t MaxValue = 1U << 30;

    uint32_t slot;   // place in the table; NoSlot when the name is not set
    uint32_t nameLength;
    uint32_t room;   // bytes for the value, the NUL included; 0 when there is no string of our own
    bool isShown;    // ours is the string in the table, not one of other code

    char *ours() { return reinterpret_cast<char *>(this + 1); }   // "NAME=" and the value
    std::string_view name() { return { ours(), nameLength }; }
    char *value() { return ours() + nameLength + 1; }
};

namespace {

std::string_view nameOf(const char *string) {
    const char *const equals = std::strchr(string, '=');
    return { string, equals ? static_cast<size_t>(equals - string) : 0 };
}

bool isLegalName(std::string_view name) {
    return !name.empty() && name.find('=') == name.npos && name.find('\0') == name.npos;
}

const char *findByWalk(std::string_view name) {
    for (char **string = environ; string && *string; ++string)
        if (nameOf(*string) == name)
            return *string;
    return nullptr;
}

bool refuse() {
    errno = EINVAL;
    return false;
}

}   // namespace

const char *OSL_Environment::get(std::string_view name) {
    if (name.empty())
        return nullptr;
    const KIT_LockHolder holder(lock);
    const char *string = nullptr;
    if (tables.empty())
        string = findByWalk(name);   // nothing was set yet: a short walk is cheaper than an index
    else if (const Text *const text = findCurrent(name); text && text->slot != Text::NoSlot)
        string = tables.back()[text->slot];
    return string ? string + name.size() + 1 : nullptr;
}

bool OSL_Environment::set(std::string_view name, std::string_view value) {
    const KIT_LockHolder holder(lock);
    Text *text = findCurrent(name);
    // A name that is known was found legal before.
    if ((!text && !isLegalName(name)) || value.size() > Text::MaxValue)
        return refuse();
    if (!text || text->room <= value.size())
        text = makeText(name, value.size() + 1, text);
    // The value may be the text that is there. The last byte of the room is always a NUL.
    std::memmove(text->value(), value.data(), value.size());
    text->value()[value.size()] = 0;
    show(*text);
    return true;
}

bool OSL_Environment::unset(std::string_view name) {
    const KIT_LockHolder holder(lock);
    Text *const text = findCurrent(name);
    if (!text)
        return isLegalName(name) || refuse();
    if (text->slot != Text::NoSlot)
        hide(*text);
    return true;
}

OSL_Environment::Text *OSL_Environment::findText(std::string_view name) const {
    const auto found = index.find(name);
    return found == index.end() ? nullptr : found->second;
}

/// Finds what is known of a name after making sure that it is still so.
OSL_Environment::Text *OSL_Environment::findCurrent(std::string_view name) {
    if (!isInStep())
        readTable();
    Text *const text = findText(name);
    if (!text || text->slot == Text::NoSlot)
        return text;
    const char *const string = tables.back()[text->slot];
    if (text->isShown ? string == text->ours() : string && nameOf(string) == name)
        return text;
    readTable();
    return findText(name);
}

bool OSL_Environment::isInStep() const {
    if (tables.empty() || environ != tables.back().get())
        return false;
    return !environ[count] && (count == 0 || environ[count - 1]);
}

/// Copies the table that `environ` points to, which other code made or changed. Of a name that is there twice the
/// first one counts and the others are dropped.
void OSL_Environment::readTable() {
    for (const auto &[name, text] : index)
        text->slot = Text::NoSlot;
    char **const found = environ;
    size_t foundCount = 0;
    while (found && found[foundCount])
        ++foundCount;
    if (tables.empty() || found != tables.back().get())
        count = 0;
    makeRoom(foundCount + 1);
    char **const table = tables.back().get();
    count = 0;
    for (size_t i = 0; i < foundCount; ++i) {
        char *const string = found[i];
        const std::string_view name = nameOf(string);
        if (!name.empty()) {
            Text *text = findText(name);
            if (text && text->slot != Text::NoSlot)
                continue;
            if (!text)
                text = makeText(name, 0, nullptr);
            text->isShown = string == text->ours();
            text->slot = static_cast<uint32_t>(count);
        }
        table[count++] = string;
    }
    table[count] = nullptr;
    environ = table;
}

/// Makes our own string the one in the table.
void OSL_Environment::show(Text &text) {
    if (text.slot == Text::NoSlot) {
        makeRoom(count + 2);
        tables.back()[count + 1] = nullptr;
        text.slot = static_cast<uint32_t>(count++);
        environ = tables.back().get();
    }
    tables.back()[text.slot] = text.ours();
    text.isShown = true;
}

void OSL_Environment::hide(Text &text) {
    char **const table = tables.back().get();
    char *const last = table[--count];
    table[text.slot] = last;
    table[count] = nullptr;
    if (Text *moved = findText(nameOf(last)))
        moved->slot = text.slot;
    text.slot = Text::NoSlot;
}

/// Makes the table large enough for that many pointers; the first `count` stay.
void OSL_Environment::makeRoom(size_t slots) {
    if (slots <= capacity)
        return;
    const size_t size = slots < 64 ? 128 : 2 * slots;
    auto table = std::make_unique<char *[]>(size);
    if (count > 0)
        std::memcpy(table.get(), tables.back().get(), count * sizeof(char *));
    tables.push_back(std::move(table));
    capacity = size;
}

/// Makes a string of our own with that much room, or twice that when it replaces one that became too small, and
/// enters it in the index.
OSL_Environment::Text *OSL_Environment::makeText(std::string_view name, size_t room, Text *older) {
    if (older && older->room > 0)
        room *= 2;
    void *const memory = std::calloc(1, sizeof(Text) + name.size() + 1 + room);
    if (!memory)
        throw std::bad_alloc();
    const uint32_t slot = older ? older->slot : Text::NoSlot;
    Text *const text =
        new (memory) Text{ slot, static_cast<uint32_t>(name.size()), static_cast<uint32_t>(room), false };
    std::memcpy(text->ours(), name.data(), name.size());
    text->ours()[name.size()] = '=';
    // The name in the index remains the one in the older text, which is kept as well.
    const auto [entry, isNew] = index.try_emplace(text->name(), text);
    if (!isNew) {
        outgrown.push_back(older);
        entry->second = text;
    }
    return text;
}
