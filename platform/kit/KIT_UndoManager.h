// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <vector>

#include <orvlang/platform/kit/KIT_Export.h>

/// One change of a host's data that can be undone and redone. Its owner calls undo and redo in turn, undo first.
/// Both, and the destructor, may use the manager and must not throw. What they record while they run is dropped.
class CMD_API KIT_UndoStep {
public:
    virtual ~KIT_UndoStep();
    virtual void undo() = 0;
    virtual void redo() = 0;
    /// Bytes that are kept for it, the object included. Asked once, when the step is added.
    virtual std::int64_t getMemoryUsage() const = 0;
};

/// The changes that can be undone, in blocks: a block is one change to its user, and has any number of steps. The commands
/// of a host add the steps; the caller that starts something larger, such as a request from outside, opens a block.
///
/// Undone blocks can be made again until the next step is added. When the steps need more memory than the limit, the
/// oldest blocks are dropped. Not for several threads at a time.
class CMD_API KIT_UndoManager {
public:
    // Whether changes are recorded. They are from the start.

    static void enableUndoCreation() { theCreationEnabled = true; }
    static void disableUndoCreation() { theCreationEnabled = false; }
    static bool isUndoCreationEnabled() { return theCreationEnabled; }
    /// Restores the state of the start. To be called when the last user is gone.
    void clearUndoFlags() { theCreationEnabled = true; }

    // Recording.

    /// Returns whether a step that is added now would be kept. If not, a command need not make one.
    bool isRecording() const;
    /// Adds a step to the open block, or as a block of its own with that name. When nothing is recorded now, the step
    /// is destroyed.
    void addStep(const char *name, std::unique_ptr<KIT_UndoStep> step);
    /// Opens a block and returns its id, which is above 0. Inside another one it is a part of that one, and only its end
    /// matters. Unless `records`, what is done inside is not recorded. The owner is an address that identifies the user of
    /// the block. Null counts as an empty name.
    int beginBlock(const char *name, bool records, void *owner);
    /// Ends that block and those still open inside it. The outermost one becomes the latest block, unless no step was
    /// added. Returns false, and does nothing, when no open block has the id and the owner.
    bool endBlock(int id, void *owner);

    // Undoing and redoing.

    /// Undoes the latest block. Inside an open block that has steps already, these become a block of their own, the
    /// latest one. Returns false when there is none, or while a block is being undone or redone.
    bool undo();
    /// Redoes the block that was undone last. Returns false as undo does.
    bool redo();
    /// Returns the name of the block that undo or redo would use; null for none. Valid until something changes.
    const char *getUndoName() const;
    const char *getRedoName() const;
    /// Drops all blocks, and the steps of the open one.
    void clearUndos();

    // Memory, in bytes.

    std::int64_t getMemoryUsage() const { return usage; }
    std::int64_t getMemoryLimit() const { return limit; }
    /// Drops what exceeds the new limit at once. 64 MiB when never set.
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
    Blocks undone;   // the next one to redo last
    Block current;   // what the outermost open block has recorded
    std::vector<OpenBlock> open;
    std::int64_t usage = 0;   // of all blocks above and of one that is being replayed
    std::int64_t limit = 64 << 20;
    int latestId = 0;
    bool replaying = false;
    bool clearedMeanwhile = false;   // while replaying
    bool tooLarge = false;           // the open block alone did not fit
};

/// Returns the one of the process.
CMD_API KIT_UndoManager *KITgetUndoManager();

/// The same as beginBlock and endBlock of that one.
CMD_API int KITbeginUndoBlock(const char *name, int records, void *owner);
CMD_API void KITendUndoBlock(int id, void *owner);
