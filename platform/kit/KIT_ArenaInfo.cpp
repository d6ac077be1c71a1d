// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/kit/KIT_ArenaInfo.h>

#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <ostream>
#include <string>
#include <string_view>

#include <malloc.h>
#include <unistd.h>

#include <orvlang/platform/osl/OSL_File.h>

namespace {

/// Returns the report of the C library on its allocator: some lines of XML.
std::string describeAllocator() {
    char *text = nullptr;
    size_t length = 0;
    std::FILE *const stream = open_memstream(&text, &length);
    if (!stream)
        return {};
    malloc_info(0, stream);
    std::fclose(stream);
    const std::string description(text, length);
    std::free(text);
    return description;
}

long long toNumber(std::string_view text) {
    long long number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

/// Returns the number after an attribute such as ` size="`; 0 when there is none.
long long attribute(std::string_view line, std::string_view name) {
    const size_t place = line.find(name);
    return place == line.npos ? 0 : toNumber(line.substr(place + name.size()));
}

void outputArenas(std::ostream &os, std::string_view description) {
    constexpr std::string_view theSize = " size=\"";
    bool isInArena = false;
    long long arena = 0, size = 0, free = 0, used = 0;
    for (size_t begin = 0, end; (end = description.find('\n', begin)) != description.npos; begin = end + 1) {
        const std::string_view line = description.substr(begin, end - begin);
        if (line.starts_with("<heap")) {
            isInArena = true;
            arena = attribute(line, " nr=\"");
            size = free = 0;
        } else if (line.starts_with("</heap")) {
            isInArena = false;
            used += size - free;
            os << "arena " << arena << ": " << size << " bytes, " << free << " of them free" << std::endl;
        } else if (isInArena && line.starts_with("<total")) {
            free += attribute(line, theSize);
        } else if (isInArena && line.starts_with("<system type=\"current\"")) {
            size = attribute(line, theSize);
        } else if (line.starts_with("<total type=\"mmap\"")) {
            used += attribute(line, theSize);
            os << "mapped: " << attribute(line, theSize) << " bytes" << std::endl;
        }
    }
    os << "in use: " << used << " bytes" << std::endl;
}

void outputResidentSize(std::ostream &os) {
    std::string pages;   // the program's size, then what is resident, ...
    if (OSLreadFile("/proc/self/statm", pages))
        os << "resident: "
           << toNumber(std::string_view(pages).substr(pages.find(' ') + 1)) * sysconf(_SC_PAGESIZE) << " bytes"
           << std::endl;
}

}   // namespace

void KIT_ArenaInfo::outputUsage(std::ostream &os) {
    outputArenas(os, describeAllocator());
    outputResidentSize(os);
}
