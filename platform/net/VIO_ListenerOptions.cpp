// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/net/VIO_ListenerOptions.h>

#include <algorithm>
#include <charconv>
#include <iterator>
#include <ostream>
#include <utility>

#include <arpa/inet.h>

#include <orvlang/platform/kit/KIT_Char.h>
#include <orvlang/platform/kit/KIT_Number.h>
#include <orvlang/platform/osl/KIT_Immortal.h>

namespace {

using Options = VIO_ListenerOptions;

constexpr double theShortestWait = 0.001;   // seconds
constexpr double theLongestWait = 1000000;
constexpr size_t theLargestCount = 1 << 30;   // a delivery has an int for its length

constinit KIT_Immortal<Options> theDefault;

/// Reads one of two words. Returns false for any other.
bool readChoice(std::string_view value, const char *off, const char *on, bool &choice) {
    if (value != off && value != on)
        return false;
    choice = value == on;
    return true;
}

bool readBind(Options &options, std::string_view value) {
    in6_addr address;
    char canonical[INET6_ADDRSTRLEN];
    const std::string text(value);
    const int family = text.find(':') == text.npos ? AF_INET : AF_INET6;
    if (value == "loopback" || value == "127.0.0.1")
        options.bind.clear();
    else if (value == "any" || value == "0.0.0.0" || value == "::")
        options.bind = "any";
    else if (::inet_pton(family, text.c_str(), &address) == 1)
        options.bind = ::inet_ntop(family, &address, canonical, sizeof canonical);
    else
        return false;
    return true;
}

bool readUser(Options &options, std::string_view value) {
    return readChoice(value, "same", "any", options.anyUser);
}

bool readBrowser(Options &options, std::string_view value) {
    return readChoice(value, "refuse", "pass", options.passBrowsers);
}

/// Calls `read` with each of the names between commas; false as soon as that returns false.
template <typename Read>
bool readList(std::string_view value, Read read) {
    for (size_t at = 0; at <= value.size();) {
        const size_t comma = std::min(value.find(',', at), value.size());
        if (!read(value.substr(at, comma - at)))
            return false;
        at = comma + 1;
    }
    return true;
}

bool readHost(Options &options, std::string_view value) {
    std::vector<std::string> hosts;
    const bool isName = value != "any" && value != "loopback";
    const bool isValid = !isName || readList(value, [&](std::string_view name) {
        std::transform(name.begin(), name.end(), std::back_inserter(hosts.emplace_back()), KITtoLower);
        const bool isAddress = name.starts_with('[') && name.find(']') == name.size() - 1;
        return !name.empty() && (isAddress || name.find_first_of(":[]") == name.npos);
    });
    if (!isValid)
        return false;
    options.anyHost = value == "any";
    options.hosts = std::move(hosts);
    return true;
}

bool readWait(Options &options, std::string_view value) {
    double seconds;
    if (!KITisNumber(value, &seconds) || !(seconds >= theShortestWait && seconds <= theLongestWait))
        return false;
    options.wait = static_cast<long long>(seconds * 1e9);
    return true;
}

bool readCount(std::string_view value, size_t least, size_t &count) {
    size_t number;
    const char *const end = value.data() + value.size();
    const std::from_chars_result result = std::from_chars(value.data(), end, number);
    if (result.ec != std::errc() || result.ptr != end || number < least || number > theLargestCount)
        return false;
    count = number;
    return true;
}

bool readMaxBytes(Options &options, std::string_view value) {
    return readCount(value, 1, options.maxBytes);
}

bool readClients(Options &options, std::string_view value) {
    return readCount(value, 0, options.clients);
}

/// 0 for an unknown name.
unsigned formOf(std::string_view name) {
    if (name == "text")
        return Options::Text;
    if (name == "xml")
        return Options::Xml;
    return name == "http" ? Options::Http : 0u;
}

bool readAccept(Options &options, std::string_view value) {
    unsigned forms = 0;
    const bool isValid = readList(value, [&](std::string_view name) {
        const unsigned form = formOf(name);
        forms |= form;
        return form != 0;
    });
    if (isValid)
        options.accept = forms;
    return isValid;
}

constexpr struct {
    const char *name;
    bool (*read)(Options &options, std::string_view value);   // false, and nothing changed, for a wrong value
} theRows[] = {
    { "bind", readBind }, { "user", readUser },          { "browser", readBrowser }, { "host", readHost },
    { "wait", readWait }, { "max-bytes", readMaxBytes }, { "clients", readClients }, { "accept", readAccept },
};

}   // namespace

std::string VIO_ListenerOptions::bindHost() const {
    return bind.find(':') == bind.npos ? bind : '[' + bind + ']';
}

void VIO_ListenerOptions::setDefault(const char *text, std::ostream *complaints) {
    theDefault.object = {};
    theDefault.object.readWords(text, complaints);
}

VIO_ListenerOptions VIO_ListenerOptions::parse(const char *text, std::ostream *complaints) {
    VIO_ListenerOptions options = theDefault.object;
    options.readWords(text, complaints);
    return options;
}

void VIO_ListenerOptions::readWords(const char *words, std::ostream *complaints) {
    const std::string_view text(words ? words : "");
    for (size_t at = text.find_first_not_of(KITspaces); at < text.size();) {
        const size_t end = std::min(text.find_first_of(KITspaces, at), text.size());
        const std::string_view word = text.substr(at, end - at);
        const size_t sign = std::min(word.find_first_of("=:"), word.size());
        const std::string_view value = word.substr(std::min(sign + 1, word.size()));
        if (!readWord(word.substr(0, sign), value) && complaints)
            *complaints << "Wrong listener option " << word << std::endl;
        at = text.find_first_not_of(KITspaces, end);
    }
}

bool VIO_ListenerOptions::readWord(std::string_view name, std::string_view value) {
    for (const auto &row : theRows)
        if (name == row.name)
            return row.read(*this, value);
    return false;
}
