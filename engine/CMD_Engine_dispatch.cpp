// SPDX-License-Identifier: Apache-2.0
// The road of a line, last part: one statement becomes a call.
//
// `runCommand` receives the statement that `internalExecute` has cut out, applies the state of the `if` blocks, starts
// loops, expands the words, redirects output, finds the command and calls it; then it reports what the callback
// left and publishes the status.
#include <orvlang/engine/CMD_Engine.h>

#include <algorithm>
#include <optional>
#include <ostream>

#include <orvlang/engine/CMD_LineScan.h>
#include <orvlang/engine/CMD_Source.h>
#include <orvlang/engine/CMD_SourceState.h>
#include <orvlang/engine/CMD_StatementFrame.h>
#include <orvlang/flow/CMD_IfRules.h>
#include <orvlang/flow/CMD_Loop.h>
#include <orvlang/platform/fml/FML.h>
#include <orvlang/platform/kit/KIT_Char.h>
#include <orvlang/platform/kit/KIT_ErrorManager.h>
#include <orvlang/platform/kit/KIT_Number.h>
#include <orvlang/platform/kit/KIT_OFStream.h>
#include <orvlang/platform/kit/KIT_Performance.h>
#include <orvlang/symbols/CMD_VariableTable.h>

namespace {

bool isFileNameForRedirection(const KIT_String &name) {
    const std::string_view text = name.view();
    return std::all_of(text.begin(), text.end(), [](char c) { return KITisGraph(c) || c == ' '; });
}

}   // namespace

/// The streams of one statement: it runs on top slots of its own, which a redirection replaces by a file.
class CMD_Engine::StatementStreams {
public:
    explicit StatementStreams(CMD_Engine &owner) : engine(owner), slots(owner.streams.push(nullptr, nullptr)) {}
    ~StatementStreams() { engine.streams.popTo(slots); }
    StatementStreams(const StatementStreams &) = delete;
    StatementStreams &operator=(const StatementStreams &) = delete;

    /// Makes a file the output stream and, with `errorsToo`, the error stream. Reports why it cannot.
    void redirect(const KIT_String &name, bool append, bool errorsToo) {
        if (!engine.manager.getIORedirection()) {
            engine.getError(1) << "Application doesn't support I/O redirection\n";
            return;
        }
        if (!isFileNameForRedirection(name)) {
            engine.getError(1) << "Invalid file specified for I/O redirection: " << name;
            return;
        }
        file.emplace(name.c_str(), append);
        if (!file->isOpen()) {
            file.reset();
            engine.getError(1) << "Unable to redirect output to " << name << std::endl;
            return;
        }
        fileName = name;
        engine.streams.replaceOut(*file);
        if (errorsToo)
            engine.streams.replaceErr(*file);
    }

    /// Records an error when the file could not be written completely, as on a full disk.
    void checkFile() {
        if (!file)
            return;
        file->flush();
        KITcheckOutStream(*file, fileName.c_str(), 0);
    }

private:
    CMD_Engine &engine;
    const CMD_StreamStacks::Slots slots;
    std::optional<KIT_OFStream> file;
    KIT_String fileName;
};

/// Copies the status code into the variable `status` when the statement ends.
class CMD_Engine::StatusPublisher {
public:
    explicit StatusPublisher(CMD_Engine &owner) : engine(owner) {}
    ~StatusPublisher() { engine.updateStatusVariable(); }
    StatusPublisher(const StatusPublisher &) = delete;
    StatusPublisher &operator=(const StatusPublisher &) = delete;

private:
    CMD_Engine &engine;
};

namespace {

/// Opens a false branch while the words of its `else` are expanded: a command in an expression of an `else if` would be
/// skipped otherwise.
class OpenBranch {
public:
    OpenBranch(CMD_Source &owner, CMD_IfRules::Word word) : source(owner), level(owner.getIfNestLevel()) {
        isOpen = word == CMD_IfRules::wordElse && source.getIfState() == CMD_IF_FALSE;
        if (isOpen)
            source.setIfState(CMD_IF_TRUE);
    }
    ~OpenBranch() {
        if (isOpen && source.getIfNestLevel() == level && source.getIfState() == CMD_IF_TRUE)
            source.setIfState(CMD_IF_FALSE);
    }
    OpenBranch(const OpenBranch &) = delete;
    OpenBranch &operator=(const OpenBranch &) = delete;

private:
    CMD_Source &source;
    const int level;
    bool isOpen;
};

/// Records in the performance log, while that is on, how long a statement took, with the work on its words.
class StatementTimer {
public:
    explicit StatementTimer(const CMD_Source &theSource)
        : source(theSource), isMeasuring(KITgetPerformance()->isEnabled()) {
        if (isMeasuring)
            start();
    }
    ~StatementTimer() {
        if (isMeasuring)
            stop();
    }
    StatementTimer(const StatementTimer &) = delete;
    StatementTimer &operator=(const StatementTimer &) = delete;

    /// Without a command the record has no name.
    void setCommand(const CMD_Command *found) { command = found; }

private:
    // Out of the way of the statements that are not measured.
    [[gnu::noinline, gnu::cold]] void start() {
        line = source.getLineNumber();   // it may go on to others meanwhile
        KITgetPerformance()->begin();
    }
    [[gnu::noinline, gnu::cold]] void stop() {
        const char *const file = source.isStdIn() ? nullptr : source.getFilename();
        KITgetPerformance()->end(command ? command->getName() : "", file ? file : "", line);
    }

    const CMD_Source &source;
    const bool isMeasuring;
    int line = 0;
    const CMD_Command *command = nullptr;
};

}   // namespace

void CMD_Engine::runCommand(std::string_view line, CMD_StatementFrame &frame) {
    FML::theErrNo = 0;
    statusCode = 0;
    manager.setContext();
    ++commandsRun;
    const StatusPublisher publisher(*this);
    const SourceRef source = sources.top();
    // Before the state of the `if` blocks: a loop in a skipped branch must consume its body, too.
    if (isLoopLine(line))
        return startLoop(source, line);
    const std::string_view word = CMDfirstWord(line).word;
    const CMD_IfRules::Word ifWord = CMD_IfRules::wordOf(word);
    if (word.empty() || (ifWord == CMD_IfRules::wordNone && !source->doIfStatements())) {
        statusCode = 1;
        return;
    }
    StatementTimer timer(*source);
    {
        const bool expands = CMD_IfRules::expandsWords(source->getIfState(), ifWord);
        const OpenBranch branch(*source, ifWord);
        if (!parseStatement(line, frame, expands, ifWord == CMD_IfRules::wordNone)) {
            statusCode = 1;
            return;
        }
    }

    StatementStreams ownStreams(*this);
    echoStatement(*source, frame);
    const KIT_StringCshIO &io = frame.redirection;
    const bool errorsToo = !io.errName.isEmpty();
    const KIT_String &outName = errorsToo ? io.errName : io.outName;
    if (!outName.isEmpty())
        ownStreams.redirect(outName, io.appendOut || io.appendErr, errorsToo);
    if (!io.inName.isEmpty()) {
        getError(1) << "Application doesn't support input redirection\n";
        statusCode = 1;
        return;
    }
    CMD_Command *const command = resolveCommand(frame);
    timer.setCommand(command);
    if (command)
        callCommand(*command, *source, frame, ifWord == CMD_IfRules::wordNone, ownStreams);
}

void CMD_Engine::startLoop(const SourceRef &source, std::string_view line) {
    if (source->state->loop)
        getError(1) << "Warning: bad loop building in CMD" << std::endl;
    std::shared_ptr<CMD_Loop> loop(manager.buildLoop(std::string(line).c_str()));
    if (loop && !loop->parseArguments(source->doIfStatements()))
        loop = nullptr;
    source->state->setLoop(std::move(loop));
    statusCode = 1;
}

/// False when there is nothing to run: no words, a redirection without a name, or a script that was started or ended
/// by an expression in the words.
bool CMD_Engine::parseStatement(std::string_view line, CMD_StatementFrame &frame, bool expands,
                                bool redirects) {
    const auto variables = expands ? TRK_Manager::lookupVariableNoThread : nullptr;
    const auto expressions = expands ? TRK_Manager::lookupExpressionNoThread : nullptr;
    const size_t depth = sources.size();
    frame.redirection.clear();
    frame.parsed.parse(line, redirects);
    const int count =
        frame.parsed.expand(frame.words, variables, expressions, redirects ? &frame.redirection : nullptr);
    if (sources.size() != depth)
        return false;
    if (frame.redirection.missingName) {
        getError(1) << "Missing name for redirect" << std::endl;
        return false;
    }
    return count > 0;
}

void CMD_Engine::echoStatement(const CMD_Source &source, const CMD_StatementFrame &frame) {
    if (echoOffCount != 0 || !source.getEchoState())
        return;
    std::ostream &out = streams.out();
    const char *filename = source.getFilename();
    out << (filename ? filename : "") << " (" << source.getLineNumber() << "): " << frame.words.join(0)
        << std::endl;
}

CMD_Command *CMD_Engine::resolveCommand(CMD_StatementFrame &frame) {
    CMD_Args &args = frame.args;
    args.clear();
    for (int i = 0; i < frame.words.argc(); ++i)
        args.setArgument(i, frame.words[i]);
    using Match = CMD_Registry::Match;
    const char *word = args.argv(0);
    CMD_Command *command = nullptr;
    const Match result = findCommand(word, false, &command);
    if (result == Match::Missing) {
        // A word that is not a command but the name of a script sources that script.
        KIT_String path = word;
        if (findScript(path) && findCommand("cmdread", false, &command) == Match::Found)
            args.insertFront("cmdread");
    }
    if (command)
        return command;
    if (result == Match::Unsafe)
        getError(1) << "Command '" << word << "' is not a safe command and cannot be run\n\r";
    else if (result == Match::Ambiguous)
        getError(1) << "Command '" << word << "' not specific enough\n\r";
    else
        getError(1) << "Unknown command: " << word << "\n\r";
    breakAllSources();
    statusCode = 1;
    return nullptr;
}

void CMD_Engine::callCommand(CMD_Command &command, const CMD_Source &source, CMD_StatementFrame &frame,
                             bool hasOptions, StatementStreams &ownStreams) {
    CMD_Args &args = frame.args;
    args.init(manager, source, &streams.out(), &streams.err());
    args.command = &command;
    // The words of a condition are not options, whatever they begin with.
    if (hasOptions)
        args.stripOptions(command.getOptions());
    // An expression in the words can have run statements, here or on another manager.
    statusCode = 0;
    if (theManager != &manager)
        manager.setContext();
    if (args.argc() < 0)
        getError(1) << "Invalid option for command\n";
    else
        command.getCallback()(args);
    ownStreams.checkFile();
    reportLateErrors();
    streams.out().flush();
    streams.err().flush();
}

void CMD_Engine::reportLateErrors() {
    KIT_String text;
    KITgetErrorManager()->getErrorMessages(text, 0, 1);
    if (!text.isEmpty()) {
        getError(1) << text << std::endl;
        KITgetErrorManager()->clearAndDestroyErrors();
        statusCode = 1;
    }
    if (FML::theErrNo != 0) {
        getError(1) << "Expression error: " << fml_GetErrorText(FML::theErrNo) << std::endl;
        FML::theErrNo = 0;
        statusCode = 1;
    }
}

void CMD_Engine::updateStatusVariable() {
    CMD_VariableTable *locals = getSource()->getLocalVariables();
    CMD_VariableTable *holder = locals->hasValue("status") ? locals : globalVariables.get();
    KIT_NumberText text;
    holder->setValue("status", KITformatInt(statusCode, text).data(), false);
}
