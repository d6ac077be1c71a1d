// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/kit/KIT_Export.h>

/// Something that has work to do now and then: a socket with data, a timer. The event loop of the process (the host's
/// own, or the event reader) asks the installed generators in turns. The loop is hooked in from outside, so that the
/// generators know nothing of it.
class CMD_API VIO_EventGenerator {
public:
    /// Puts a generator under watch (install 1) or takes it out (0); 0 when that failed.
    using Installer = int (*)(VIO_EventGenerator *generator, int install);
    /// Makes one turn of the loop, without waiting.
    using PollCallback = void (*)(bool flag);

    VIO_EventGenerator() = default;
    VIO_EventGenerator(const VIO_EventGenerator &) = delete;
    VIO_EventGenerator &operator=(const VIO_EventGenerator &) = delete;
    /// Uninstalls the generator if it is still installed. Only this base is left of it then: a class uninstalls its
    /// objects in its own destructor, so that the installer can call them.
    virtual ~VIO_EventGenerator();

    virtual const char *getClassName() const;
    /// What the generator reads from; negative for none. A wait of the loop may end early when it has data.
    virtual int getFileDescriptor() const;
    /// The least time between two turns, in milliseconds; with 0 each turn of the loop counts.
    virtual int getPollTime() const;
    /// Whether a turn would find something to do.
    virtual bool areEventsWaiting();
    /// Does what there is to do. The generator may uninstall and destroy itself in it, and install others. 0 when it
    /// is gone.
    virtual int processEvents() = 0;

    /// Both return what the installer returns, and 0 while there is no loop. What is installed before there is one is
    /// handed to it as soon as it is there. The installer may call the generator, so the last class of an object installs
    /// it, once it is constructed.
    int installGenerator();
    int uninstallGenerator();
    /// One turn of the loop for all generators; nothing while there is no loop. The flag is handed through.
    void pollEventLoop(bool flag);

    /// A loop calls this when it is about to give its generators a turn each. Some do their work together, in the first
    /// turn of a pass; without this call a pass counts as new when one of them has its second turn.
    static void beginPass();
    static unsigned getPass();

    /// The hooks of the loop; null takes one out.
    static void setInstaller(Installer installer);
    static void setEventLoopPollCallback(PollCallback callback);
    static bool isEventLoopPollCallbackSet();

private:
    static Installer theInstaller;
    static PollCallback thePollCallback;

    int installations = 0;
};
