// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <orvlang/platform/kit/KIT_Export.h>

class KIT_String;
class KIT_StringArray;

/// Looks up files by name in the directories of a path.
///
/// The general path: the directories of $ORVANE_PATH (separated by colons), $ORP, $JOB, $HOME/.orvane, then the
/// share folder of the installation, which is found from the folder of the library. The script path: the same with
/// /scripts after each. A directory that comes twice counts once. The list is made when it is first needed, and
/// again when it is needed after rehashAll: a change of those variables alone has no effect.
/// A file or directory that is found in two ways, through a link for instance, counts once, too.
/// Not for several threads at a time.
class CMD_API KIT_PathSearch {
public:
    /// 0 is the general path, 7 the path of scripts; any other number is the general path.
    static KIT_PathSearch *getInstance(int path);
    static void rehashAll();
    /// Returns $HOME/.orvane, the folder of the user's own files; `.orvane` without $HOME. Valid until the next call.
    static const char *getHomeOrvane();
    /// Returns the folder of the library, or of the program that it is linked into; without a slash at its end.
    static const std::string &getCodeFolder();

    /// Looks for a readable file that is not a directory. Returns non-zero when there is one, with its path in `found`;
    /// otherwise `found` is unchanged. An absolute name is tested as it is. The name may be the text of `found`. A null
    /// or empty name is never found.
    int orvaneFindFile(const char *name, KIT_String &found);
    /// The same for a directory.
    int orvaneFindDirectory(const char *name, KIT_String &found);
    /// Appends every file of that name, in the order of the path, and returns how many.
    int findAllFiles(const char *name, KIT_StringArray &files);
    int findAllDirectories(const char *name, KIT_StringArray &found);

    /// Returns the directories of the path in order, whether they exist or not. Valid until rehashAll.
    const std::vector<std::string> &getDirectories();
    /// The same without $ORP and $JOB: those follow the working folder, which may belong to another user, so no code
    /// is loaded from there.
    const std::vector<std::string> &getTrustedDirectories();

    explicit constexpr KIT_PathSearch(const char *below) : subfolder(below) {}

private:
    enum class Kind { File, Directory };

    template <typename Found>
    void search(const char *name, Kind kind, Found found);
    int findFirst(const char *name, Kind kind, KIT_String &found);
    int findAll(const char *name, Kind kind, KIT_StringArray &found);
    void refresh();
    void add(std::string_view directory, bool trusted);

    const char *subfolder;   // appended to each directory; borrowed
    unsigned int generation = 0;
    std::vector<std::string> directories;
    std::vector<std::string> trustedDirectories;
};
