// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/kit/KIT_UndoManager.h>

#include <algorithm>
#include <limits>
#include <utility>

#include <orvlang/platform/osl/KIT_Immortal.h>

// Steps are the host's code: whatever they do, down to their destructors, may come back here. So a list is in order
// before a step is called, and what is dropped has left the lists before it is destroyed.

bool KIT_UndoManager::theCreationEnabled = true;

KIT_UndoStep::~KIT_UndoStep() = default;

KIT_UndoManager *KITgetUndoManager() {
    static KIT_Immortal<KIT_UndoManager> theUndoManager;
    return &theUndoManager.object;
}

int KITbeginUndoBlock(const char *name, int records, void *owner) {
    return KITgetUndoManager()->beginBlock(name, records != 0, owner);
}

void KITendUndoBlock(int id, void *owner) {
    KITgetUndoManager()->endBlock(id, owner);
}

bool KIT_UndoManager::isRecording() const {
    return theCreationEnabled && !replaying &&
           std::all_of(open.begin(), open.end(), [](const OpenBlock &block) { return block.records; });
}

void KIT_UndoManager::addStep(const char *name, std::unique_ptr<KIT_UndoStep> step) {
    if (!step || !isRecording())
        return;
    // At least what the list needs, so that steps that claim nothing do not pile up without end.
    std::int64_t size = std::max<std::int64_t>(step->getMemoryUsage(), sizeof(step));
    drop(undone);
    if (tooLarge)
        return;
    size = std::min(size, std::numeric_limits<std::int64_t>::max() - usage);
    current.steps.push_back(std::move(step));
    current.size += size;
    usage += size;
    if (open.empty())
        closeCurrent(name);
    trim();
}

int KIT_UndoManager::beginBlock(const char *name, bool records, void *owner) {
    latestId = latestId == std::numeric_limits<int>::max() ? 1 : latestId + 1;
    open.push_back({ latestId, name ? name : "", records, owner });
    return latestId;
}

bool KIT_UndoManager::endBlock(int id, void *owner) {
    const auto ended = std::find_if(open.begin(), open.end(), [&](const OpenBlock &block) {
        return block.id == id && block.owner == owner;
    });
    if (ended == open.end())
        return false;
    if (ended == open.begin()) {
        closeCurrent(ended->name.c_str());
        tooLarge = false;
    }
    open.erase(ended, open.end());
    return true;
}

/// Makes the steps that were recorded the latest block.
void KIT_UndoManager::closeCurrent(const char *name) {
    if (current.steps.empty())
        return;
    current.name = name ? name : "";
    done.push_back(std::exchange(current, {}));
}

bool KIT_UndoManager::undo() {
    if (!open.empty() && !replaying)
        closeCurrent(open.front().name.c_str());
    return replay(done, undone, [](const Block &block) {
        std::for_each(block.steps.rbegin(), block.steps.rend(), [](const auto &step) { step->undo(); });
    });
}

bool KIT_UndoManager::redo() {
    return replay(undone, done, [](const Block &block) {
        std::for_each(block.steps.begin(), block.steps.end(), [](const auto &step) { step->redo(); });
    });
}

bool KIT_UndoManager::replay(Blocks &from, Blocks &to, void (*run)(const Block &)) {
    if (replaying || from.empty())
        return false;
    Block block = std::move(from.back());
    from.pop_back();
    replaying = true;
    clearedMeanwhile = false;
    run(block);
    replaying = false;
    if (clearedMeanwhile) {
        usage -= block.size;
        return true;
    }
    to.push_back(std::move(block));
    trim();
    return true;
}

const char *KIT_UndoManager::getUndoName() const {
    if (!current.steps.empty())
        return open.front().name.c_str();
    return done.empty() ? nullptr : done.back().name.c_str();
}

const char *KIT_UndoManager::getRedoName() const {
    return undone.empty() ? nullptr : undone.back().name.c_str();
}

void KIT_UndoManager::clearUndos() {
    clearedMeanwhile = true;
    drop(done);
    drop(undone);
    dropCurrent();
    tooLarge = false;
}

void KIT_UndoManager::setMemoryLimit(std::int64_t bytes) {
    limit = bytes;
    trim();
}

void KIT_UndoManager::drop(Blocks &blocks) {
    const Blocks dropped = std::exchange(blocks, {});
    for (const Block &block : dropped)
        usage -= block.size;
}

void KIT_UndoManager::dropCurrent() {
    const Block dropped = std::exchange(current, {});
    usage -= dropped.size;
}

/// Drops the oldest blocks until the limit is kept. A block that is recorded still and does not fit alone goes as a
/// whole: half of it could not be taken back.
void KIT_UndoManager::trim() {
    Blocks dropped;
    for (Blocks *blocks : { &done, &undone }) {
        while (usage > limit && !blocks->empty()) {
            usage -= blocks->front().size;
            dropped.push_back(std::move(blocks->front()));
            blocks->pop_front();
        }
    }
    if (usage > limit && !current.steps.empty()) {
        tooLarge = true;
        dropCurrent();
    }
}
