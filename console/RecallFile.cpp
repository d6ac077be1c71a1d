// SPDX-License-Identifier: Apache-2.0
#include "RecallFile.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <orvlang/platform/edit/KIT_CmdLineReader.h>
#include <orvlang/platform/osl/OSL_File.h>

namespace {

constexpr size_t theMostLines = 10000;    // that are kept when the file has twice as many
constexpr char theLineEndWithin = '\r';   // so that an entry of several lines is one line of the file
constexpr off_t theMostBytes = 4 << 20;   // that are read of a longer file, and kept

std::string findPath() {
    const char *const state = std::getenv("XDG_STATE_HOME");
    if (state && state[0] == '/')
        return std::string(state) + "/orvlang/history";
    const char *const home = std::getenv("HOME");
    return home && home[0] == '/' ? std::string(home) + "/.local/state/orvlang/history" : std::string();
}

/// An open file with a lock on it. Opens the file again if another program replaced it during the wait for the lock.
class LockedFile {
public:
    LockedFile(const std::string &path, int flags, int lock) {
        for (;;) {
            descriptor = open(path.c_str(), flags | O_CLOEXEC | O_NOCTTY | O_NONBLOCK, 0600);
            if (descriptor < 0 || flock(descriptor, lock) != 0 || isStillAt(path))
                return;
            close(descriptor);
        }
    }
    ~LockedFile() {
        if (descriptor >= 0)
            close(descriptor);
    }
    LockedFile(const LockedFile &) = delete;
    LockedFile &operator=(const LockedFile &) = delete;

    int descriptor;   // negative when it does not open

private:
    bool isStillAt(const std::string &path) const {
        struct stat opened, named;
        return fstat(descriptor, &opened) != 0 || stat(path.c_str(), &named) != 0 ||
               (opened.st_dev == named.st_dev && opened.st_ino == named.st_ino);
    }
};

std::string readAll(int descriptor) {
    std::string text;
    char buffer[16384];
    for (ssize_t n; (n = read(descriptor, buffer, sizeof buffer)) > 0;)
        text.append(buffer, static_cast<size_t>(n));
    return text;
}

/// The last `count` lines of a text.
std::string_view lastLines(std::string_view text, size_t count) {
    size_t start = text.size();
    while (count-- > 0 && start > 0) {
        const size_t newline = text.rfind('\n', start < 2 ? 0 : start - 2);
        start = start < 2 || newline == text.npos ? 0 : newline + 1;
    }
    return text.substr(start);
}

}   // namespace

RecallFile::RecallFile() : path(findPath()) {}

void RecallFile::makeFolder() const {
    const std::filesystem::path folder = std::filesystem::path(path).parent_path();
    std::error_code failed;
    if (std::filesystem::create_directories(folder, failed))
        std::filesystem::permissions(folder, std::filesystem::perms::owner_all, failed);
}

void RecallFile::seed(KIT_CmdLineReader &reader) {
    if (path.empty())
        return;
    const LockedFile file(path, O_RDONLY, LOCK_EX);
    if (file.descriptor < 0)
        return;
    const bool isLong = lseek(file.descriptor, -theMostBytes, SEEK_END) > 0;
    std::string text = readAll(file.descriptor);
    if (isLong)
        text.erase(0, text.find('\n'));   // the end of a line that was cut
    const std::string_view kept = lastLines(text, theMostLines);
    if (isLong || std::count(text.begin(), text.end(), '\n') > 2 * static_cast<long>(theMostLines))
        shorten(kept);
    for (std::string_view rest = kept; !rest.empty();) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        std::string entry(line);
        std::replace(entry.begin(), entry.end(), theLineEndWithin, '\n');
        reader.remember(entry.c_str());
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
    }
}

/// Replaces the locked file by a shorter one.
void RecallFile::shorten(std::string_view kept) const {
    const std::string shorter = path + ".new";
    const int descriptor = open(shorter.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (descriptor < 0)
        return;
    const bool isWritten = OSLwriteAll(descriptor, kept.data(), kept.size());
    close(descriptor);
    if (!isWritten || rename(shorter.c_str(), path.c_str()) != 0)
        unlink(shorter.c_str());
}

void RecallFile::add(KIT_CmdLineReader &reader, std::string text) {
    if (text.empty() || text[0] == ' ' || text[0] == '\t')
        return;
    reader.remember(text.c_str());
    if (path.empty() || text == latest)
        return;
    if (latest.empty())
        makeFolder();
    latest = text;
    std::replace(text.begin(), text.end(), '\n', theLineEndWithin);
    const LockedFile file(path, O_WRONLY | O_APPEND | O_CREAT, LOCK_SH);
    text += '\n';
    if (file.descriptor >= 0)
        OSLwriteAll(file.descriptor, text.data(), text.size());
}
