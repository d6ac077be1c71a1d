// SPDX-License-Identifier: Apache-2.0
// The road of a request, step 1. `getline` waits for a line of standard input. When there is none,
// `pollEventGenerators` gives each event generator that is due its turn; those of sockets call `VIO_SocketSet::turn`
// (VIO_SocketSet.cpp). Between two passes the thread sleeps. `openport -w` calls the same by
// `VIO_EventGenerator::pollEventLoop`.
#include <orvlang/port/CMD_EvtMonitoringReader.h>

#include <cerrno>
#include <string_view>

#include <orvlang/engine/CMD_Manager.h>
#include <orvlang/platform/edit/KIT_CmdLineReader.h>
#include <orvlang/platform/kit/KIT_EnvControl.h>
#include <orvlang/platform/kit/KIT_StandardInput.h>
#include <orvlang/platform/kit/KIT_Wait.h>
#include <orvlang/platform/kit/KIT_WorkBuffer.h>
#include <orvlang/platform/net/VIO_EventGenerator.h>
#include <orvlang/platform/osl/KIT_Interrupt.h>
#include <orvlang/platform/osl/OSL_Time.h>
#include <orvlang/port/cmd_PollingEvtGeneratorWrapper.h>

namespace {

constexpr int theWaitWithGenerators = 1;   // milliseconds
constexpr int theWaitAlone = 10;
constexpr int theSpins = 3;   // passes without a wait after a command: the next one is likely near
constexpr size_t theLongestPlainPiece = 1023;   // bytes

struct Walk;
constinit Walk *theInnermostWalk = nullptr;

/// One walk over the generators, from the last to the first. A walk may begin within a turn of another one.
struct Walk {
    explicit Walk(int count) : left(count) { theInnermostWalk = this; }
    ~Walk() { theInnermostWalk = around; }

    int left;   // those before this place have not had their turn
    const cmd_PollingEvtGeneratorWrapper *inItsTurn = nullptr;   // borrowed; null again when it is uninstalled
    Walk *const around = theInnermostWalk;
};

/// Keeps the walks right when an entry goes.
void leaveWalks(int place, const cmd_PollingEvtGeneratorWrapper *wrapper) {
    for (Walk *walk = theInnermostWalk; walk; walk = walk->around) {
        if (place < walk->left)
            --walk->left;
        if (walk->inItsTurn == wrapper)
            walk->inItsTurn = nullptr;
    }
}

bool isInItsTurn(const cmd_PollingEvtGeneratorWrapper *wrapper) {
    for (const Walk *walk = theInnermostWalk; walk; walk = walk->around)
        if (walk->inItsTurn == wrapper)
            return true;
    return false;
}

/// The reader's line, as long as it is awaited.
class LineScope {
public:
    explicit LineScope(KIT_CmdLineReader &reader) : reader(reader) { reader.beginLine(); }
    ~LineScope() { reader.endLine(); }
    LineScope(const LineScope &) = delete;
    LineScope &operator=(const LineScope &) = delete;

private:
    KIT_CmdLineReader &reader;
};

unsigned int countCommands() {
    const CMD_Manager *const manager = CMD_Manager::getContext();
    return manager ? manager->getCommandsRun() : 0;
}

/// A line by blocking calls, with its newline.
CMD_EvtMonitoringReader::GetlineResult readPlainLine(KIT_WorkBuffer &line) {
    for (;;) {
        const std::string_view piece = KIT_StandardInput::inst().readPiece(theLongestPlainPiece);
        if (piece.empty())
            return CMD_EvtMonitoringReader::InputEnded;
        const std::string_view text = piece.substr(0, piece.find('\0'));
        line.strcat(text);
        if (text.size() != theLongestPlainPiece || text.back() == '\n')
            return CMD_EvtMonitoringReader::GotLine;
    }
}

}   // namespace

CMD_EvtMonitoringReader &CMD_EvtMonitoringReader::inst() {
    static CMD_EvtMonitoringReader *reader = nullptr;
    if (!reader) {
        reader = new CMD_EvtMonitoringReader;
        becomeEventLoop();
    }
    return *reader;
}

/// Generators that were installed before there was a loop come in at once.
void CMD_EvtMonitoringReader::becomeEventLoop() {
    VIO_EventGenerator::setInstaller(installGeneratorCallback);
    VIO_EventGenerator::setEventLoopPollCallback(pollEventGeneratorsCallback);
    KITsetDueDescriptors([](std::vector<pollfd> &wanted) { return inst().listDueDescriptors(wanted); });
}

int CMD_EvtMonitoringReader::installGeneratorCallback(VIO_EventGenerator *generator, int install) {
    return inst().installGenerator(*generator, install);
}

void CMD_EvtMonitoringReader::pollEventGeneratorsCallback(bool) {
    inst().pollEventGenerators();
}

int CMD_EvtMonitoringReader::installGenerator(VIO_EventGenerator &generator, int install) {
    if (install) {
        generators.append(new cmd_PollingEvtGeneratorWrapper(generator));
        return 1;
    }
    for (int i = generators.entries() - 1; i >= 0; --i) {
        const cmd_PollingEvtGeneratorWrapper *const wrapper = generators[i];
        if (&wrapper->getGenerator() != &generator)
            continue;
        leaveWalks(i, wrapper);
        generators.removeAt(i);
        delete wrapper;
        return 1;
    }
    return 0;
}

void CMD_EvtMonitoringReader::pollEventGenerators() {
    OSL_TimeVal now = {};
    OSLgettimeofday(&now);
    VIO_EventGenerator::beginPass();
    Walk walk(generators.entries());
    while (walk.left > 0) {
        cmd_PollingEvtGeneratorWrapper *const wrapper = generators[--walk.left];
        walk.inItsTurn = wrapper;
        wrapper->poll(now);
    }
}

bool CMD_EvtMonitoringReader::pollRunsCommands() {
    const unsigned int before = countCommands();
    pollEventGenerators();
    return countCommands() != before;
}

/// A generator that waits within its own turn does not take what arrives for it, so it would end each of its waits.
long long CMD_EvtMonitoringReader::listDueDescriptors(std::vector<pollfd> &wanted) const {
    OSL_TimeVal now = {};
    OSLgettimeofday(&now);
    long long next = -1;
    for (const cmd_PollingEvtGeneratorWrapper *wrapper : generators) {
        const int descriptor = wrapper->getGenerator().getFileDescriptor();
        if (descriptor < 0 || isInItsTurn(wrapper))
            continue;
        const long long time = wrapper->getTimeToTurn(now);
        if (time == 0)
            wanted.push_back({ descriptor, POLLIN, 0 });
        else if (next < 0 || time < next)
            next = time;
    }
    return next;
}

CMD_EvtMonitoringReader::GetlineResult CMD_EvtMonitoringReader::getline(KIT_CmdLineReader &reader,
                                                                        KIT_WorkBuffer &line) {
    bool done = false;
    errno = 0;
    const bool plainInput = KIT_EnvControl::getInt(KIT_EnvControl::PlainInput) != 0;
    line.clear();
    const LineScope scope(reader);
    for (int spins = 0;;) {
        if ((!plainInput && reader.holdsInput()) || KITisDataAvailableOnStdin()) {
            if (plainInput)
                return readPlainLine(line);
            if (!reader.readPartOfLine(line, done))
                return InputEnded;
            if (done)
                return GotLine;
        } else if (generators.entries() > 0 && pollRunsCommands()) {
            spins += theSpins;
        }
        if (!KITisStdinValid() || KITgetInterrupt()->isInterrupted())
            return InputEnded;
        if (spins > 0) {
            --spins;
            continue;
        }
        reader.showLine();
        KITwaitForTimeoutOrDataOnStdin(generators.entries() > 0 ? theWaitWithGenerators : theWaitAlone);
    }
}
