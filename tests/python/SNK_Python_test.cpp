// SPDX-License-Identifier: Apache-2.0
// The interpreter as the library uses it: values, exceptions, threads, interrupts, and what the process keeps.
#include <orvlang/engine/CMD_Args.h>
#include <orvlang/engine/CMD_Manager.h>
#include <orvlang/platform/osl/KIT_Interrupt.h>
#include <orvlang/platform/snk/SNK_InterpreterAutoLock.h>
#include <orvlang/platform/snk/SNK_Python.h>

#include <atomic>
#include <clocale>
#include <csignal>
#include <cstdlib>
#include <sstream>
#include <string>
#include <thread>

#include <gtest/gtest.h>
#include <unistd.h>

namespace {

/// The result as one text, for tables.
std::string show(const SNK_Result &result) {
    switch (result.kind) {
    case SNK_Result::Float:
        return "float " + std::to_string(result.doubleValue);
    case SNK_Result::String:
        return "string " + std::string(result.stringValue.view());
    case SNK_Result::StringArray: {
        std::string text = "array";
        for (const char *entry : result.stringArray)
            text += std::string(" <") + entry + ">";
        return text;
    }
    case SNK_Result::Exception:
        return std::string(result.errorText.view());
    default:
        return "kind " + std::to_string(result.kind);
    }
}

std::string evaluate(const char *code, SNK_Result::Type wanted = SNK_Result::String) {
    return show(SNKrunPythonExpression(code, wanted, nullptr));
}

std::string run(const std::string &code) {
    return show(SNKrunPythonStatements(code.c_str(), nullptr));
}

constexpr const char *done = "kind 0";

TEST(PythonDeathTest, EndsInOrderWithAHostThatReturnsFromMain) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            run("import atexit, sys; atexit.register(lambda: print('at exit', file=sys.stderr))");
            std::exit(0);
        },
        testing::ExitedWithCode(0), "at exit");
}

TEST(Python, LeavesTheProcessAsItIs) {
    setenv("LC_ALL", "C.UTF-8", 1);
    struct sigaction before[NSIG] = {}, after = {};
    for (int number = 1; number < NSIG; ++number)
        sigaction(number, nullptr, &before[number]);
    EXPECT_EQ(run("import signal, subprocess, json, ctypes, math, sqlite3, ssl"), done);
    EXPECT_STREQ(setlocale(LC_ALL, nullptr), "C");
    for (int number = 1; number < NSIG; ++number) {
        sigaction(number, nullptr, &after);
        EXPECT_EQ(before[number].sa_handler, after.sa_handler) << number;
    }
    EXPECT_EQ(evaluate("__import__('sys').prefix"), "string /usr");
    EXPECT_EQ(evaluate("'' in __import__('sys').path"), "string False");
}

TEST(Python, Values) {
    static const struct {
        const char *code;
        SNK_Result::Type wanted;
        const char *result;
    } theCases[] = {
        { "__import__('fractions').Fraction(1, 2)", SNK_Result::Float, "float 0.500000" },
        { "1j", SNK_Result::Float, "kind 8" },
        { "10**400", SNK_Result::Float, "OverflowError: int too large to convert to float" },
        { " \t1 +\\\n 1\n", SNK_Result::String, "string 2" },
        { "b'\\xff'", SNK_Result::String, "string b'\\xff'" },
        { "'\xc3\xa9' * 2", SNK_Result::String, "string \xc3\xa9\xc3\xa9" },
        { "['a', '', '\xc3\xa9']", SNK_Result::StringArray, "array <a> <> <\xc3\xa9>" },
        { "__import__('collections').deque('ab')", SNK_Result::StringArray, "array <a> <b>" },
        { "'ab'", SNK_Result::StringArray, "kind 8" },
        { "['a', 1]", SNK_Result::StringArray, "kind 8" },
        { "{'a': 'b'}", SNK_Result::StringArray, "kind 8" },
        { "(c for c in 'ab')", SNK_Result::StringArray, "kind 8" },
        { "['a', '\\0']", SNK_Result::StringArray, "ValueError: embedded null character" },
        { "1", SNK_Result::WrongType, "kind 8" },
        { "exit()", SNK_Result::String, "kind 9" },
        { "'\xff'", SNK_Result::String,
          "UnicodeDecodeError: 'utf-8' codec can't decode byte 0xff in position 1: invalid start byte" },
        { nullptr, SNK_Result::String, "SyntaxError: invalid syntax (<string>, line 0)" },
        { "__import__('json').loads('')", SNK_Result::String,
          "json.decoder.JSONDecodeError: Expecting value: line 1 column 1 (char 0)" },
    };
    for (const auto &c : theCases)
        EXPECT_EQ(evaluate(c.code, c.wanted), c.result) << (c.code ? c.code : "(null)");
}

TEST(Python, ExceptionsThatResistBeingShown) {
    EXPECT_EQ(run("class Mute(Exception):\n def __str__(self): raise self\nraise Mute()"),
              "Mute: <exception str() failed>");
    EXPECT_EQ(run("raise ValueError('a\\0b\\udcff')"), "ValueError: a\\x00b\\udcff");
    EXPECT_EQ(run("raise KeyboardInterrupt"), "KeyboardInterrupt");
    EXPECT_EQ(run("def deeper(): deeper()\ndeeper()"), "RecursionError: maximum recursion depth exceeded");
    EXPECT_EQ(run("import sys; kept = sys.stdout; sys.stdout = open('/dev/full', 'w'); print(1)"),
              "OSError: [Errno 28] No space left on device");
    EXPECT_EQ(run("sys.stdout = None"), done);
    EXPECT_EQ(run("sys.stdout = kept"), done);
    EXPECT_EQ(show(SNKrunPythonStatementsFromFile(0, nullptr, nullptr)), "TypeError: no file to run");
}

/// Two ends of a pipe, for what has to happen in an order.
struct Pipe {
    Pipe() { EXPECT_EQ(pipe(ends), 0); }
    ~Pipe() {
        close(ends[0]);
        close(ends[1]);
    }
    void wait() const {
        char byte;
        EXPECT_EQ(read(ends[0], &byte, 1), 1);
    }
    std::string tell(const std::string &bytes = "b'x'") const {
        return "__import__('os').write(" + std::to_string(ends[1]) + ", " + bytes + ")";
    }

    int ends[2];
};

TEST(Python, ThreadsGoOnBetweenCallsAndInTheLanguage) {
    CMD_Manager manager("threads");
    const Pipe pipe;
    static const Pipe *thePipe;
    thePipe = &pipe;
    manager.installCommand(
        "waitforpipe", "", [](CMD_Args &) { thePipe->wait(); }, true);
    ASSERT_EQ(run("import threading, orvlang\n"
                  "go = threading.Event()\n"
                  "def work():\n"
                  "  " +
                  pipe.tell() + "; go.wait(); " + pipe.tell() +
                  "\n"
                  "  try: orvlang.execute('echo a')\n"
                  "  except orvlang.Error as error: global refusal; refusal = str(error)\n"
                  "thread = threading.Thread(target=work)\n"
                  "thread.start()"),
              done);
    pipe.wait();   // without the lock that the call has given back the thread would never get here
    EXPECT_EQ(run("go.set(); print(orvlang.execute('waitforpipe').status); thread.join()"), done);
    EXPECT_EQ(evaluate("refusal"),
              "string the command language can't be used from a thread that it did not call");
}

TEST(Python, AnyThreadMayCallButOnlyTheOneOfTheLanguageReachesIt) {
    CMD_Manager manager("threads");
    static std::string here, elsewhere;
    const auto callback = [](CMD_Args &) {
        const char *const code = "__import__('orvlang').execute('echo here').output";
        std::thread([&] { elsewhere = evaluate(code) + evaluate(" 1"); }).join();
        const SNK_InterpreterAutoLock lock, nested;
        here = evaluate(code);
    };
    manager.installCommand("onboththreads", "", callback, true);
    manager.execute("onboththreads", 0, nullptr, nullptr, 1, true);
    EXPECT_EQ(elsewhere, "orvlang.Error: the command language runs on another threadstring 1");
    EXPECT_EQ(here, "string here\n");
}

TEST(Python, InterruptsEndWhatRunsAndNothingLater) {
    CMD_Manager manager("interrupts");
    const Pipe pipe;
    struct sigaction action = {}, before;
    action.sa_handler = [](int) { KITgetInterrupt()->interrupt(); };
    sigaction(SIGUSR1, &action, &before);
    const pthread_t here = pthread_self();
    const struct {
        std::string code;
        bool bySignal;
    } theCases[] = {
        { pipe.tell() + "\nwhile True: pass", true },
        { pipe.tell() + "\nimport time; time.sleep(1000)", true },
        { pipe.tell("bytes(1000000)") + "\nwhile True: pass", false },   // blocked once the first byte is there
    };
    for (const auto &[code, bySignal] : theCases) {
        std::atomic<bool> isOver = false;
        std::thread person([&] {
            pipe.wait();
            // More than once: the first may come in the moment before the system call that it should end.
            for (; !isOver; std::this_thread::yield())
                bySignal ? void(pthread_kill(here, SIGUSR1)) : KITgetInterrupt()->interrupt();
        });
        EXPECT_EQ(run(code), "KeyboardInterrupt") << code;
        isOver = true;
        person.join();
        KITgetInterrupt()->interrupt();
        EXPECT_EQ(evaluate("sum(range(100000))"), "string 4999950000") << code;
    }
    sigaction(SIGUSR1, &before, nullptr);
    // The language is marked as long as its statement runs: Python inside of it may catch, but not go on with it.
    manager.installCommand(
        "interrupted", "", [](CMD_Args &) { KITgetInterrupt()->interrupt(); }, true);
    std::ostringstream out;
    manager.installCommand(
        "runs", "",
        [](CMD_Args &args) {
            args.out() << run("import orvlang\n"
                              "try: orvlang.execute('interrupted')\n"
                              "except KeyboardInterrupt: orvlang.execute('echo more')");
        },
        true);
    manager.execute("runs", 0, &out, nullptr, 1, true);
    EXPECT_EQ(out.str(), "KeyboardInterrupt");
}

TEST(Python, TheProgramKeepsItsHandlerOfInterrupts) {
    struct sigaction action = {}, before, after;
    sigaction(SIGINT, nullptr, &before);
    EXPECT_EQ(run("import asyncio, signal\n"
                  "asyncio.run(asyncio.sleep(0))\n"
                  "signal.signal(signal.SIGINT, lambda *arguments: got.append(arguments[0]))"),
              done);
    sigaction(SIGINT, nullptr, &after);
    EXPECT_NE(after.sa_handler, before.sa_handler);   // there was none: Python's own
    EXPECT_EQ(run("got = []; signal.raise_signal(signal.SIGINT); signal.signal(signal.SIGINT, signal.SIG_DFL)"),
              done);
    sigaction(SIGINT, nullptr, &after);
    EXPECT_EQ(after.sa_handler, SIG_DFL);

    action.sa_handler = [](int) { KITgetInterrupt()->interrupt(); };
    sigaction(SIGINT, &action, nullptr);
    EXPECT_EQ(run("asyncio.run(asyncio.sleep(0))\n"
                  "old = signal.signal(signal.SIGINT, lambda *arguments: got.append(arguments[0]))\n"
                  "signal.raise_signal(signal.SIGINT)\n"
                  "signal.signal(signal.SIGINT, signal.default_int_handler)"),
              done);
    sigaction(SIGINT, nullptr, &after);
    EXPECT_EQ(after.sa_handler, action.sa_handler);
    EXPECT_EQ(evaluate("got"), "string [2, 2]");
    EXPECT_EQ(run("signal.raise_signal(signal.SIGINT)"), "KeyboardInterrupt");
    sigaction(SIGINT, &before, nullptr);
}

TEST(Python, EndsAScriptInOrderWheneverItIsInterrupted) {
    struct sigaction action = {}, before;
    action.sa_handler = [](int) { KITgetInterrupt()->interrupt(); };
    sigaction(SIGUSR1, &action, &before);
    ASSERT_EQ(run("import sys; known = sys.argv, list(sys.path)"), done);
    const pthread_t here = pthread_self();
    std::atomic<bool> isOver = false;
    std::thread person([&] {
        for (; !isOver; std::this_thread::yield())
            pthread_kill(here, SIGUSR1);
    });
    char name[] = "/dev/null";
    char *words[] = { name, nullptr };
    for (int i = 0; i < 300; ++i)
        SNKrunPythonStatementsFromFile(1, words, nullptr);
    isOver = true;
    person.join();
    EXPECT_EQ(evaluate("known == (sys.argv, sys.path)"), "string True");
    sigaction(SIGUSR1, &before, nullptr);
}

TEST(Python, NestsWithTheLanguageUntilSomethingSaysStop) {
    CMD_Manager manager("nesting");
    ASSERT_EQ(run("import orvlang\n"
                  "def nest(n):\n"
                  "  global depth; depth = n\n"
                  "  for again in 1, 2:\n"   // from each level: that would take for ever
                  "    try: orvlang.execute(f'python -c \"nest({n + 1})\"')\n"
                  "    except RecursionError as error: global refusal; refusal = str(error)\n"),
              done);
    std::ostringstream out, err;
    manager.pushOutputStreams(out, err);
    manager.sendInput("python -c 'nest(1)'; echo behind", true);
    EXPECT_EQ(out.str() + err.str(), "behind\n");
    EXPECT_GT(SNKrunPythonExpression("depth", SNK_Result::Float, nullptr).doubleValue, 10);
    EXPECT_EQ(evaluate("refusal"), "string the command language nests too deep");
    EXPECT_EQ(run("import sys; sys.setrecursionlimit(10**6)"), done);   // now the stack sets the limit
    manager.sendInput("python -c 'nest(1)'", true);
    EXPECT_GT(SNKrunPythonExpression("depth", SNK_Result::Float, nullptr).doubleValue, 50);
    EXPECT_EQ(run("sys.setrecursionlimit(1000)"), done);
    manager.setAlias("x", "echo `pythonexprs(\"orvlang.execute('x; x')\")` `run(\"x\")`");
    manager.sendInput("x", true);
    EXPECT_NE(err.str().find("Expression error: Nesting too deep"), std::string::npos);
    manager.popOutputStreams();
}

TEST(Python, DoesWithoutOnASmallStack) {
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, size_t(512) << 10);
    const auto work = [](void *text) -> void * {
        CMD_Manager manager("small");
        std::ostringstream out;
        manager.execute("python -c 1; echo `pythonexprs(\"1\")`\necho behind", 0, &out, &out, 1, true);
        *static_cast<std::string *>(text) = out.str();
        return nullptr;
    };
    std::string text;
    pthread_t thread;
    ASSERT_EQ(pthread_create(&thread, &attributes, work, &text), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
    const std::string reason =
        "Python is not available: less than a mebibyte of stack is left on this thread\n";
    EXPECT_EQ(text, reason + reason + "\n" + reason + "behind\n");
}

TEST(Python, ReachesTheVariablesOfTheLanguage) {
    CMD_Manager manager("variables");
    manager.setVariable("both", "global", 0, 0);
    ASSERT_EQ(run("from orvlang import *\nimport orvlang\nv = orvlang.variables\n"
                  "orvlang.set('both', 'local', local=True)\nv['number'] = 1.5"),
              done);
    static const struct {
        const char *code, *value;
    } theCases[] = {
        { "orvlang.get('none'), orvlang.get('none', 3)", "(None, 3)" },
        { "list(v).count('both'), len(v) == len(list(v)), 'none' in v, 5 in v", "(1, True, False, False)" },
        { "v.pop('both'), v['both']", "('local', 'global')" },
        { "v.pop('number'), v.get('number')", "('1.5', None)" },
    };
    for (const auto &c : theCases)
        EXPECT_EQ(evaluate(c.code), std::string("string ") + c.value) << c.code;
    EXPECT_EQ(run("v['none']"), "KeyError: 'none'");
    EXPECT_EQ(run("orvlang.unset('none')"), done);
    // Else v.clear() would not end.
    EXPECT_EQ(run("del v['JOB']"), "orvlang.Error: no variable that can be removed: JOB");
    EXPECT_EQ(run("orvlang.set('a', 'x\\0')"), "ValueError: embedded null character");
    manager.setVariable("bytes", "\xff", 0, 0);
    EXPECT_EQ(run("orvlang.execute('echo $bytes')"),
              "UnicodeDecodeError: 'utf-8' codec can't decode byte 0xff in position 0: invalid start byte");
}

TEST(Python, WithoutAManagerThereIsNoLanguage) {
    EXPECT_EQ(run("import orvlang; orvlang.execute('echo')"), "orvlang.Error: there is no command manager");
}

}   // namespace
