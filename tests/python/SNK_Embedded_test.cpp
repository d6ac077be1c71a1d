// SPDX-License-Identifier: Apache-2.0
// A program that has started Python itself, and ends it before its own end.
#include <Python.h>

#include <gtest/gtest.h>

#include <orvlang/engine/CMD_Manager.h>
#include <orvlang/platform/snk/SNK_InterpreterAutoLock.h>
#include <orvlang/platform/snk/SNK_Python.h>

namespace {

TEST(EmbeddedPython, IsThatOfTheProgramAndGoesWithIt) {
    Py_InitializeEx(0);
    ASSERT_EQ(PyRun_SimpleString("import atexit, sys; x = 41; atexit.register(lambda: print('at exit', x))"),
              0);
    {
        CMD_Manager manager("embedded");
        const SNK_Result result = SNKrunPythonExpression(
            "__import__('orvlang').execute('python -c \"x += 1\"').status, x, sys.stdin.fileno()",
            SNK_Result::String, nullptr);
        EXPECT_EQ(result.stringValue, "(0, 42, 0)") << result.detailText.c_str();
    }
    testing::internal::CaptureStdout();
    EXPECT_EQ(Py_FinalizeEx(), 0);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "at exit 42\n");
    const SNK_InterpreterAutoLock lock;
    EXPECT_EQ(SNKrunPythonStatements("1", nullptr).errorText,
              "Python is not available: the program has ended it");
    Py_InitializeEx(0);   // another one, with none of the objects that the library knows
    EXPECT_EQ(SNKrunPythonStatements("1", nullptr).kind, SNK_Result::Exception);
    Py_FinalizeEx();
}

}   // namespace
