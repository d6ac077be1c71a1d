// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <iosfwd>
#include <memory>
#include <string>

#include <orvlang/engine/CMD_Command.h>
#include <orvlang/platform/kit/KIT_Export.h>
#include <orvlang/platform/kit/KIT_PtrArray.h>
#include <orvlang/platform/kit/KIT_String.h>
#include <orvlang/platform/kit/KIT_StringArray.h>
#include <orvlang/platform/trk/TRK_Manager.h>

class CMD_AliasTable;
class CMD_Args;
class CMD_Engine;
class CMD_Loop;
class CMD_Source;
class CMD_VariableTable;
class VIO_ServerSocketListener;

/// The object that a host creates to have a command language.
///
/// The host constructs a manager, installs commands and feeds it text: `sendInput` for lines that a person types,
/// `sendMultiLineInput` for a block of text, `execute` for calls from programs. One call runs everything that the
/// text started: the scripts that it sources and the loops that it closes. Failures of the language are text on
/// the error stream; nothing is thrown.
///
/// A manager belongs to one thread at a time; any callback on that thread may call it again. The tables of
/// variables and aliases may be used from several threads. Streams that are handed in stay the caller's.
class CMD_API CMD_Manager : public TRK_Manager {
public:
    using PostCmdCallback = void (*)(void *data);
    using CommandEchoCallback = void (*)(const char *line, void *data);

    /// Managers of one name share their list of commands, which outlives them. A null name counts as empty. With
    /// a non-zero `extend` the function `CMDextendLibrary` of every plug-in library is run on the new manager.
    explicit CMD_Manager(const char *name, int extend = 0);
    ~CMD_Manager() override;
    CMD_Manager(const CMD_Manager &) = delete;
    CMD_Manager &operator=(const CMD_Manager &) = delete;

    /// The manager that built-in callbacks act on: the one that ran a statement last. Null when there is none.
    static CMD_Manager *getContext();
    static bool getContextExists();
    void setContext() override;
    /// Expires when the manager is gone: for code that refers to it without owning it.
    std::weak_ptr<const void> getLife() const;

    // Running text.

    /// Runs text with streams and expansions of its own. A null stream means the current one. The flags are 0 or 1.
    /// As a block, it does not consume the text that an enclosing statement has after a `;`. Text may contain newlines.
    /// The status of the last statement can be read with getStatusCode. A null text counts as empty.
    void execute(const char *text, int expandHistory, std::ostream *out, std::ostream *err, int expandAliases,
                 bool asBlock);
    /// One line that a person typed, with or without its line end. It may be continued (a backslash at its end),
    /// answer a pending `read`, or belong to a loop that is being typed.
    void sendInput(const char *line, bool asBlock);
    /// Text of several lines, run like a script that has no position. Null and empty text do nothing.
    void sendMultiLineInput(const char *text, bool asBlock);
    /// Returns what is open and needs a further line of input; a host asks when its input has ended. A loop that runs
    /// right now does not need one.
    enum class Pending { Nothing, Continuation, Read, Loop, If };
    Pending getPendingInput() const;
    /// Drops all that waits for further lines, the scripts that stopped at a `read` too: for a host whose user discards
    /// what was half typed. Does nothing while a statement runs.
    void abandonInput();

    // Commands.

    /// Adds a command, or puts it in front of the one of that name. The texts are not copied and must stay.
    /// See CMD_Command for the option string, null counts as empty; in safe mode only commands that are marked safe
    /// run. Without a name or a callback nothing is added.
    void installCommand(const char *name, const char *options, CMD_CommandCallback callback, bool safe);
    /// Returns 1 when exactly that command is installed and may run in the present mode, otherwise 0.
    int isCommandDefined(const char *name);
    /// Returns the option string of the command that a word means, abbreviated or not; null when none can run.
    const char *getOptions(const char *name);
    /// Appends the commands that plug-in libraries installed, sorted by name.
    void getDSOCommands(KIT_PtrArray<CMD_Command *> &list);

    // Help.

    /// Lists command names in columns: all, or those whose help text holds the keyword, or those that begin with
    /// the prefix. Null and empty mean no such filter.
    void commandDump(std::ostream &os, const char *keyword, const char *prefix) const;
    /// Writes the help for one word: an alias is named and followed, a prefix of one command means that command, a
    /// prefix of several lists them.
    void commandHelp(std::ostream &os, const char *name) const;
    /// The entry of that name out of every help file of that name on the general path.
    void printHelp(std::ostream &os, const char *filename, const char *name) const;
    /// Adds the commands whose entries hold the keyword, in any case, sorted and each once.
    void searchHelp(KIT_PtrArray<CMD_Command *> &found, const char *filename, const char *keyword) const;

    // Completion of a half-typed command word. Nothing is filtered; a name that is both an alias and a command counts
    // twice.

    /// Sets `result` to the longest common start of all aliases and commands that begin with the prefix, followed by a
    /// blank when there is only one. Without any, to the prefix itself. Null counts as empty.
    void completeCommand(const char *prefix, KIT_String &result) const;
    /// Appends the aliases, then the commands, that begin with the prefix.
    void matchCommands(const char *prefix, KIT_StringArray &names) const;

    // Command ports. They belong to the process; commands that arrive on one run on the manager that was the context
    // when it was opened.

    /// Called when the application that was started for a port has ended.
    using ChildExitCallback = void (*)(VIO_ServerSocketListener &listener, void *data, bool flag);
    /// Opens a port, any number: 1024 to 65535 are used as they are, others are mapped there. Returns true when this
    /// call opened it; failures are reported to `args` or `errors`. `argv` (ended by null) or the command line
    /// `application` names a program to start, whose end closes the port; null for none. `pid`, unless null, receives
    /// its process id. With `wait` the call serves the event loop until the port is closed or the application has
    /// ended.
    bool openPort(int port, bool restrictToSafeCommands, bool quiet, bool wait, CMD_Args &args,
                  const char *const *argv, int *pid, bool separateErrors, bool silent,
                  const char *listenerOption, ChildExitCallback childExitCallback, bool spawnFlag,
                  bool pollFlag);
    bool openPort(int port, bool restrictToSafeCommands, bool quiet, bool wait, std::ostream &errors,
                  const char *const *argv, int *pid, bool separateErrors, bool silent,
                  const char *listenerOption, ChildExitCallback childExitCallback, bool spawnFlag,
                  bool pollFlag);
    bool openPort(int port, bool restrictToSafeCommands, bool quiet, bool wait, CMD_Args &args,
                  const char *application, int *pid, bool separateErrors, bool silent,
                  const char *listenerOption, ChildExitCallback childExitCallback, bool spawnFlag,
                  bool pollFlag);
    bool openPort(int port, bool restrictToSafeCommands, bool quiet, bool wait, std::ostream &errors,
                  const char *application, int *pid, bool separateErrors, bool silent,
                  const char *listenerOption, ChildExitCallback childExitCallback, bool spawnFlag,
                  bool pollFlag);
    /// Closes the ports of that number, if any.
    void closePort(int port);
    void closeAutoPort();
    /// Returns the number of the automatic port, which is opened if necessary; -1 on failure and without a manager.
    static int getOrvLangPort();

    // Sources.

    /// The current source; never null, and not to be kept beyond the statement.
    CMD_Source *getSource() const;
    /// 0 at the console, 1 in a script that it sources, and so on. What is served while `openport -w` waits counts from
    /// there.
    int getSourceLevel() const;
    /// Makes a script the current source; its lines run after the current statement. The file is looked up as
    /// written, then on the script path. Null when it cannot be read or is empty. With a non-zero echo each of
    /// its statements is shown before it runs.
    CMD_Source *pushSource(const char *filename, int echo);
    /// Ends the current source, unless it is the console, and returns the new current one. With a non-zero complain
    /// a loop that was never closed is reported.
    CMD_Source *popSource(int complain);

    // Variables. Reading looks through the locals of the sources, the newest first, then at the globals.

    CMD_VariableTable *getGlobalVariables() const;
    /// Sets a local of the current source (with `parent`, of the one that sourced it) or a global; a global call
    /// overwrites a local of the same name. New globals are exported to the environment. Illegal names are ignored.
    void setVariable(const char *name, const char *value, int local, int parent);
    /// Removes the local of the current source, or else the global. `ORP`, `JOB` and `ORPNAME` stay.
    void unsetVariable(const char *name);
    bool getVariable(const char *name, KIT_String &value) const;
    bool getVariable(const char *name, float &value) const;
    bool getVariable(const char *name, int &value) const;
    bool hasVariable(const char *name) const;
    /// As getVariable and hasVariable, and after the globals the process environment.
    bool getEnv(const char *name, KIT_String &value) const;
    bool hasEnv(const char *name) const;
    /// Adds the names of the current source's locals and of the globals; a name in both comes twice.
    void getVariableNames(KIT_StringArray &names, int dirtyOnly) const;
    /// Marks the same variables as unchanged; returns how many had been changed.
    int clearDirtyVariables();
    /// 0 for a name that `set` refuses: one of the channel manager's own, a digit in front, a foreign character.
    int isVariableNameOk(const char *name) const;
    /// Sets the global and exported `JOB`.
    void setJob(const char *path);
    /// Sets `ORP` and `ORPNAME` to the directory and the name of a scene file.
    void setMotName(const char *path);
    /// Drops the globals and makes the built-in ones anew. `ORP`, `ORPNAME` and `JOB` survive.
    void resetVariables();
    /// Writes `set` lines for the current source's locals and the globals.
    void saveVariables(std::ostream &os);
    /// While a scene loads, setVariable leaves `ORP` and `ORPNAME` alone. Calls nest.
    void beginLoading();
    void endLoading();
    bool isLoading() const;

    // Aliases.

    CMD_AliasTable *getAliases() const;
    bool getAlias(const char *name, KIT_String &value) const;
    void setAlias(const char *name, const char *value);
    void destroyAlias(const char *name);
    void destroyAliases();
    /// Writes an `alias` line for each alias.
    void saveAliases(std::ostream &os);

    /// Writes the text in single quotes with a backslash before each single quote, and checks the stream.
    void saveCommandString(std::ostream &os, const KIT_String &text);
    /// Writes the text as one word of the language: bare when it can be, otherwise quoted. Null counts as empty.
    static void saveProtectedString(std::ostream &os, const char *text);
    /// Replaces `\n`, `\t` and their kin in the text.
    static void expandControlSequences(KIT_String &text);

    /// Reads a range of frames from two options of a command: `rangeOption` has two values, `incOption` one. Without
    /// a range both ends are the current frame; text that is not a number counts as 0. `inc` is never 0, and leads from
    /// start to end.
    void getFrameRange(CMD_Args &args, int &start, int &end, int &inc, char rangeOption, char incOption);

    // History, of the current source: a script sees its own empty table.

    void dumpHistory(std::ostream &os) const;
    void clearHistory();
    const char *getHistoryCommand(int index) const;
    unsigned int getHistoryCount() const;
    /// Switches the recording of typed lines; returns the former state, 1 or 0.
    int setHistoryCapture(int on);

    // Streams.

    /// Further output goes to these until the matching pop; the process's own streams stay at the bottom.
    void pushOutputStreams(std::ostream &out, std::ostream &err);
    void popOutputStreams();
    /// Replace the current stream and return the former one.
    std::ostream &setStandardOut(std::ostream &stream);
    std::ostream &setStandardErr(std::ostream &stream);
    /// Must be called before a stream that may be on a stack is destroyed.
    void streamDeleted(std::ostream &stream);
    /// The current error stream; with a non-zero prefix the position in the script is written to it first.
    std::ostream &getError(int prefix);

    // Prompts. Null counts as empty text.

    void pushPrompt(const char *text);
    void popPrompt();
    void setPrompt(const char *text);
    /// The prompt at the index, 0 the oldest; outside the stack the current one.
    const char *getPrompt(int index) const;
    /// The text to show now: expanded, and by the state of the language ("> " in a loop, "? " in skipped code).
    void getPrompt(KIT_String &out);
    /// Writes that text to the current output stream and flushes it.
    void doPrompt();

    // Modes.

    void setVerbose(int on);
    /// 2 when on, otherwise 0.
    int getVerbose() const;
    void setIORedirection(int on);
    /// 1 when output redirection is allowed and safe mode is off, otherwise 0.
    int getIORedirection() const;
    /// In safe mode only commands marked safe run and nothing is redirected. It is not a sandbox.
    void setSafeMode(int on);
    int isInSafeMode() const;
    void setBrowserMode(int on);
    int isInBrowserMode() const;
    /// Statement echo is silent while there are more calls of echoOff than of echoOn.
    void echoOff();
    void echoOn();

    // Callbacks.

    /// Called after each statement. Returns the function that it replaces.
    PostCmdCallback setPostCmdCallback(PostCmdCallback callback, void *data);
    void *getPostCmdCallbackData() const;
    /// Called with each console line while setCommandEcho is on.
    void setCommandEchoCallback(CommandEchoCallback callback, void *data);
    void *getCommandEchoCallbackData() const;
    void setCommandEcho(bool on);
    bool getCommandEcho() const;

    // Running state.

    void setStatusCode(int code);
    /// The outcome of the last statement; 0 when a callback starts.
    int getStatusCode() const;
    /// Statements run so far, skipped and failed ones too.
    unsigned int getCommandsRun() const;
    /// Holds channel events back until the matching end. False outside scripts, and for an end without a begin.
    bool beginChannelBlock();
    bool endChannelBlock();

    // Loops and conditions.

    /// Returns 1 when the line's first word names `for`, `foreach` or `while`, abbreviated or not; 0 for null.
    int isLoopCommand(const char *line);
    /// Returns a loop that has yet to collect its lines; null when there is no word. The caller owns it.
    CMD_Loop *buildLoop(const char *line);
    int getBreakLevel() const;
    void bumpBreakLevel(int delta);
    int getContinueLevel() const;
    void setContinueLevel(int level);
    /// The number of loops alive.
    int getLoopNestLevel() const;
    void bumpLoopNestLevel(int delta);
    /// Returns 1 for true, 0 for false, -1 for a syntax error; prints nothing. The text form expands variables and
    /// expressions first.
    int evaluateCondition(int argc, const char *const argv[]);
    int evaluateCondition(const char *text);

    /// The callback of `python`, for a host that offers it under a name of its own.
    static void cmd_python(CMD_Args &args);

protected:
    bool getVariableString(const char *name, KIT_String &value, int &flags, int thread) override;

private:
    friend class CMD_Engine;

    const std::unique_ptr<CMD_Engine> engine;   // the state of the manager and the steps that run text
};
