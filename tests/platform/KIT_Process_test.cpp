// SPDX-License-Identifier: Apache-2.0
#include <iostream>

#include <gtest/gtest.h>
#include <unistd.h>

#include <orvlang/platform/kit/KIT_ErrorManager.h>
#include <orvlang/platform/kit/KIT_Exit.h>
#include <orvlang/platform/kit/KIT_OFStream.h>
#include <orvlang/platform/kit/KIT_OStrStream.h>
#include <orvlang/platform/kit/KIT_String.h>
#include <orvlang/platform/osl/KIT_Interrupt.h>

namespace {

char theLetters[] = "abc";

void writeLetter(void *letter) {
    std::cerr << *static_cast<char *>(letter);
}

void endAgain(void *) {
    KIT_Exit::addExitCallback(writeLetter, theLetters + 2);
    KIT_Exit::exitWithSpecificCode(9);
}

}   // namespace

TEST(Exit, RunsEachCallbackOnceTheLastFirst) {
    EXPECT_EXIT(
        {
            KIT_Exit::addExitCallback(writeLetter, theLetters);
            KIT_Exit::addExitCallback(writeLetter, theLetters + 1);
            KIT_Exit::addExitCallback(writeLetter, theLetters);
            KIT_Exit::exit();
        },
        testing::ExitedWithCode(0), "^ba$");
    EXPECT_EXIT(
        {
            KIT_Exit::addExitCallback(writeLetter, theLetters);
            KIT_Exit::addExitCallback(endAgain, nullptr);
            KIT_Exit::exit(3);
        },
        testing::ExitedWithCode(9), "^ca$");
}

TEST(Interrupt, MarksTheRunningWorkOnly) {
    KIT_Interrupt &interrupt = *KITgetInterrupt();
    interrupt.interrupt();
    EXPECT_TRUE(interrupt.opStart("outer", 0, 0, nullptr)) << "nothing ran";
    EXPECT_TRUE(interrupt.opStart("inner", 0, 0, nullptr));
    EXPECT_FALSE(interrupt.opInterrupt(-1));
    interrupt.interrupt();
    EXPECT_TRUE(interrupt.opInterrupt(-1));
    interrupt.opEnd(-1);
    EXPECT_TRUE(interrupt.opInterrupt(-1)) << "until the outermost ends";
    EXPECT_FALSE(interrupt.opStart("second inner", 0, 0, nullptr));
    interrupt.opEnd(-1);
    interrupt.opEnd(-1);
    EXPECT_FALSE(interrupt.isInterrupted());
    EXPECT_TRUE(interrupt.opStart("next", 0, 0, nullptr));
    interrupt.opEnd(-1);
}

TEST(ErrorManager, CollectsPendingErrors) {
    KIT_ErrorManager &errors = *KITgetErrorManager();
    KIT_String text("left over");
    KIT_OStrStream good;
    KIT_OFStream failed("", false);
    EXPECT_TRUE(KITcheckOutStream(good, "Save A", 0));
    errors.addError(2, "careful");
    EXPECT_FALSE(KITcheckOutStream(failed, "Save A", 0));
    EXPECT_FALSE(KITcheckOutStream(failed, "Save A", 0));
    EXPECT_EQ(KITgetErrorSeverity(), 4);
    errors.getErrorMessages(text, 0, 1);
    EXPECT_EQ(text, "careful\nSave A: write failed");
    errors.getErrorMessages(text, 0, 0);
    EXPECT_EQ(text, "Save A: write failed\ncareful");
    errors.clearAndDestroyErrors();
    EXPECT_EQ(KITgetErrorSeverity(), 0);
    KITcheckOutStream(failed, "Save A", 0);
    EXPECT_EQ(KITgetErrorSeverity(), 4) << "it is pending anew";
    errors.clearAndDestroyErrors();
}
