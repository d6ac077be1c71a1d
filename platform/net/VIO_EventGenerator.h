// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/kit/KIT_Export.h>

/// Something that has work to do now and then: a socket with data, a timer. The event loop of the process (the host's
/// own, or the event reader) gives the installed generators their turns. It sets the hooks below, so that generators work
/// with any loop.
class CMD_API VIO_EventGenerator {
public:
    /// Adds a generator to the loop (install 1) or removes it (0). Returns 0 when that failed.
    using Installer = int (*)(VIO_EventGenerator *generator, int install);
    /// Makes one pass of the loop, without waiting.
    using PollCallback = void (*)(bool flag);

    VIO_EventGenerator() = default;
    VIO_EventGenerator(const VIO_EventGenerator &) = delete;
    VIO_EventGenerator &operator=(const VIO_EventGenerator &) = delete;
    /// Uninstalls the generator if it is still installed. The installer can then call this base only, so a derived class
    /// uninstalls its objects in its own destructor.
    virtual ~VIO_EventGenerator();

    virtual const char *getClassName() const;
    /// Returns the descriptor that the generator reads from; negative for none. A wait of the loop may end early when
    /// it has data.
    virtual int getFileDescriptor() const;
    /// Returns the least time between two turns, in milliseconds; with 0 the generator has a turn in each pass.
    virtual int getPollTime() const;
    /// Returns whether a turn would find something to do.
    virtual bool areEventsWaiting();
    /// Does what there is to do. The generator may uninstall and destroy itself meanwhile, and install others. Returns 0
    /// when it was destroyed.
    virtual int processEvents() = 0;

    /// Both return the result of the installer, and 0 while there is no loop. A generator that is installed before there
    /// is a loop is added as soon as there is one. The installer may call the generator, so the most derived class
    /// installs it, at the end of its constructor.
    int installGenerator();
    int uninstallGenerator();
    /// Makes one pass of the loop; does nothing while there is no loop. The flag is passed to the callback.
    void pollEventLoop(bool flag);

    /// A loop calls this when it is about to give its generators a turn each. Some do their work together, in the first
    /// turn of a pass; without this call a pass counts as new when one of them has its second turn.
    static void beginPass();
    /// Returns the number of the pass.
    static unsigned getPass();

    /// Set the hooks of the loop; null removes one.
    static void setInstaller(Installer installer);
    static void setEventLoopPollCallback(PollCallback callback);
    static bool isEventLoopPollCallbackSet();

private:
    static Installer theInstaller;
    static PollCallback thePollCallback;

    int installations = 0;
};
