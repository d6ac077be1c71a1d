// SPDX-License-Identifier: Apache-2.0
// Pushing and popping sources: a script is pushed on top of the console and popped at its end.
#include <orvlang/engine/CMD_Engine.h>

#include <algorithm>
#include <ostream>

#include <orvlang/engine/CMD_ChannelBlocks.h>
#include <orvlang/engine/CMD_Source.h>
#include <orvlang/engine/CMD_SourceState.h>
#include <orvlang/engine/CMD_WaitScope.h>
#include <orvlang/flow/CMD_Loop.h>
#include <orvlang/platform/kit/KIT_PathSearch.h>
#include <orvlang/platform/kit/KIT_Utf8.h>
#include <orvlang/platform/kit/VIO_Info.h>
#include <orvlang/platform/kit/VIO_Reader.h>

namespace {

// Scripts that source themselves without end stop here, while their texts still fit in memory.
constexpr size_t theDeepestSource = 100000;

}   // namespace

bool CMD_Engine::findScript(KIT_String &path) const {
    const VIO_Info info(path.c_str());
    if (info.hasAccess(1))
        return !info.getIsDirectory();
    return KIT_PathSearch::getInstance(7)->orvaneFindFile(path.c_str(), path) != 0;
}

CMD_Source *CMD_Engine::pushSource(const char *filename, int echo) {
    if (sources.size() > theDeepestSource) {
        reportNestingTooDeep();
        return nullptr;
    }
    KIT_String path = filename;
    if (!findScript(path))
        return nullptr;
    VIO_Reader reader(path.c_str());
    VIO_ReaderStream *stream = reader.getStream();
    if (reader.getLength() <= 0 || !stream || !stream->isGood())
        return nullptr;
    const auto length = static_cast<size_t>(reader.getLength());
    const auto buffer = std::make_shared_for_overwrite<char[]>(length);
    const size_t count = stream->read(buffer.get(), length);
    if (!stream->isGood())
        return nullptr;
    auto source = std::make_shared<CMD_Source>(path.c_str(), 0);
    const std::string_view text = KITwithoutByteOrderMark({ buffer.get(), count });
    source->state->setInput({ buffer, text.data() }, text.size());
    source->setEchoState(echo);
    sources.push(std::move(source));
    return getSource();
}

CMD_Source *CMD_Engine::popSource(int complain) {
    if (sources.level() > 0) {
        const SourceRef popped = sources.pop();
        const char *filename = popped->getFilename() ? popped->getFilename() : "";
        if (popped->state->loop && complain)
            getError(1) << "Invalid loop nesting in " << filename << std::endl;
        popped->state->close();
        const int blocksBelow = sources.getConsole().channelBlocksBelow;
        if (sources.level() == 0 && CMD_ChannelBlocks::getCount() > blocksBelow) {
            getError(1) << "Got chblockbegin without chblockend in " << filename << std::endl;
            CMD_ChannelBlocks::closeTo(blocksBelow);
        }
    }
    sources.updateAliasesOff(sources.size() - 1);
    return getSource();
}

void CMD_Engine::dropPendingInput() {
    if (!continuationLine.empty())
        prompts.pop();
    continuationLine.clear();
    readVariables = nullptr;
    while (sources.level() > 0)
        popSource(0);
    getSource()->state->abandon();
}

CMD_WaitScope::CMD_WaitScope(CMD_Engine &owner)
    : engine(owner), life(owner.life), console(owner.sources.pushConsole()),
      loops(std::exchange(owner.loops, {})), readVariables(std::exchange(owner.readVariables, nullptr)),
      readLocal(owner.readLocal), continuationLine(std::exchange(owner.continuationLine, {})) {}

CMD_WaitScope::~CMD_WaitScope() {
    if (life.expired())
        return;
    engine.dropPendingInput();
    engine.sources.setConsole(console);
    engine.popSource(0);
    const int loopsLeft = engine.loops.nestLevel;
    engine.loops = loops;
    engine.loops.nestLevel += loopsLeft;
    engine.readVariables = readVariables;
    engine.readLocal = readLocal;
    engine.continuationLine = continuationLine;
}

void CMD_Engine::breakAllSources() {
    while (sources.level() > 0)
        popSource(0);
    loops.doubleBreakLevel();
}

// All scripts end here: otherwise each of their levels would continue once the deepest run has been refused, and would
// reach the limit again.
void CMD_Engine::reportNestingTooDeep() {
    getError(1) << "Nesting too deep" << std::endl;
    breakAllSources();
    statusCode = 1;
}
