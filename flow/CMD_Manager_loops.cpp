// SPDX-License-Identifier: Apache-2.0
// The manager's side of loops: which lines open one, what kind it is, and the commands that steer loops.
//
// A line that opens a loop never reaches a callback: `runCommand` builds the loop instead, and the source feeds it
// (CMD_Loop.cpp). `break` and `continue` only note a request, which the loop meets when it is asked for its next line.
#include <orvlang/engine/CMD_Engine.h>

#include <algorithm>
#include <ostream>
#include <string_view>

#include <orvlang/builtins/CMD_Commands.h>
#include <orvlang/engine/CMD_Args.h>
#include <orvlang/engine/CMD_LineScan.h>
#include <orvlang/flow/CMD_ForEach.h>
#include <orvlang/flow/CMD_ForLoop.h>
#include <orvlang/flow/CMD_Loop.h>
#include <orvlang/flow/CMD_LoopHead.h>
#include <orvlang/flow/CMD_WhileLoop.h>
#include <orvlang/platform/kit/KIT_Number.h>

namespace {

/// Returns the kind of loop of a word, abbreviated or not; null for any other word.
std::unique_ptr<CMD_LoopInfo> makeKind(std::string_view word) {
    if (word.starts_with("fore"))
        return std::make_unique<CMD_ForEach>();
    if (word.front() == 'f')
        return std::make_unique<CMD_ForLoop>();
    if (word.front() == 'w')
        return std::make_unique<CMD_WhileLoop>();
    return nullptr;
}

}   // namespace

bool CMD_Engine::isLoopLine(std::string_view line) const {
    const std::string_view word = CMDfirstWord(line).word;
    if (!CMD_LoopHead::canOpenLoop(word))
        return false;
    CMD_Command *command = nullptr;
    if (findCommand(word, false, &command) != CMD_Registry::Match::Found)
        return false;
    const std::string_view fullName = command->getName();
    return fullName == "for" || fullName == "while" || fullName == "foreach";
}

int CMD_Manager::isLoopCommand(const char *line) {
    return line && engine->isLoopLine(line) ? 1 : 0;
}

CMD_Loop *CMD_Manager::buildLoop(const char *line) {
    const std::string_view text = line ? line : "";
    const std::string_view word = CMDfirstWord(text).word;
    if (word.empty())
        return nullptr;
    std::unique_ptr<CMD_LoopInfo> kind = makeKind(word);
    if (!kind) {
        getError(0) << word << " not implemented currently.\n";
        return nullptr;
    }
    return new CMD_Loop(this, kind.release(), line);
}

int CMD_Manager::getBreakLevel() const {
    return engine->loops.breakLevel;
}

void CMD_Manager::bumpBreakLevel(int delta) {
    engine->loops.bumpBreakLevel(delta);
}

int CMD_Manager::getContinueLevel() const {
    return engine->loops.continueLevel;
}

void CMD_Manager::setContinueLevel(int level) {
    engine->loops.continueLevel = level;
}

int CMD_Manager::getLoopNestLevel() const {
    return engine->loops.nestLevel;
}

void CMD_Manager::bumpLoopNestLevel(int delta) {
    engine->loops.bumpNestLevel(delta);
}

void CMD_Commands::cmd_break(CMD_Args &args) {
    CMD_Manager *manager = CMD_Manager::getContext();
    const int level = args.argc() == 2 ? std::max(KITatoi(args.argv(1)), 0) : 1;
    if (manager->getLoopNestLevel() < level)
        args.err(1) << "Warning:  not that many nested loops" << std::endl;
    manager->bumpBreakLevel(std::min(level, manager->getLoopNestLevel()));
}

void CMD_Commands::cmd_continue(CMD_Args &args) {
    CMD_Manager *manager = CMD_Manager::getContext();
    if (manager->getLoopNestLevel() != 0)
        manager->setContinueLevel(1);
    else
        args.err(1) << "Error:  continue outside of loop construct" << std::endl;
}

void CMD_Commands::cmd_end(CMD_Args &) {
    CMD_Manager::getContext()->getError(1) << "Syntax Error:  end without matching while/for/do\n";
}

void CMD_Commands::cmd_loop(CMD_Args &args) {
    args.err(1) << "Argh - should never have got here" << std::endl;
}
