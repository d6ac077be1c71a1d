// SPDX-License-Identifier: Apache-2.0
//
// The way into Python: the command `python` runs statements or a file, and a command that is written in Python gets its
// words as a Python expression, which is evaluated. What either did wrong is shown on the error stream.
#include <orvlang/engine/CMD_Manager.h>

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include <orvlang/bridge/CMD_Python.h>
#include <orvlang/engine/CMD_Args.h>
#include <orvlang/platform/snk/SNK_InterpreterAutoLock.h>
#include <orvlang/platform/snk/SNK_Python.h>

namespace {

SNK_Result runFile(const CMD_Args &args) {
    std::vector<char *> words;
    for (int i = 1; i < args.argc(); ++i)
        words.push_back(const_cast<char *>(args.argv(i)));   // they are only read
    words.push_back(nullptr);
    return SNKrunPythonStatementsFromFile(args.argc() - 1, words.data(), nullptr);
}

/// Appends the text as a Python literal.
void appendLiteral(std::string &code, std::string_view text) {
    code += '"';
    for (const char c : text) {
        if (c == '"')
            code += '\\';
        code += c;
    }
    code += '"';
}

/// Appends the separator before each item but the first one after an opening bracket.
void appendSeparator(std::string &code) {
    if (code.back() != '[' && code.back() != '{')
        code += ',';
}

void appendWords(std::string &code, const CMD_Args &args) {
    code += '[';
    for (int i = 0; i < args.argc(); ++i) {
        appendSeparator(code);
        appendLiteral(code, args.argv(i));
    }
    code += ']';
}

void appendOptions(std::string &code, const CMD_Args &args) {
    code += '{';
    for (int letter = ' '; letter < 128; ++letter) {
        const char option = static_cast<char>(letter);
        if (!args.found(option))
            continue;
        appendSeparator(code);
        code.append({ '"', option, '"', ':', '[' });
        for (int slot = 0; slot < 4 && args.argp(option, slot); ++slot) {
            appendSeparator(code);
            appendLiteral(code, args.argp(option, slot));
        }
        code += ']';
    }
    code += '}';
}

/// __import__('orvlang_commands').lamp.run(["lamp","hall"], {"c":["warm red"]})
std::string callOf(const CMD_Args &args) {
    std::string code = "__import__('orvlang_commands').";
    code.append(args.commandName().view()).append(".run(");
    appendWords(code, args);
    code += ", ";
    appendOptions(code, args);
    code += ')';
    return code;
}

void showTexts(CMD_Args &args, const KIT_StringArray &texts) {
    if (texts.entries() != 2) {
        args.err(1) << "Internal error in command implementation:\n"
                    << "The command returned the wrong number of strings.\n";
        return;
    }
    if (*texts[0])
        args.out() << texts[0];
    if (*texts[1])
        args.err(1) << texts[1];
}

}   // namespace

void CMD_Manager::cmd_python(CMD_Args &args) {
    const bool isCode = args.found('c');
    if (isCode ? args.argc() != 2 : args.argc() < 2) {
        args.showUsage();
        return;
    }
    const SNK_Result result = isCode ? SNKrunPythonStatements(args.argv(1), nullptr) : runFile(args);
    if (result.kind == SNK_Result::Exception)
        args.err(1) << result.errorText << '\n' << result.detailText << '\n';
}

void CMDpythonCommandCallback(CMD_Args &args) {
    const std::string code = callOf(args);
    const SNK_InterpreterAutoLock lock;
    const SNK_Result result = SNKrunPythonExpression(code.c_str(), SNK_Result::StringArray, nullptr);
    switch (result.kind) {
    case SNK_Result::WrongType:
        args.err(1) << "Unknown return type from python wrapper function\n";
        break;
    case SNK_Result::Exception:
        args.err(1) << result.errorText << '\n' << result.detailText << std::flush;
        break;
    case SNK_Result::Exit:
        args.err(1) << "Internal error in command implementation:\nThe command called sys.exit().\n";
        break;
    default:
        showTexts(args, result.stringArray);
    }
}
