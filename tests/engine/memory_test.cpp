// SPDX-License-Identifier: Apache-2.0
// Statements that find no memory: a program of its own, in which no large piece can be had.
#include "EngineFixture.h"

#include <cstdlib>
#include <new>

static size_t theLargestPiece = 1 << 20;

// Not inlined, or the compiler takes them for mismatched.
[[gnu::noinline]] void *operator new(size_t size) {
    void *const memory = size > theLargestPiece ? nullptr : std::malloc(size);
    return memory ? memory : throw std::bad_alloc();
}
[[gnu::noinline]] void *operator new[](size_t size) {
    return operator new(size);
}
[[gnu::noinline]] void operator delete(void *memory) noexcept {
    std::free(memory);
}
[[gnu::noinline]] void operator delete(void *memory, size_t) noexcept {
    std::free(memory);
}
[[gnu::noinline]] void operator delete[](void *memory) noexcept {
    std::free(memory);
}
[[gnu::noinline]] void operator delete[](void *memory, size_t) noexcept {
    std::free(memory);
}

namespace {

class Memory : public EngineFixture {};

TEST_F(Memory, AStatementThatFindsNoneLeavesTheManagerWhole) {
    type("set a = aaaaaaaa");
    const std::string grown = type("for i = 1 to 24\nset a = $a$a\nend\necho `length(a)` $status");
    EXPECT_TRUE(grown.starts_with("{Out of memory\nOut of memory\n")) << grown.substr(0, 100);
    EXPECT_TRUE(grown.ends_with("}524288 1\n")) << grown.substr(grown.size() - 100);
    EXPECT_EQ(type("while \"$a$a$a\" == b\necho never\nend\necho $status"), "{Out of memory\n}1\n");
    EXPECT_EQ(script("echo 1\necho $a$a > f; echo 2\n"), "1\n{s.cmd (2): Out of memory\n}2\n");
    EXPECT_EQ(manager.getLoopNestLevel() + manager.getSourceLevel(), 0);
}

TEST_F(Memory, ALineThatFindsNoneEndsItsRun) {
    const std::string line(50000, 'a'), text = "echo\n" + line;
    // Joined, the lines grow to twice their length.
    folder.write("s.cmd", "for i = 1 to 2\n" + line.substr(24000) + "\\\n" + line.substr(40000) + "\nend\n");
    theLargestPiece = line.size();
    for (const char *before : { "for i = 1 to 2", "echo \\" }) {
        manager.sendInput(before, false);
        manager.sendInput(line.c_str(), false);
        EXPECT_EQ(type("echo whole $status"), "{Out of memory\n}whole 1\n") << before;
    }
    manager.execute(text.c_str(), 0, nullptr, nullptr, 1, true);
    EXPECT_EQ(type("echo whole $status"), "{Out of memory\n}whole 1\n");
    EXPECT_EQ(type("source s.cmd; echo never"), "{s.cmd (3): Out of memory\n}");
    EXPECT_EQ(manager.getLoopNestLevel() + manager.getSourceLevel(), 0);
    theLargestPiece = 1 << 20;
}

}   // namespace
