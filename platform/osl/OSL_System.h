// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <poll.h>
#include <sys/socket.h>
#include <sys/types.h>

#include <orvlang/platform/osl/OSL_SocketTable.h>
#include <orvlang/platform/osl/OSL_Time.h>

struct epoll_event;

/// The status of a file. When it cannot be read, all fields are 0.
struct OSL_FileStatus {
    bool isRegular = false;
    bool isDirectory = false;
    long long size = 0;   // in bytes
    // Both together identify a file, whatever name it was found by.
    dev_t device = 0;
    ino_t number = 0;
};

/// How a program is started.
struct OSL_SpawnOptions {
    bool ownSession = false;   // without the terminal
    bool nullInput = false;
    bool nullOutput = false;   // errors too
};

/// The interface to the operating system: clock, files, directories, environment, processes, loader, sockets. This class
/// calls the system; a test derives from it, overrides what is to fail and installs its object with OSLsetSystem.
///
/// Operations behave as the system calls of the same names: a negative result or false is a failure, and errno holds the
/// reason. They retry nothing, since only the caller knows whether to continue after a signal.
class OSL_System {
public:
    virtual ~OSL_System() = default;

    virtual int getTimeOfDay(OSL_TimeVal &now);
    /// Returns the nanoseconds since some fixed moment; never goes back.
    virtual long long getMonotonicTime();

    /// The descriptor is always close-on-exec, whatever the flags say, and never becomes the controlling terminal.
    virtual int open(const char *path, int flags, int mode);
    virtual ssize_t read(int descriptor, void *buffer, size_t count);
    virtual ssize_t write(int descriptor, const void *data, size_t count);
    virtual int close(int descriptor);
    virtual off_t seek(int descriptor, off_t offset, int whence);
    /// Waits until there is something to read, an end or an error included. Milliseconds; negative for no limit.
    /// Returns a number above 0 when there is, 0 when the time is over.
    virtual int waitReadable(int descriptor, int milliseconds);
    /// Waits until one of the descriptors has what is wanted of it, the time (nanoseconds) is over or a signal comes.
    /// As ppoll(2) with no change of the signal mask.
    virtual int waitAny(pollfd *wanted, size_t count, long long nanoseconds);
    virtual bool isTerminal(int descriptor);
    virtual bool getStatus(const char *path, OSL_FileStatus &status);
    virtual bool getStatus(int descriptor, OSL_FileStatus &status);
    /// Returns 0 when the file can be used so; mode as for access(2).
    virtual int access(const char *path, int mode);

    virtual bool getCurrentDirectory(char *buffer, size_t size);
    virtual int changeDirectory(const char *path);
    /// Appends the names in a directory, without `.` and `..`, in no order. Returns false when it cannot be read.
    virtual bool listDirectory(const char *path, std::vector<std::string> &names);
    virtual int makeDirectory(const char *path, int mode);
    /// Refuses directories.
    virtual int removeFile(const char *path);
    /// Returns where a symbolic link points to; empty on failure.
    virtual std::string readLink(const char *path);

    /// Returns null when there is no such variable. The text is never freed, and changes when the variable does.
    virtual const char *getEnvironment(std::string_view name);
    /// Refuses an empty name and one that holds `=` or a NUL. Readers see the value up to its first NUL.
    virtual bool setEnvironment(std::string_view name, std::string_view value);
    virtual bool unsetEnvironment(std::string_view name);

    /// Starts a program, looked for on $PATH, with the environment of this process, default signal dispositions and no
    /// signal blocked. The words end with a null. Returns the process id.
    virtual pid_t spawn(const char *const *argv, const OSL_SpawnOptions &options);
    /// As waitpid(2).
    virtual pid_t waitProcess(pid_t pid, int *status, int options);
    /// Returns the effective user of this process.
    virtual uid_t getUser();

    /// Loads a shared library and resolves all that it needs; null on failure. With `isGlobal` its symbols also serve
    /// the libraries that are loaded later.
    virtual void *loadLibrary(const char *path, bool isGlobal);
    /// Returns the address of a symbol of a loaded library; null when it does not have one of this name.
    virtual void *findSymbol(void *library, const char *name);
    /// Returns why the latest of these two failed.
    virtual std::string getLoaderError();

    // Sockets. A new descriptor is always close-on-exec and does not block.

    virtual int socket(int domain, int type, int protocol);
    virtual int bind(int descriptor, const sockaddr *address, socklen_t length);
    virtual int listen(int descriptor, int backlog);
    virtual int connect(int descriptor, const sockaddr *address, socklen_t length);
    virtual int accept(int descriptor);
    virtual int shutdown(int descriptor, int how);
    virtual int setSocketOption(int descriptor, int level, int option, int value);
    virtual int getSocketError(int descriptor);
    virtual bool getOwnAddress(int descriptor, sockaddr_storage &address);
    virtual bool getPeerAddress(int descriptor, sockaddr_storage &address);
    /// As OSLfindSocketOwner.
    virtual std::optional<OSL_SocketOwner> findSocketOwner(const sockaddr_storage &own,
                                                           const sockaddr_storage &peer);
    /// Raises no signal when the peer is gone.
    virtual ssize_t send(int descriptor, const void *data, size_t count);
    virtual ssize_t receive(int descriptor, void *buffer, size_t count);
    /// As waitReadable, for room to write.
    virtual int waitWritable(int descriptor, int milliseconds);

    // A set of descriptors to wait for, itself a descriptor; see epoll(7).

    virtual int createPoll();
    virtual int controlPoll(int poll, int operation, int descriptor, unsigned events, unsigned long long data);
    /// Waits up to that many nanoseconds.
    virtual int waitPoll(int poll, epoll_event *events, int count, long long nanoseconds);
    /// Lets other threads run that wait for this processor.
    virtual void yieldProcessor();
};

OSL_System &OSLsystem();
/// Installs another system, borrowed until the next call, and returns the one before. Null installs the real one again.
/// Not to be called while another thread works.
OSL_System *OSLsetSystem(OSL_System *system);
