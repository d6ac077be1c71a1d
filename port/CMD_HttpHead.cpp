// SPDX-License-Identifier: Apache-2.0
#include <orvlang/port/CMD_HttpHead.h>

#include <algorithm>
#include <string>

#include <arpa/inet.h>

#include <orvlang/platform/kit/KIT_Char.h>
#include <orvlang/platform/kit/KIT_Number.h>
#include <orvlang/platform/net/VIO_ListenerOptions.h>
#include <orvlang/port/CMD_PortProtocol.h>

using namespace CMD_PortProtocol;

namespace {

constexpr std::string_view theBlanks = " \t\r";
constexpr std::string_view theVersion = " HTTP/";   // after the target
constexpr size_t theExaminedStart = 4096;           // of a line without an end

bool isUpper(char c) {
    return c >= 'A' && c <= 'Z';
}

/// Compares without regard to case. The second text is in lower case.
bool isSame(std::string_view text, std::string_view name) {
    return std::equal(text.begin(), text.end(), name.begin(), name.end(),
                      [](char a, char b) { return KITtoLower(a) == b; });
}

std::string_view trim(std::string_view text) {
    const size_t first = std::min(text.find_first_not_of(theBlanks), text.size());
    return text.substr(first, text.find_last_not_of(theBlanks) + 1 - first);
}

/// Returns the value of a `Host` line without its port; empty if it is malformed.
std::string_view hostOf(std::string_view value) {
    const size_t address = value.starts_with('[') ? value.find(']') : 0;
    const size_t end = std::min(value.find(':', address), value.size());
    const bool isPort = std::all_of(value.begin() + std::min(end + 1, value.size()), value.end(), KITisDigit);
    return address < end && isPort ? value.substr(0, end) : std::string_view();
}

bool isLoopback(std::string_view host) {
    in_addr four;
    in6_addr six;
    if (host.starts_with('[') && host.ends_with(']'))
        return ::inet_pton(AF_INET6, std::string(host.substr(1, host.size() - 2)).c_str(), &six) == 1 &&
               IN6_IS_ADDR_LOOPBACK(&six);
    if (::inet_pton(AF_INET, std::string(host).c_str(), &four) == 1)
        return (ntohl(four.s_addr) >> 24) == 127;
    return isSame(host, "localhost");
}

bool isAllowed(std::string_view host, const VIO_ListenerOptions &options) {
    return options.anyHost || isLoopback(host) ||
           std::any_of(options.hosts.begin(), options.hosts.end(),
                       [&](const std::string &name) { return isSame(host, name); }) ||
           (!options.bind.empty() && options.bind != "any" && isSame(host, options.bindHost()));
}

bool isOfTarget(char c) {
    return static_cast<unsigned char>(c) > ' ';
}

/// Returns the offset after the run of characters that the test accepts.
size_t skip(std::string_view text, size_t at, bool (*accepts)(char)) {
    while (at < text.size() && accepts(text[at]))
        ++at;
    return at;
}

CMD_HttpLine findPartOfLine(std::string_view line) {
    const size_t method = skip(line, 0, isUpper);
    if (method == line.size())
        return CMD_HttpLine::Maybe;
    if (method == 0 || line[method] != ' ')
        return CMD_HttpLine::No;
    const std::string_view rest = line.substr(skip(line, method + 1, isOfTarget));
    return rest.starts_with(theVersion) || theVersion.starts_with(rest) ? CMD_HttpLine::Maybe
                                                                        : CMD_HttpLine::No;
}

}   // namespace

std::optional<size_t> CMD_HttpHead::findBody(std::string_view request, size_t scanned) {
    const size_t blankLine = request.find(theBlankLine, scanned);
    return blankLine == request.npos ? std::nullopt : std::optional(blankLine + theBlankLine.size());
}

CMD_HttpHead CMD_HttpHead::parse(std::string_view request, std::optional<size_t> bodyOffset,
                                 const VIO_ListenerOptions &options) {
    CMD_HttpHead head;
    head.bodyOffset = bodyOffset;
    const std::string_view bytes = request.substr(0, bodyOffset.value_or(request.npos));
    const std::string_view text = bytes.substr(0, bytes.find('\0'));
    head.hasNul = text.size() < bytes.size();
    for (size_t newline = text.find('\n'); newline != text.npos;) {
        const size_t start = newline + 1;
        newline = text.find('\n', start);
        const std::string_view line = text.substr(start, newline - start);
        // A line without its end is the last one.
        if (line.empty() || line == "\r")
            break;
        head.readLine(line, options);
    }
    return head;
}

long long CMD_HttpHead::getRequestLength(size_t offset) const {
    return static_cast<long long>(offset + theLineEnd.size()) + *contentLength;
}

void CMD_HttpHead::readLine(std::string_view line, const VIO_ListenerOptions &options) {
    const size_t colon = line.find(':');
    if (colon == line.npos)
        return;
    const std::string_view exactName = line.substr(0, colon);
    const std::string_view value = line.substr(colon + 1);
    const std::string_view name = trim(exactName);
    if (exactName == "Content-Length")
        contentLength = KITatoi(value);
    if (isSame(name, "content-length"))
        anyContentLength = KITatoi(value);
    else if (isSame(name, "transfer-encoding"))
        hasTransferEncoding = true;
    else if (isSame(name, "origin") || isSame(name, "sec-fetch-site"))
        isFromBrowser = true;
    else if (isSame(name, "user-agent"))   // not every browser writes the others in every request
        isFromBrowser |= trim(value).starts_with("Mozilla/");
    else if (isSame(name, "host"))
        namesOtherHost |= !isAllowed(hostOf(trim(value)), options);
}

CMD_HttpLine CMDfindHttpLine(std::string_view text, size_t scanned) {
    const size_t end = text.find('\n', scanned);
    if (end == text.npos)
        return findPartOfLine(text.substr(0, theExaminedStart));
    const std::string_view line = text.substr(0, end);
    const size_t method = skip(line, 0, KITisAlpha);
    const size_t target = skip(line, method + 1, isOfTarget);
    const bool found = method > 0 && line.substr(method).starts_with(' ') && target > method + 1 &&
                       line.substr(std::min(target, line.size())).starts_with(theVersion);
    return found ? CMD_HttpLine::Yes : CMD_HttpLine::No;
}
