// SPDX-License-Identifier: Apache-2.0
// The command ports of the process: opening, waiting, closing, and the commands for it. What arrives on a port is the
// business of CMD_ConnectedSocketCommandListener; the event loop serves it.
#include <orvlang/engine/CMD_Engine.h>

#include <iostream>
#include <vector>

#include <unistd.h>

#include <orvlang/builtins/CMD_Commands.h>
#include <orvlang/engine/CMD_Args.h>
#include <orvlang/engine/CMD_WaitScope.h>
#include <orvlang/platform/kit/KIT_Exit.h>
#include <orvlang/platform/kit/KIT_Nesting.h>
#include <orvlang/platform/kit/KIT_Number.h>
#include <orvlang/platform/kit/KIT_Process.h>
#include <orvlang/platform/kit/KIT_Wait.h>
#include <orvlang/platform/kit/KIT_WorkArgs.h>
#include <orvlang/platform/osl/KIT_Immortal.h>
#include <orvlang/platform/osl/KIT_Interrupt.h>
#include <orvlang/port/CMD_ServerSocketCommandListener.h>

namespace {

using Listener = CMD_ServerSocketCommandListener;
using PortTable = KIT_PtrArray<Listener *>;

PortTable *portTable = nullptr;   // in order of opening; owns the listeners; made on first use, never destroyed
int autoPort = -1;                // the number of the automatic port
// What comes in during a wait must have room to run, be it only to close the port.
constexpr size_t theWaitReserve = 512 * 1024;   // bytes of stack
// Applications that outlive their port; the system keeps the status of each until it is read.
constinit KIT_Immortal<std::vector<int>> theUnwatched{};

PortTable &ports() {
    if (!portTable)
        portTable = new PortTable;
    return *portTable;
}

/// The first open port that fits; null for none.
template <typename Fits>
Listener *findPort(Fits fits) {
    for (Listener *const listener : ports()) {
        if (fits(*listener))
            return listener;
    }
    return nullptr;
}

/// A listener may be gone while its address serves another one.
Listener *findOpen(unsigned serial) {
    return findPort([serial](const Listener &listener) { return listener.getSerial() == serial; });
}

bool isOpen(int port) {
    return findPort([port](const Listener &listener) { return listener.getPortNumber() == port; }) != nullptr;
}

/// Closes the ports that fit, the last one first.
template <typename Fits>
void closePorts(Fits fits) {
    for (int i = ports().entries(); i-- > 0;) {
        Listener *const listener = ports()[i];
        if (!fits(*listener))
            continue;
        ports().removeAt(i);
        delete listener;
    }
}

void closeAllPorts(void *) {
    if (portTable)
        closePorts([](const Listener &) { return true; });
}

/// The application of a port has ended; `data` is the function that wants to know.
void portChildExited(VIO_ServerSocketListener &listener, void *data, bool flag) {
    const int port = listener.getPortNumber();
    const unsigned serial = static_cast<Listener &>(listener).getSerial();
    if (data)
        reinterpret_cast<CMD_Manager::ChildExitCallback>(data)(listener, nullptr, flag);
    Listener *const open = findOpen(serial);   // unless that function has closed the port
    if (!open)
        return;
    if (autoPort == port)
        autoPort = -1;
    if (!flag)
        ports().remove(open);
}

int startApplication(const char *const *argv, bool spawnFlag) {
    std::erase_if(theUnwatched.object, [](int application) { return !KITisRunning(application, nullptr); });
    return KITspawnvp(argv, spawnFlag, false);
}

/// Serves the event loop until the port is closed, the application (none below 0) has ended, or an interrupt comes.
void waitForPort(unsigned serial, int application, bool closesWithApplication, bool pollFlag) {
    while (Listener *const listener = findOpen(serial)) {
        if (KITgetInterrupt()->opInterrupt(-1))
            return;
        const bool hasEnded = application >= 0 && !KITisRunning(application, nullptr);
        listener->pollEventLoop(pollFlag);
        if (hasEnded) {
            if (closesWithApplication && findOpen(serial))
                listener->checkChild();   // which may not have been its turn to notice
            return;
        }
        KITnap(10);
    }
}

/// The part of a message that names the mapped number, when a number is mapped.
struct MappingClause {
    int port, socketPort;
};

std::ostream &operator<<(std::ostream &out, const MappingClause &clause) {
    if (clause.port != clause.socketPort)
        out << " (port " << clause.port << " gets mapped to socket port " << clause.socketPort << ")";
    return out;
}

void listPorts(std::ostream &out) {
    out << "Open ports: ";
    if (ports().entries() == 0)
        out << "None";
    for (int i = ports().entries(); i-- > 0;)
        out << ports()[i]->getPortNumber() << ' ';
    out << '\n';
}

/// The words of a command line, unless that is null.
class Application {
public:
    explicit Application(const KIT_String &line) : isThere(!line.isNull()) { line.parseInPlace(words); }

    const char *const *argv() { return isThere ? words.argv() : nullptr; }

private:
    const bool isThere;
    KIT_WorkArgs words;
};

/// Returns the command line of -r, followed by the port number for -p; null without -r.
KIT_String applicationLine(const CMD_Args &args, int port) {
    KIT_String line = args.argp('r');
    if (!line.isNull() && args.found('p'))
        line.append(' ').append(KIT_String::itoa(port));
    return line;
}

/// Has `open` try port numbers, from the one beside the process id on. Returns the one that it opened; -1 for none.
template <typename Open>
int openFreePort(Open open) {
    constexpr int theAttempts = 100;
    const int first = KIT_NetSocket::mapToUnprivilegedPort(getpid() + 1);
    for (int port = first; port < first + theAttempts; ++port) {
        if (open(port))
            return port;
    }
    return -1;
}

/// openport -a: writes the number of the automatic port, which is opened first when there is none.
void openAutoPort(CMD_Manager &manager, CMD_Args &args) {
    const auto report = [&args](const char *before, int port, const char *behind) {
        if (args.found('q'))
            args.out() << port << '\n';
        else
            args.out() << before << port << behind;
    };
    if (autoPort != -1)
        return report("Port ", autoPort, " remains open.\n");
    // Returns once the wait for the port, if one was asked for, is over.
    const int port = openFreePort([&](int candidate) {
        Application application(applicationLine(args, candidate));
        return manager.openPort(candidate, args.found('s'), args.found('q'), args.found('w') || args.found('r'),
                                args, application.argv(), nullptr, args.found('e'), true, nullptr, nullptr,
                                !args.found('c'), false);
    });
    if (port < 0) {
        if (!args.found('q'))
            args.err(1) << "Unable to find free port.\n";
        return;
    }
    // The wait for it can have ended because it was closed.
    if (isOpen(port))
        autoPort = port;
    report("Opened ", port, "\n");
}

}   // namespace

void CMD_Engine::addPortExtension() {
    commands.install("openport", "aeqswi:r:pc", CMD_Commands::cmd_openport, false);
    commands.install("closeport", "", CMD_Commands::cmd_closeport, false);
    commands.install("atjob", "lpr", CMD_Commands::cmd_atjob, true);
    KIT_Exit::addExitCallback(closeAllPorts, nullptr);
    manager.setContext();
}

bool CMD_Engine::openPort(int port, bool restrictToSafeCommands, bool quiet, bool wait, CMD_Args *args,
                          std::ostream *errors, const char *const *argv, int *pid, bool separateErrors,
                          bool silent, const char *listenerOption,
                          CMD_Manager::ChildExitCallback childExitCallback, bool spawnFlag, bool pollFlag) {
    // The position of the statement is written as soon as the stream is asked for.
    const auto messages = [&]() -> std::ostream & { return args ? args->err(1) : *errors; };
    const MappingClause mapping = { port, KIT_NetSocket::mapToUnprivilegedPort(port) };
    Listener *listener =
        Listener::createCommandListener(port, theManager ? *theManager : manager, separateErrors,
                                        restrictToSafeCommands, listenerOption, true, false);
    const bool created = listener != nullptr;
    if (!created) {
        listener = findPort([&](const Listener &open) { return open.getPort() == mapping.socketPort; });
        if (!listener) {
            if (!silent)
                messages() << "Couldn't open port " << port << mapping << ".\n";
            return false;
        }
        if (!quiet && !silent)
            messages() << "Port number " << port << " already in use" << mapping << ".\n";
        listener->setRestrictToSafeCommands(restrictToSafeCommands);
    }

    int application = -1;
    if (argv) {
        application = startApplication(argv, spawnFlag);
        if (application < 0) {
            if (!silent)
                messages() << "Couldn't execute application: " << (argv[0] ? argv[0] : "") << std::endl
                           << "Please check that it is in your path.\n";
            if (created)
                delete listener;
            return false;
        }
        if (pid)
            *pid = application;
        if (created)
            listener->closeSocketOnChildExit(application, true, portChildExited,
                                             reinterpret_cast<void *>(childExitCallback));
    }
    if (created)
        ports().append(listener);
    if (wait && VIO_EventGenerator::isEventLoopPollCallbackSet()) {
        const unsigned serial = listener->getSerial();
        if (!KIT_Nesting::isStackShort(theWaitReserve)) {
            const CMD_WaitScope console(CMD_Engine::of(listener->getManager()));
            waitForPort(serial, application, created, pollFlag);
        } else if (!silent) {
            messages() << "Nesting too deep\n";
        }
        const bool isWatched = pid || (created && findOpen(serial));
        if (application >= 0 && !isWatched && KITisRunning(application, nullptr))
            theUnwatched.object.push_back(application);
    }
    return created;
}

bool CMD_Manager::openPort(int port, bool restrictToSafeCommands, bool quiet, bool wait, CMD_Args &args,
                           const char *const *argv, int *pid, bool separateErrors, bool silent,
                           const char *listenerOption, ChildExitCallback childExitCallback, bool spawnFlag,
                           bool pollFlag) {
    return engine->openPort(port, restrictToSafeCommands, quiet, wait, &args, nullptr, argv, pid,
                            separateErrors, silent, listenerOption, childExitCallback, spawnFlag, pollFlag);
}

bool CMD_Manager::openPort(int port, bool restrictToSafeCommands, bool quiet, bool wait, std::ostream &errors,
                           const char *const *argv, int *pid, bool separateErrors, bool silent,
                           const char *listenerOption, ChildExitCallback childExitCallback, bool spawnFlag,
                           bool pollFlag) {
    return engine->openPort(port, restrictToSafeCommands, quiet, wait, nullptr, &errors, argv, pid,
                            separateErrors, silent, listenerOption, childExitCallback, spawnFlag, pollFlag);
}

bool CMD_Manager::openPort(int port, bool restrictToSafeCommands, bool quiet, bool wait, CMD_Args &args,
                           const char *application, int *pid, bool separateErrors, bool silent,
                           const char *listenerOption, ChildExitCallback childExitCallback, bool spawnFlag,
                           bool pollFlag) {
    Application words(application);
    return engine->openPort(port, restrictToSafeCommands, quiet, wait, &args, nullptr, words.argv(), pid,
                            separateErrors, silent, listenerOption, childExitCallback, spawnFlag, pollFlag);
}

bool CMD_Manager::openPort(int port, bool restrictToSafeCommands, bool quiet, bool wait, std::ostream &errors,
                           const char *application, int *pid, bool separateErrors, bool silent,
                           const char *listenerOption, ChildExitCallback childExitCallback, bool spawnFlag,
                           bool pollFlag) {
    Application words(application);
    return engine->openPort(port, restrictToSafeCommands, quiet, wait, nullptr, &errors, words.argv(), pid,
                            separateErrors, silent, listenerOption, childExitCallback, spawnFlag, pollFlag);
}

void CMD_Manager::closePort(int port) {
    closePorts([port](const Listener &listener) { return listener.getPortNumber() == port; });
    if (autoPort == port)
        autoPort = -1;
}

void CMD_Manager::closeAutoPort() {
    closePort(autoPort);
}

void CMD_Engine::closeOwnPorts() {
    closePorts([this](const Listener &listener) { return &listener.getManager() == &manager; });
    if (!isOpen(autoPort))
        autoPort = -1;
}

int CMD_Manager::getOrvLangPort() {
    if (!getContext())
        return -1;
    // Not by the command: a line that is typed into the language may be taken for something else.
    if (autoPort == -1 && !getContext()->isInSafeMode())
        autoPort = openFreePort([](int port) {
            constexpr const char *theApplication = nullptr;
            return getContext()->openPort(port, false, true, false, std::cerr, theApplication, nullptr, false,
                                          true, nullptr, nullptr, true, false);
        });
    return autoPort;
}

void CMD_Commands::cmd_openport(CMD_Args &args) {
    if (args.argc() > 2) {
        args.err(1) << "Too many arguments.\n";
        return;
    }
    if (args.found('a'))
        return openAutoPort(*CMD_Manager::getContext(), args);
    if (args.argc() < 2)
        return listPorts(args.out());
    const int port = KITatoi(args.argv(1));
    if (port <= 0) {
        args.err(1) << "Invalid port number " << port << '\n';
        return;
    }
    Application application(applicationLine(args, port));
    CMD_Manager::getContext()->openPort(
        port, args.found('s'), args.found('q'), args.found('w') || args.found('r'), args, application.argv(),
        nullptr, args.found('e'), false, args.argp('i'), nullptr, !args.found('c'), false);
}

void CMD_Commands::cmd_closeport(CMD_Args &args) {
    if (args.argc() > 2)
        args.err(1) << "Too many arguments.\n";
    else if (args.argc() == 2)
        CMD_Manager::getContext()->closePort(KITatoi(args.argv(1)));
    else
        listPorts(args.out());
}
