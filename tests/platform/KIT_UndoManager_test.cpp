// SPDX-License-Identifier: Apache-2.0
#include <functional>
#include <limits>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include <orvlang/platform/kit/KIT_UndoManager.h>

namespace {

/// A manager, and steps that tell in a text what happens to them: `-a` taken back, `+a` made again, `~a` gone.
class UndoTest : public testing::Test {
protected:
    class Step : public KIT_UndoStep {
    public:
        Step(UndoTest &owner, std::string stepName, std::int64_t bytes)
            : test(owner), name(std::move(stepName)), size(bytes) {}
        ~Step() override { tell('~'); }
        void undo() override { tell('-'); }
        void redo() override { tell('+'); }
        std::int64_t getMemoryUsage() const override { return size; }

    private:
        void tell(char what) {
            test.told += what + name;
            if (test.onCall)
                test.onCall();
        }

        UndoTest &test;
        const std::string name;
        const std::int64_t size;
    };

    ~UndoTest() override {
        onCall = nullptr;
        KIT_UndoManager::enableUndoCreation();
    }

    void add(const std::string &name, std::int64_t size = 100) {
        manager.addStep(name.c_str(), std::make_unique<Step>(*this, name, size));
    }
    std::string names() const {
        const char *const undo = manager.getUndoName();
        const char *const redo = manager.getRedoName();
        return std::string(undo ? undo : "(none)") + " " + (redo ? redo : "(none)");
    }
    std::string takeTold() { return std::exchange(told, {}); }

    std::string told;
    std::function<void()> onCall;
    KIT_UndoManager manager;
};

}   // namespace

TEST_F(UndoTest, GoesBackAndForth) {
    EXPECT_FALSE(manager.undo());
    EXPECT_FALSE(manager.redo());
    add("a");
    add("b");
    EXPECT_EQ(names(), "b (none)");
    EXPECT_TRUE(manager.undo());
    EXPECT_EQ(names(), "a b");
    EXPECT_TRUE(manager.undo());
    EXPECT_FALSE(manager.undo());
    EXPECT_TRUE(manager.redo());
    EXPECT_EQ(takeTold(), "-b-a+a");
    add("c");
    EXPECT_EQ(takeTold(), "~b") << "what was taken back cannot be made again behind a new step";
    EXPECT_EQ(names(), "c (none)");
    manager.clearUndos();
    EXPECT_EQ(takeTold(), "~a~c");
}

TEST_F(UndoTest, ABlockIsOneChange) {
    int owner = 0;
    const int outer = manager.beginBlock("outer", true, &owner);
    add("a");
    const int inner = manager.beginBlock("inner", true, nullptr);
    add("b");
    EXPECT_FALSE(manager.endBlock(inner, &owner)) << "not its owner's";
    EXPECT_TRUE(manager.endBlock(inner, nullptr));
    add("c");
    manager.beginBlock(nullptr, true, nullptr);
    EXPECT_TRUE(manager.endBlock(outer, &owner)) << "ends what is still open inside";
    EXPECT_EQ(names(), "outer (none)");
    EXPECT_TRUE(manager.undo());
    EXPECT_TRUE(manager.redo());
    EXPECT_EQ(takeTold(), "-c-b-a+a+b+c");
}

TEST_F(UndoTest, RecordsOnlyWhatItShall) {
    KIT_UndoManager::disableUndoCreation();
    add("a");
    KIT_UndoManager::enableUndoCreation();
    const int quiet = manager.beginBlock("quiet", false, nullptr);
    const int loud = manager.beginBlock("loud", true, nullptr);
    EXPECT_FALSE(manager.isRecording());
    add("b");
    manager.endBlock(loud, nullptr);
    manager.endBlock(quiet, nullptr);
    EXPECT_EQ(takeTold(), "~a~b");
    EXPECT_EQ(names(), "(none) (none)");
}

TEST_F(UndoTest, AnUndoInsideABlockTakesWhatTheBlockHasDone) {
    add("before");
    const int block = manager.beginBlock("request", true, nullptr);
    add("a");
    EXPECT_TRUE(manager.undo());
    EXPECT_EQ(names(), "before request");
    EXPECT_TRUE(manager.redo());
    add("b");
    manager.endBlock(block, nullptr);
    EXPECT_TRUE(manager.undo());
    EXPECT_EQ(takeTold(), "-a+a-b");
    EXPECT_EQ(names(), "request request");
}

TEST_F(UndoTest, DropsTheOldestAboveTheLimit) {
    manager.setMemoryLimit(250);
    add("a");
    add("b");
    add("c");
    EXPECT_EQ(takeTold(), "~a");
    EXPECT_EQ(manager.getMemoryUsage(), 200);
    manager.undo();
    manager.undo();
    manager.setMemoryLimit(150);
    EXPECT_EQ(takeTold(), "-c-b~c") << "of what was taken back, what would be made again last";
    manager.redo();
    add("large", 151);
    EXPECT_EQ(takeTold(), "+b~b~large");
    EXPECT_EQ(names(), "(none) (none)");
    EXPECT_EQ(manager.getMemoryUsage(), 0);
    add("claims everything", std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(manager.getMemoryUsage(), 0);
}

TEST_F(UndoTest, ABlockThatDoesNotFitGoesAsAWhole) {
    manager.setMemoryLimit(250);
    add("before");
    const int block = manager.beginBlock("large", true, nullptr);
    for (const char *name : { "a", "b", "c", "d" })
        add(name);
    EXPECT_EQ(takeTold(), "~before~a~b~c~d");
    EXPECT_FALSE(manager.undo());
    manager.endBlock(block, nullptr);
    EXPECT_EQ(names(), "(none) (none)");
    add("after");
    EXPECT_EQ(names(), "after (none)");
}

TEST_F(UndoTest, StepsMayUseTheManager) {
    add("a");
    add("b");
    onCall = [this] {
        onCall = nullptr;
        EXPECT_FALSE(manager.undo());
        EXPECT_FALSE(manager.redo());
        EXPECT_FALSE(manager.isRecording());
        const int block = manager.beginBlock("inside", true, nullptr);
        add("c");
        manager.endBlock(block, nullptr);
    };
    EXPECT_TRUE(manager.undo());
    EXPECT_EQ(takeTold(), "-b~c");
    EXPECT_EQ(names(), "a b");

    onCall = [this] {
        onCall = nullptr;
        manager.clearUndos();
        EXPECT_EQ(manager.getUndoName(), nullptr);
    };
    EXPECT_TRUE(manager.redo());
    EXPECT_EQ(takeTold(), "+b~a~b") << "the one that runs goes last";
    EXPECT_EQ(names(), "(none) (none)");
    EXPECT_EQ(manager.getMemoryUsage(), 0);
}
