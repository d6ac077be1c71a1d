// SPDX-License-Identifier: Apache-2.0
// A host whose changes can be taken back: its command `lamp` records each change as a step, and its commands `undo` and
// `redo` go back and forth. It reads lines from standard input and serves command ports while it waits; the changes of one
// request are one change to the user. `undo < session.cmd` shows it.
#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <utility>

#include <orvlang/engine/CMD_Args.h>
#include <orvlang/engine/CMD_Manager.h>
#include <orvlang/platform/edit/KIT_CmdLineReader.h>
#include <orvlang/platform/kit/KIT_UndoManager.h>
#include <orvlang/platform/kit/KIT_WorkBuffer.h>
#include <orvlang/port/CMD_EvtMonitoringReader.h>

namespace {

std::map<std::string, std::string> lamps;   // name, colour; empty when it is off

/// One lamp got another colour.
class ColourStep : public KIT_UndoStep {
public:
    ColourStep(std::string lampName, std::string otherColour)
        : lamp(std::move(lampName)), other(std::move(otherColour)) {}
    void undo() override { std::swap(lamps[lamp], other); }
    void redo() override { std::swap(lamps[lamp], other); }
    std::int64_t getMemoryUsage() const override {
        return static_cast<std::int64_t>(sizeof(*this) + lamp.capacity() + other.capacity());
    }

private:
    const std::string lamp;
    std::string other;   // the colour that it does not have now
};

/// lamp name colour
void cmd_lamp(CMD_Args &args) {
    if (args.argc() != 3)
        return args.showUsage();
    const std::string name = args.argv(1);
    auto step = std::make_unique<ColourStep>(name, std::exchange(lamps[name], args.argv(2)));
    KITgetUndoManager()->addStep("lamp", std::move(step));
}

/// lamps: lists the lamps that are on.
void cmd_lamps(CMD_Args &args) {
    for (const auto &[name, colour] : lamps)
        if (!colour.empty())
            args.out() << name << " is " << colour << std::endl;
}

void cmd_undo(CMD_Args &args) {
    const char *const name = KITgetUndoManager()->getUndoName();
    args.out() << "undo " << (name ? name : "nothing") << std::endl;
    KITgetUndoManager()->undo();
}

void cmd_redo(CMD_Args &args) {
    const char *const name = KITgetUndoManager()->getRedoName();
    args.out() << "redo " << (name ? name : "nothing") << std::endl;
    KITgetUndoManager()->redo();
}

}   // namespace

int main() {
    CMD_Manager manager("undo");
    manager.installCommand("lamp", "", cmd_lamp, true);
    manager.installCommand("lamps", "", cmd_lamps, true);
    manager.installCommand("undo", "", cmd_undo, true);
    manager.installCommand("redo", "", cmd_redo, true);

    CMD_EvtMonitoringReader &events = CMD_EvtMonitoringReader::inst();
    KIT_CmdLineReader reader(nullptr, nullptr);
    KIT_WorkBuffer line;
    while (events.getline(reader, line) == CMD_EvtMonitoringReader::GotLine)
        manager.sendInput(line.c_str(), false);
    return manager.getStatusCode();
}
