// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include <poll.h>

#include <orvlang/platform/kit/KIT_Export.h>
#include <orvlang/platform/kit/KIT_PtrArray.h>

class KIT_CmdLineReader;
class KIT_WorkBuffer;
class VIO_EventGenerator;
class cmd_PollingEvtGeneratorWrapper;

/// The event loop of a host that reads lines from standard input: while the prompt waits, the event generators (command
/// ports, their connections, timed jobs) get their turns. Once it exists VIO_EventGenerator uses it as its event loop,
/// so that `openport -w` works as well.
///
/// All of it belongs to the thread that runs commands. A turn may install, uninstall and destroy generators, and may
/// poll again.
class CMD_API CMD_EvtMonitoringReader {
public:
    enum GetlineResult {
        GotLine = 0,
        InputEnded = 1   // or failed
    };

    /// Returns the reader of the process, made by the first call.
    static CMD_EvtMonitoringReader &inst();
    CMD_EvtMonitoringReader(const CMD_EvtMonitoringReader &) = delete;
    CMD_EvtMonitoringReader &operator=(const CMD_EvtMonitoringReader &) = delete;

    /// Waits for a line and stores it in `line`, without its newline; with ORVANE_PLAIN_INPUT the newline stays. Within
    /// an operation of KIT_Interrupt an interrupt ends the wait, as the end of input does.
    GetlineResult getline(KIT_CmdLineReader &reader, KIT_WorkBuffer &line);

    static int installGeneratorCallback(VIO_EventGenerator *generator, int install);
    /// Gives every generator that is due one turn, without waiting. Ignores the flag.
    static void pollEventGeneratorsCallback(bool flag);

private:
    CMD_EvtMonitoringReader() = default;
    ~CMD_EvtMonitoringReader() = delete;   // it lives as long as the process

    static void becomeEventLoop();
    int installGenerator(VIO_EventGenerator &generator, int install);
    void pollEventGenerators();
    bool pollRunsCommands();
    long long listDueDescriptors(std::vector<pollfd> &wanted) const;

    KIT_PtrArray<cmd_PollingEvtGeneratorWrapper *> generators;   // owned; in order of installation
};
