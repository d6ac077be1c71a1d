// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/kit/KIT_String.h>

#include <orvlang/platform/kit/KIT_Char.h>
#include <orvlang/platform/kit/KIT_CshReference.h>
#include <orvlang/platform/kit/KIT_CshTemplate.h>
#include <orvlang/platform/kit/KIT_Number.h>
#include <orvlang/platform/kit/KIT_WorkArgs.h>
#include <orvlang/platform/osl/OrvaneEnvironment.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <new>
#include <utility>

namespace {

// What malloc spends on the shortest text anyway, less the NUL.
constexpr std::size_t theLeastCapacity = 23;

char *checked(void *memory) {
    if (!memory)
        throw std::bad_alloc();
    return static_cast<char *>(memory);
}

int hexValue(char c) {
    if (KITisDigit(c))
        return c - '0';
    const char lower = KITtoLower(c);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

}   // namespace

bool KITlookupEnvironment(const char *name, KIT_String &value) {
    const char *found = OrvaneGetenv(name);
    if (found)
        value = found;
    return found != nullptr;
}

// Text and memory

KIT_String::KIT_String(const char *text) {
    if (text)
        assign(text);
}

KIT_String::KIT_String(const KIT_String &other) {
    if (!other.isNull())
        assign(other.view());
}

KIT_String::KIT_String(KIT_String &&other) noexcept
    : chars(std::exchange(other.chars, nullptr)), used(std::exchange(other.used, 0)),
      capacity(std::exchange(other.capacity, 0)) {}

KIT_String::~KIT_String() {
    if (capacity)
        std::free(chars);
}

KIT_String KIT_String::borrow(const char *text) {
    return text ? borrowTerminated(text) : KIT_String();
}

KIT_String KIT_String::borrowTerminated(std::string_view text) {
    KIT_String result;
    result.chars = const_cast<char *>(text.data());   // with no capacity it is never written to
    result.used = text.size();
    return result;
}

KIT_String &KIT_String::operator=(const char *text) {
    if (text)
        assign(text);
    else
        setNull();
    return *this;
}

KIT_String &KIT_String::operator=(const KIT_String &other) {
    if (other.isNull())
        setNull();
    else
        assign(other.view());
    return *this;
}

KIT_String &KIT_String::operator=(KIT_String &&other) noexcept {
    if (this == &other)
        return *this;
    setNull();
    std::swap(chars, other.chars);
    std::swap(used, other.used);
    std::swap(capacity, other.capacity);
    return *this;
}

void KIT_String::setNull() {
    if (capacity)
        std::free(chars);
    chars = nullptr;
    used = 0;
    capacity = 0;
}

void KIT_String::assign(std::string_view text) {
    if (text.size() <= capacity && capacity) {
        if (!text.empty())
            std::memmove(chars, text.data(), text.size());
    } else {
        // A text that has grown once is likely to grow again; the first one gets what it needs.
        const std::size_t room = std::max({ text.size(), theLeastCapacity, capacity + capacity / 2 });
        char *fresh = checked(std::malloc(room + 1));
        if (!text.empty())
            std::memcpy(fresh, text.data(), text.size());
        if (capacity)
            std::free(chars);
        chars = fresh;
        capacity = room;
    }
    used = text.size();
    chars[used] = 0;
}

void KIT_String::harden() {
    if (chars)
        reserve(used);
}

char *KIT_String::steal() {
    harden();
    used = 0;
    capacity = 0;
    return std::exchange(chars, nullptr);
}

char *KIT_String::data() {
    reserve(used);
    return chars;
}

void KIT_String::reserve(std::size_t room) {
    if (capacity && room <= capacity)
        return;
    room = std::max({ room, used, theLeastCapacity });
    if (capacity) {
        chars = checked(std::realloc(chars, room + 1));
    } else {
        char *fresh = checked(std::malloc(room + 1));
        if (used)
            std::memcpy(fresh, chars, used);
        fresh[used] = 0;
        chars = fresh;
    }
    capacity = room;
}

void KIT_String::resizeUninitialized(std::size_t length) {
    reserve(length);
    used = length;
    chars[used] = 0;
}

KIT_String &KIT_String::append(std::string_view text) {
    if (!capacity || text.size() > capacity - used) {
        const std::less_equal<const char *> notAfter;
        const bool own = chars && notAfter(chars, text.data()) && notAfter(text.data(), chars + used);
        const std::size_t offset = own ? static_cast<std::size_t>(text.data() - chars) : 0;
        reserve(std::max(used + text.size(), capacity * 2));
        if (own)
            text = { chars + offset, text.size() };
    }
    if (!text.empty())
        std::memmove(chars + used, text.data(), text.size());
    used += text.size();
    chars[used] = 0;
    return *this;
}

// Conversions and parts

int KIT_String::toInt() const {
    return KITatoi(view());
}

KIT_String KIT_String::itoa(int value) {
    KIT_NumberText room;
    return KIT_String(KITformatInt(value, room));
}

void KIT_String::toLower() {
    char *bytes = data();
    for (std::size_t i = 0; i < used; ++i)
        bytes[i] = KITtoLower(bytes[i]);
}

KIT_String KIT_String::substr(long start, long length) const {
    const std::size_t first = std::min(static_cast<std::size_t>(std::max(start, 0L)), used);
    return KIT_String(view().substr(first, static_cast<std::size_t>(std::max(length, 0L))));
}

int KIT_String::substitute(std::string_view what, std::string_view with, bool all) {
    if (what.empty())
        return 0;
    KIT_String result;
    std::size_t done = 0;
    int count = 0;
    for (std::size_t at; (at = view().find(what, done)) != std::string_view::npos; done = at + what.size()) {
        result.append(view().substr(done, at - done)).append(with);
        ++count;
        if (!all) {
            done = at + what.size();
            break;
        }
    }
    if (count == 0)
        return 0;
    result.append(view().substr(done));
    *this = std::move(result);
    return count;
}

bool KIT_String::isFloat(double *value, const char **end) const {
    if (!end)
        return KITisNumber(view(), value);
    const std::size_t length = KITscanNumber(view(), value);
    *end = c_str() + length;
    return length > 0;
}

bool KIT_String::isInteger(int *value) const {
    int result = 0;
    if (isEmpty() || KITscanInteger(view(), &result) != used)
        return false;
    if (value)
        *value = result;
    return true;
}

// Escapes and variables

namespace {

/// Reads the control sequence at the start of text, a backslash and what follows. Its length, 0 when it is
/// none.
std::size_t readControlSequence(std::string_view text, char &byte) {
    if (text.size() < 2)
        return 0;
    static constexpr std::string_view theNames = "ntrabfve\\\"'";
    static constexpr std::string_view theBytes = "\n\t\r\a\b\f\v\033\\\"'";
    static_assert(theNames.size() == theBytes.size());
    const std::size_t place = theNames.find(text[1]);
    if (place != theNames.npos) {
        byte = theBytes[place];
        return 2;
    }
    if (text[1] != '0' && text[1] != 'x')
        return 0;
    const int base = text[1] == 'x' ? 16 : 8;
    const std::size_t limit = std::min<std::size_t>(text.size(), base == 16 ? 4 : 5);
    std::size_t length = 2;
    int value = 0;
    for (; length < limit && hexValue(text[length]) >= 0 && hexValue(text[length]) < base; ++length)
        value = value * base + hexValue(text[length]);
    if (base == 16 && length == 2)
        return 0;
    byte = static_cast<char>(value);
    return length;
}

}   // namespace

void KIT_String::expandControlSequences() {
    std::size_t from = view().find('\\');
    if (from == std::string_view::npos)
        return;
    char *bytes = data();
    std::size_t to = from;
    while (from < used) {
        char byte = bytes[from];
        const std::size_t length = byte == '\\' ? readControlSequence(view().substr(from), byte) : 0;
        bytes[to++] = byte;
        from += std::max<std::size_t>(length, 1);
    }
    resizeUninitialized(to);
}

void KIT_String::expandVariables(KIT_CshLookup variable) {
    const std::string_view text = view();
    std::size_t at = text.find('$');
    if (at == text.npos || !variable)
        return;
    KIT_CshReference reference(text);
    KIT_String result;
    KIT_String name;
    KIT_String value;
    std::size_t done = 0;
    for (; at != text.npos; at = text.find('$', at)) {
        if (!reference.read(at, false)) {
            ++at;
            continue;
        }
        name = reference.name();
        value.clear();
        const bool known = variable(name.c_str(), value) && !value.isEmpty();
        result.append(text.substr(done, at - done)).append(known ? value.view() : reference.fallback());
        at += reference.length();
        done = at;
    }
    if (done == 0)
        return;
    result.append(text.substr(done));
    *this = std::move(result);
}

// Order

namespace {

/// Compares the runs of digits that a and b begin with by their value and skips both. Sets zeros to the order of
/// their leading zeros unless that is decided already.
int compareDigits(const char *&a, const char *&b, int &zeros) {
    const char *firstA = a;
    const char *firstB = b;
    while (*a == '0')
        ++a;
    while (*b == '0')
        ++b;
    const auto zerosA = a - firstA;
    const auto zerosB = b - firstB;
    int order = 0;
    for (; KITisDigit(*a) && KITisDigit(*b); ++a, ++b) {
        if (order == 0)
            order = *a - *b;
    }
    if (KITisDigit(*a) || KITisDigit(*b))
        return KITisDigit(*a) ? 1 : -1;
    if (order != 0)
        return order;
    if (zeros == 0 && zerosA != zerosB)
        zeros = zerosA < zerosB ? -1 : 1;
    return 0;
}

unsigned char foldCase(char c, bool caseSensitive) {
    return static_cast<unsigned char>(caseSensitive ? c : KITtoLower(c));
}

}   // namespace

int KIT_String::compareNumberedString(const char *a, const char *b, bool caseSensitive) {
    int zeros = 0;
    while (*a && *b) {
        if (KITisDigit(*a) && KITisDigit(*b)) {
            const int order = compareDigits(a, b, zeros);
            if (order != 0)
                return order;
            continue;
        }
        const int order = foldCase(*a++, caseSensitive) - foldCase(*b++, caseSensitive);
        if (order != 0)
            return order;
    }
    if (*a || *b)
        return *a ? 1 : -1;
    return zeros;
}

int KIT_String::qsortCmpNumberedString(const void *a, const void *b) {
    return compareNumberedString(*static_cast<const char *const *>(a), *static_cast<const char *const *>(b),
                                 true);
}

// Words

int KIT_String::cshParse(KIT_WorkArgs &words, KIT_CshLookup variable, KIT_CshLookup expression,
                         KIT_CshTemplate *scratch, KIT_StringCshIO *io) const {
    if (!scratch) {
        KIT_CshTemplate own;
        return cshParse(words, variable, expression, &own, io);
    }
    scratch->parse(view(), io != nullptr);
    return scratch->expand(words, variable, expression, io);
}

int KIT_String::parseInPlace(KIT_WorkArgs &words) const {
    KIT_CshTemplate own;
    own.parseQuotesOnly(view());
    return own.expand(words, nullptr, nullptr, nullptr);
}

int KIT_String::tokenizeInPlace(KIT_WorkArgs &words, const char *separators) const {
    words.clear();
    const std::string_view text = view();
    std::size_t end = 0;
    for (std::size_t at; (at = text.find_first_not_of(separators, end)) != text.npos;) {
        end = std::min(text.find_first_of(separators, at), text.size());
        words.append(text.substr(at, end - at));
    }
    return words.argc();
}
