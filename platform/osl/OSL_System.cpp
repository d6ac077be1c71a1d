// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/osl/OSL_System.h>

#include <cerrno>
#include <memory>

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <orvlang/platform/osl/KIT_Immortal.h>
#include <orvlang/platform/osl/OSL_Environment.h>

namespace {

/// What posix_spawn does in the child before the program begins.
class SpawnPlan {
public:
    explicit SpawnPlan(const OSL_SpawnOptions &options) {
        sigset_t all, none;
        sigfillset(&all);
        sigemptyset(&none);
        posix_spawnattr_init(&attributes);
        posix_spawnattr_setsigdefault(&attributes, &all);
        posix_spawnattr_setsigmask(&attributes, &none);
        const int session = options.ownSession ? POSIX_SPAWN_SETSID : 0;
        posix_spawnattr_setflags(&attributes,
                                 static_cast<short>(POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK | session));
        posix_spawn_file_actions_init(&actions);
        if (options.nullInput)
            openNull(STDIN_FILENO, O_RDONLY);
        if (options.nullOutput) {
            openNull(STDOUT_FILENO, O_WRONLY);
            openNull(STDERR_FILENO, O_WRONLY);
        }
    }
    ~SpawnPlan() {
        posix_spawn_file_actions_destroy(&actions);
        posix_spawnattr_destroy(&attributes);
    }
    SpawnPlan(const SpawnPlan &) = delete;
    SpawnPlan &operator=(const SpawnPlan &) = delete;

    /// 0, or what went wrong as errno would have it.
    int run(const char *const *argv, pid_t &pid) const {
        return error ? error
                     : posix_spawnp(&pid, argv[0], &actions, &attributes, const_cast<char *const *>(argv),
                                    environ);
    }

private:
    void openNull(int descriptor, int flags) {
        if (!error)
            error = posix_spawn_file_actions_addopen(&actions, descriptor, "/dev/null", flags, 0);
    }

    posix_spawnattr_t attributes;
    posix_spawn_file_actions_t actions;
    int error = 0;
};

constinit KIT_Immortal<OSL_System> theRealSystem;
constinit OSL_System *theSystem = &theRealSystem.object;

OSL_Environment &theEnvironment() {
    static KIT_Immortal<OSL_Environment> environment;
    return environment.object;
}

bool take(int result, const struct stat &from, OSL_FileStatus &status) {
    status = {};
    if (result != 0)
        return false;
    status.isRegular = S_ISREG(from.st_mode);
    status.isDirectory = S_ISDIR(from.st_mode);
    status.size = from.st_size;
    status.device = from.st_dev;
    status.number = from.st_ino;
    return true;
}

}   // namespace

OSL_System &OSLsystem() {
    return *theSystem;
}

OSL_System *OSLsetSystem(OSL_System *system) {
    OSL_System *const before = theSystem;
    theSystem = system ? system : &theRealSystem.object;
    return before;
}

int OSLgettimeofday(OSL_TimeVal *now) {
    return OSLsystem().getTimeOfDay(*now);
}

int OSL_System::getTimeOfDay(OSL_TimeVal &now) {
    timespec time;
    if (clock_gettime(CLOCK_REALTIME, &time) != 0)
        return -1;
    now = { static_cast<long>(time.tv_sec), time.tv_nsec / 1000 };
    return 0;
}

long long OSL_System::getMonotonicTime() {
    timespec time = {};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return time.tv_sec * 1000000000LL + time.tv_nsec;
}

int OSL_System::open(const char *path, int flags, int mode) {
    return ::open(path, flags | O_CLOEXEC | O_NOCTTY, mode);
}

ssize_t OSL_System::read(int descriptor, void *buffer, size_t count) {
    return ::read(descriptor, buffer, count);
}

ssize_t OSL_System::write(int descriptor, const void *data, size_t count) {
    return ::write(descriptor, data, count);
}

int OSL_System::close(int descriptor) {
    return ::close(descriptor);
}

off_t OSL_System::seek(int descriptor, off_t offset, int whence) {
    return ::lseek(descriptor, offset, whence);
}

int OSL_System::waitReadable(int descriptor, int milliseconds) {
    pollfd wanted = { descriptor, POLLIN, 0 };
    return ::poll(&wanted, 1, milliseconds);
}

int OSL_System::waitAny(pollfd *wanted, size_t count, long long nanoseconds) {
    const timespec limit = { static_cast<time_t>(nanoseconds / 1000000000),
                             static_cast<long>(nanoseconds % 1000000000) };
    return ::ppoll(wanted, count, &limit, nullptr);
}

bool OSL_System::isTerminal(int descriptor) {
    return ::isatty(descriptor);
}

bool OSL_System::getStatus(const char *path, OSL_FileStatus &status) {
    struct stat found;
    return take(::stat(path, &found), found, status);
}

bool OSL_System::getStatus(int descriptor, OSL_FileStatus &status) {
    struct stat found;
    return take(::fstat(descriptor, &found), found, status);
}

int OSL_System::access(const char *path, int mode) {
    return ::access(path, mode);
}

bool OSL_System::getCurrentDirectory(char *buffer, size_t size) {
    return ::getcwd(buffer, size);
}

int OSL_System::changeDirectory(const char *path) {
    return ::chdir(path);
}

bool OSL_System::listDirectory(const char *path, std::vector<std::string> &names) {
    const auto closeDirectory = [](DIR *directory) { ::closedir(directory); };
    const std::unique_ptr<DIR, decltype(closeDirectory)> directory(::opendir(path), closeDirectory);
    if (!directory)
        return false;
    errno = 0;
    while (const dirent *entry = ::readdir(directory.get())) {
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..")
            names.emplace_back(name);
    }
    return errno == 0;
}

int OSL_System::makeDirectory(const char *path, int mode) {
    return ::mkdir(path, static_cast<mode_t>(mode));
}

int OSL_System::removeFile(const char *path) {
    return ::unlink(path);
}

std::string OSL_System::readLink(const char *path) {
    char target[4096];
    const ssize_t length = ::readlink(path, target, sizeof target);
    return { target, length > 0 ? static_cast<size_t>(length) : 0 };
}

const char *OSL_System::getEnvironment(std::string_view name) {
    return theEnvironment().get(name);
}

bool OSL_System::setEnvironment(std::string_view name, std::string_view value) {
    return theEnvironment().set(name, value);
}

bool OSL_System::unsetEnvironment(std::string_view name) {
    return theEnvironment().unset(name);
}

pid_t OSL_System::spawn(const char *const *argv, const OSL_SpawnOptions &options) {
    pid_t pid = -1;
    const int error = SpawnPlan(options).run(argv, pid);
    if (error == 0)
        return pid;
    errno = error;
    return -1;
}

pid_t OSL_System::waitProcess(pid_t pid, int *status, int options) {
    return ::waitpid(pid, status, options);
}

uid_t OSL_System::getUser() {
    return ::geteuid();
}

void *OSL_System::loadLibrary(const char *path, bool isGlobal) {
    return ::dlopen(path, RTLD_NOW | (isGlobal ? RTLD_GLOBAL : RTLD_LOCAL));
}

void *OSL_System::findSymbol(void *library, const char *name) {
    return ::dlsym(library, name);
}

std::string OSL_System::getLoaderError() {
    const char *const text = ::dlerror();
    return text ? text : "unknown error of the loader";
}
