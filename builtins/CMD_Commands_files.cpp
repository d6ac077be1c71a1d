// SPDX-License-Identifier: Apache-2.0
// The commands that reach outside the language: directories, files and the shell.
#include <orvlang/engine/CMD_Manager.h>

#include <ostream>

#include <signal.h>

#include <orvlang/builtins/CMD_Commands.h>
#include <orvlang/engine/CMD_Args.h>
#include <orvlang/platform/kit/KIT_Directory.h>
#include <orvlang/platform/kit/KIT_File.h>
#include <orvlang/platform/kit/KIT_Process.h>
#include <orvlang/platform/kit/KIT_WorkBuffer.h>
#include <orvlang/platform/kit/VIO_Info.h>
#include <orvlang/platform/osl/KIT_Signal.h>
#include <orvlang/platform/osl/OSL_System.h>
#include <orvlang/platform/osl/OrvaneDirectory.h>

namespace {

constexpr int theDirectoryMode = 0775;
constexpr int theKeyboardSignals[] = { SIGINT, SIGQUIT, 0 };

/// Removes what matches the last part of an absolute path.
void removeFiles(const KIT_String &path, CMD_Args &args) {
    const size_t slash = path.view().rfind('/');
    const KIT_String folder = path.view().substr(0, slash);
    const KIT_Directory directory(folder.isEmpty() ? "/" : folder.c_str(), nullptr, 1);
    KIT_StringArray names;
    directory.getFiles(path.c_str() + slash + 1, names);
    for (const char *name : names) {
        KIT_String file = folder;
        file.append('/').append(name);
        if (OSLsystem().removeFile(file.c_str()) != 0)
            args.err(1) << "Could not remove " << file << std::endl;
    }
}

}   // namespace

void CMD_Commands::cmd_ucd(CMD_Args &args) {
    if (args.argc() > 2)
        return args.showUsage();
    KIT_String directory = args.argv(1);
    if (args.argc() == 1) {
        if (!CMD_Manager::getContext()->getVariable("ORP", directory)) {
            args.err(1) << "cd: can't find ORP directory" << std::endl;
            return;
        }
        args.out() << directory << std::endl;
    }
    OSLsystem().changeDirectory(directory.c_str());
}

void CMD_Commands::cmd_upwd(CMD_Args &args) {
    args.out() << KITgetCurrentDirectory() << std::endl;
}

void CMD_Commands::cmd_uls(CMD_Args &args) {
    const bool directoriesOnly = args.found('d');
    const bool filesOnly = args.found('f');
    if (directoriesOnly && filesOnly) {
        args.err(1) << "-d and -f cannot both be specified." << std::endl;
        return;
    }
    KIT_String prefix = args.found('p') ? KIT_String(args.argp('p')) : KITgetCurrentDirectory();
    const KIT_Directory directory(prefix.c_str(), nullptr, 1);
    if (!prefix.isEmpty() && !prefix.view().ends_with('/'))
        prefix.append('/');
    KIT_StringArray names;
    directory.getFiles(args.argc() > 1 ? args.argv(1) : "*", names);
    names.sort(true, true);
    for (const char *name : names) {
        if (directoriesOnly || filesOnly) {
            KIT_String path = prefix;
            if (VIO_Info(path.append(name).c_str()).getIsDirectory() != directoriesOnly)
                continue;
        }
        args.out() << name << std::endl;
    }
}

void CMD_Commands::cmd_umkdir(CMD_Args &args) {
    if (args.argc() == 1) {
        args.err(1) << "No directory was specified." << std::endl;
        return;
    }
    const KIT_String path = KITmakeAbsoluteFilePath(args.argv(1), nullptr);
    const bool made = args.found('p') ? OrvaneMakeDirectory(path.c_str(), theDirectoryMode) != 0
                                      : OSLsystem().makeDirectory(path.c_str(), theDirectoryMode) >= 0;
    if (!made)
        args.err(1) << "Could not create directory." << std::endl;
}

void CMD_Commands::cmd_urm(CMD_Args &args) {
    if (args.argc() == 1) {
        args.err(1) << "No file specified for removal." << std::endl;
        return;
    }
    for (int i = 1; i < args.argc(); ++i) {
        const KIT_String path = KITmakeAbsoluteFilePath(args.argv(i), nullptr);
        if (KITisRootPath(path.c_str()))
            args.err(1) << "Could not remove root path " << path << std::endl;
        else
            removeFiles(path, args);
    }
}

void CMD_Commands::cmd_unix(CMD_Args &args) {
    KIT_WorkBuffer line;
    args.fillCommandLine(line, 1, false);
    const char *const words[] = { "csh", "-f", "-c", line.c_str(), nullptr };
    // The keyboard's signals are for the child.
    const KIT_Signal ignored(theKeyboardSignals, SIG_IGN, false);
    const int pid = KITspawnvp(words, 0, false);
    if (pid >= 0)
        CMD_Manager::getContext()->setStatusCode(KITwait(pid));
}
