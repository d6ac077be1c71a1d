// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <orvlang/engine/CMD_Line.h>
#include <orvlang/engine/CMD_Manager.h>
#include <orvlang/engine/CMD_PromptStack.h>
#include <orvlang/engine/CMD_Registry.h>
#include <orvlang/engine/CMD_SourceStack.h>
#include <orvlang/engine/CMD_StreamStacks.h>
#include <orvlang/flow/CMD_LoopControl.h>
#include <orvlang/platform/kit/KIT_String.h>

struct CMD_StatementFrame;

/// The private half of a manager: its state, and the steps by which it runs text.
///
/// Hosts compile against CMD_Manager alone, which owns one engine. So a field or a step that is added here changes
/// nothing for them. The operations of CMD_Manager, the built-in commands, loops and ports use the engine directly.
/// What a host can override (CMD_Manager::setContext) is called through `manager`.
class CMD_Engine {
public:
    using SourceRef = CMD_SourceStack::SourceRef;

    enum StateBits : unsigned { stateVerbose = 2, stateIORedirection = 4 };
    enum ModeBits : unsigned {
        modeExpandAliases = 1,
        modeExpandHistory = 2,
        modeCaptureHistory = 4,
        modeSafe = 8,
        modeBrowser = 16,
    };

    CMD_Engine(CMD_Manager &manager, const char *name);
    ~CMD_Engine();
    /// Closes the ports and frees the tables and sources: the last step at which the manager is still whole.
    void close();
    CMD_Engine(const CMD_Engine &) = delete;
    CMD_Engine &operator=(const CMD_Engine &) = delete;

    static CMD_Engine &of(const CMD_Manager &manager) { return *manager.engine; }

    // What a new manager installs.
    void installBuiltIn();
    void installBaseCommands();
    void addPortExtension();
    void initLibraryGlue();

    // The road of a line, in this order.
    void execute(const char *text, int expandHistory, std::ostream *out, std::ostream *err, int expandAliases,
                 bool asBlock);
    void sendInput(const char *line, bool asBlock);
    void sendMultiLineInput(const char *text, bool asBlock);
    void finishContinuation();
    void internalSendInput(std::string_view line, bool pushedSource);
    void drain(size_t baseLevel, bool readWasPending, bool loopWasRunning);
    void processInput(const SourceRef &source, const CMD_Line &line);
    void internalExecute(const CMD_Line &line);
    void applyHistory(CMD_Line &text);
    bool aliasExpand(std::string_view line, std::string &expanded) const;
    void runCommand(std::string_view line, CMD_StatementFrame &frame);

    // The steps of runCommand.
    class StatementStreams;
    bool isLoopLine(std::string_view line) const;
    void startLoop(const SourceRef &source, std::string_view line);
    bool parseStatement(std::string_view line, CMD_StatementFrame &frame, bool expands, bool redirects);
    void echoStatement(const CMD_Source &source, const CMD_StatementFrame &frame);
    CMD_Command *resolveCommand(CMD_StatementFrame &frame);
    void callCommand(CMD_Command &command, const CMD_Source &source, CMD_StatementFrame &frame, bool hasOptions,
                     StatementStreams &ownStreams);
    void reportLateErrors();
    void updateStatusVariable();
    void reportOutOfMemory();

    // Nested runs.
    /// Returns true for a run inside a statement or an `execute` of the host, false for the lines that a host sends.
    bool isNested() const { return executeDepth > 0 || inputDepth > 1; }
    bool isNestingOver() const;
    bool refusesRun();
    void reportNestingTooDeep();

    // Commands.
    /// Looks a command up; in safe mode only safe ones are found.
    CMD_Registry::Match findCommand(std::string_view name, bool exact, CMD_Command **command = nullptr) const {
        return commands.find(name, exact, isInSafeMode(), command);
    }

    // Sources.
    CMD_Source *getSource() const { return sources.top().get(); }
    bool findScript(KIT_String &path) const;
    CMD_Source *pushSource(const char *filename, int echo);
    CMD_Source *popSource(int complain);
    void breakAllSources();
    CMD_Manager::Pending getPendingInput() const;
    void dropPendingInput();

    // Variables.
    void setReadVariables(std::string_view line);
    void setArgumentVariables(const CMD_Args &args);

    // Streams and prompts.
    std::ostream &getError(int prefix);
    void getPrompt(KIT_String &out);

    // Ports.
    bool openPort(int port, bool restrictToSafeCommands, bool quiet, bool wait, CMD_Args *args,
                  std::ostream *errors, const char *const *argv, int *pid, bool separateErrors, bool silent,
                  const char *listenerOption, CMD_Manager::ChildExitCallback childExitCallback, bool spawnFlag,
                  bool pollFlag);
    /// Closes the ports whose requests run on this manager.
    void closeOwnPorts();

    // Modes.
    void setModeBit(unsigned bit, bool on) { modeBits = on ? modeBits | bit : modeBits & ~bit; }
    void setStateBit(unsigned bit, bool on) { stateBits = on ? stateBits | bit : stateBits & ~bit; }
    bool isInSafeMode() const { return (modeBits & modeSafe) != 0; }

    // Shared by all managers of the process.
    static CMD_Manager *theManager;
    static int theManagerCount;
    static bool theLibraryGlueNeeded;   // cleared by the first manager of the process

    CMD_Manager &manager;   // the owner
    const std::shared_ptr<const void> life = std::make_shared<char>();
    CMD_Registry commands;
    CMD_StreamStacks streams;
    CMD_PromptStack prompts;
    KIT_String readVariables;   // not empty while a `read` waits for its line
    int readLocal = 1;
    CMD_SourceStack sources;
    std::unique_ptr<CMD_VariableTable> globalVariables;
    std::unique_ptr<CMD_AliasTable> aliases;
    unsigned int commandsRun = 0;
    unsigned stateBits = stateIORedirection;
    CMD_LoopControl loops;
    int executeDepth = 0;
    int inputDepth = 0;   // of sendInput and sendMultiLineInput, through which `execute` goes as well
    int statusCode = 0;
    unsigned modeBits = modeExpandAliases | modeExpandHistory | modeCaptureHistory;
    std::string continuationLine;
    int loadingCount = 0;
    int echoOffCount = 0;
    CMD_Manager::PostCmdCallback postCmdCallback = nullptr;
    void *postCmdCallbackData = nullptr;
    CMD_Manager::CommandEchoCallback commandEchoCallback = nullptr;
    void *commandEchoCallbackData = nullptr;
    bool commandEcho = false;
    std::vector<std::unique_ptr<CMD_StatementFrame>> frames;   // working memory, one for each nested statement
    size_t framesInUse = 0;

private:
    // Each keeps a piece of running state right on every way out of an operation.
    class BlockScope;
    class ExecuteScope;
    class FrameScope;
    class LevelScope;
    class ModeScope;
    class StatusPublisher;
};
