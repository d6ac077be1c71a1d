// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <vector>

#include <orvlang/platform/kit/KIT_Export.h>

/// One change of a host's data that can be taken back and made again. Its owner calls undo and redo by turns, undo
/// first. Both, and the destructor, may use the manager and must not throw. What they record while they run is dropped.
class CMD_API KIT_UndoStep {
public:
    virtual ~KIT_UndoStep();
    virtual void undo() = 0;
    virtual void redo() = 0;
    /// Bytes that are kept for it, the object included. Asked once, when the step is added.
    virtual std::int64_t getMemoryUsage() const = 0;
};

/// What can be taken back, in blocks: a block is what its user sees as one change, and has any number of steps. A host's
/// commands add the steps; whoever starts something larger, such as a request from outside, puts a block around it.
///
/// Undone blocks can be made again until the next step is added. When the steps need more memory than the limit, the
/// oldest blocks are dropped. Not for several threads at a time.
class CMD_API KIT_UndoManager {
public:
    // Whether changes are recorded. They are from the start.

    static void enableUndoCreation() { theCreationEnabled = true; }
    static void disableUndoCreation() { theCreationEnabled = false; }
    static bool isUndoCreationEnabled() { return theCreationEnabled; }
    /// Back to the state of the start, for when the last user is gone.
    void clearUndoFlags() { theCreationEnabled = true; }

    // Recording.

    /// Whether a step that is added now would be kept. A command can save itself the making of one that is not.
    bool isRecording() const;
    /// Adds a step to the open block, or as a block of its own with that name. When nothing is recorded now, the step
    /// is destroyed.
    void addStep(const char *name, std::unique_ptr<KIT_UndoStep> step);
    /// Opens a block and gives its id, which is above 0. Inside another one it is part of that, and only its end is of
    /// interest. Unless `records`, what is done inside is not recorded. The owner is anything that tells one user of
    /// blocks from another. Null counts as an empty name.
    int beginBlock(const char *name, bool records, void *owner);
    /// Ends that block and those still open inside it. The outermost one becomes the latest block, unless no step was
    /// added. False, and nothing happens, when no open block has the id and the owner.
    bool endBlock(int id, void *owner);

    // Going back and forth.

    /// Takes the latest block back. Inside an open block that has steps already, these are a block of their own from
    /// here on, and the latest. False when there is none, or while one is taken back or made again.
    bool undo();
    /// Makes the block that was taken back last again; false likewise.
    bool redo();
    /// The name of the block that undo or redo would take; null for none. Good until something changes.
    const char *getUndoName() const;
    const char *getRedoName() const;
    /// Drops all blocks, and the steps of the open one.
    void clearUndos();

    // Memory, in bytes.

    std::int64_t getMemoryUsage() const { return usage; }
    std::int64_t getMemoryLimit() const { return limit; }
    /// Drops what lies above the new limit at once. 64 MiB when never set.
    void setMemoryLimit(std::int64_t bytes);

private:
    struct Block {
        std::string name;
        std::vector<std::unique_ptr<KIT_UndoStep>> steps;
        std::int64_t size = 0;
    };
    /// A call of beginBlock whose end is still to come.
    struct OpenBlock {
        int id;
        std::string name;
        bool records;
        void *owner;   // borrowed, never followed
    };
    using Blocks = std::deque<Block>;

    void closeCurrent(const char *name);
    bool replay(Blocks &from, Blocks &to, void (*run)(const Block &));
    void drop(Blocks &blocks);
    void dropCurrent();
    void trim();

    static bool theCreationEnabled;

    Blocks done;     // the latest last
    Blocks undone;   // the one to be made again next last
    Block current;   // what the outermost open block has recorded
    std::vector<OpenBlock> open;
    std::int64_t usage = 0;   // of all blocks above and of one that is being replayed
    std::int64_t limit = 64 << 20;
    int latestId = 0;
    bool replaying = false;
    bool clearedMeanwhile = false;   // while replaying
    bool tooLarge = false;           // the open block alone did not fit
};

/// The one of the process.
CMD_API KIT_UndoManager *KITgetUndoManager();

/// The blocks of that one, for callers that need no more of it: as beginBlock and endBlock.
CMD_API int KITbeginUndoBlock(const char *name, int records, void *owner);
CMD_API void KITendUndoBlock(int id, void *owner);
