// SPDX-License-Identifier: Apache-2.0
//
// Joins the command language to the expressions, in both directions: functions through which expressions run commands
// and Python, find files and test variables, and a type of variables through which a name in an expression is a
// variable of the language.
#include <orvlang/engine/CMD_Engine.h>

#include <orvlang/bridge/CMD_CapturedRun.h>
#include <orvlang/bridge/CMD_PythonLanguage.h>
#include <orvlang/platform/fml/FML.h>
#include <orvlang/platform/fml/FML_Function.h>
#include <orvlang/platform/fml/FML_Symbol.h>
#include <orvlang/platform/fml/fml_Vector.h>
#include <orvlang/platform/kit/KIT_PathSearch.h>
#include <orvlang/platform/osl/OrvaneEnvironment.h>
#include <orvlang/platform/snk/SNK_Language.h>
#include <orvlang/platform/snk/SNK_Python.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string_view>

namespace {

/// The marker between the output and the errors of executeb.
constexpr std::string_view theErrorMarker = " ~~~~ ";
constexpr int theGeneralPath = 0;

const char *textOf(const FML_SYMBOL *symbol) {
    return symbol->value.text ? symbol->value.text : "";
}

bool hasVariable(const FML_SYMBOL *name) {
    const CMD_Manager *manager = CMD_Manager::getContext();
    return manager && manager->hasVariable(textOf(name));
}

/// Output becomes one line: no newlines at its end, and a blank for each newline and tab in it. The last byte of what
/// remains stays as it is.
void makeOneLine(KIT_String &text) {
    std::size_t length = text.length();
    while (length > 0 && text[length - 1] == '\n')
        length--;
    text.resizeUninitialized(length);
    if (length > 0)
        std::replace_if(
            text.data(), text.data() + length - 1, [](char c) { return c == '\n' || c == '\t'; }, ' ');
}

/// The streams whose text execute, executee and executeb return.
enum class Capture { OUTPUT, ERRORS, BOTH };

template <Capture capture>
void executeCommand(FML_FUNCTION *, FML_SYMBOL *result, FML_SYMBOL **arguments, int) {
    CMD_Manager *manager = CMD_Manager::getContext();
    if (!arguments[0]->value.text || !manager)
        return;
    const CMD_CapturedRun run(*manager, arguments[0]->value.text);
    KIT_String text(capture == Capture::ERRORS ? run.getErrors() : run.getOutput());
    if (capture == Capture::BOTH && !run.getErrors().empty())
        text.append(theErrorMarker).append(run.getErrors());
    makeOneLine(text);
    result->value.text = text.steal();
}

void evaluatePythonText(FML_FUNCTION *, FML_SYMBOL *result, FML_SYMBOL **arguments, int) {
    const char *code = textOf(arguments[0]);
    if (!*code)
        return;
    SNK_Result value = SNKrunPythonExpression(code, SNK_Result::String, nullptr);
    KIT_String &text = value.kind == SNK_Result::Exception ? value.detailText : value.stringValue;
    if (!text.isEmpty())
        result->value.text = text.steal();
}

void evaluatePythonNumber(FML_FUNCTION *, FML_SYMBOL *result, FML_SYMBOL **arguments, int) {
    const char *code = textOf(arguments[0]);
    if (!*code)
        return;
    const SNK_Result value = SNKrunPythonExpression(code, SNK_Result::Float, nullptr);
    if (value.kind == SNK_Result::Float)
        result->value.number = static_cast<float>(value.doubleValue);
    else if (value.kind == SNK_Result::Exception)
        std::cerr << "Error from pythonexprf:\n" << value.detailText << '\n' << std::flush;
}

void findFile(FML_FUNCTION *, FML_SYMBOL *result, FML_SYMBOL **arguments, int) {
    KIT_PathSearch &search = *KIT_PathSearch::getInstance(theGeneralPath);
    const char *name = arguments[0]->value.text;
    KIT_String found;
    if (!search.orvaneFindFile(name, found))
        search.orvaneFindDirectory(name, found);
    if (found.isEmpty())
        found = name;
    result->value.text = found.steal();
}

void findFiles(FML_FUNCTION *, FML_SYMBOL *result, FML_SYMBOL **arguments, int) {
    KIT_PathSearch &search = *KIT_PathSearch::getInstance(theGeneralPath);
    KIT_StringArray files;
    KIT_StringArray directories;
    search.findAllFiles(arguments[0]->value.text, files);
    search.findAllDirectories(arguments[0]->value.text, directories);
    files.merge(directories);
    KIT_String joined("");
    for (int i = 0; i < files.entries(); i++) {
        if (i > 0)
            joined.append(std::string_view(textOf(arguments[1])));
        joined.append(std::string_view(files[i]));
    }
    result->value.text = joined.steal();
}

void isOrvlangVariable(FML_FUNCTION *, FML_SYMBOL *result, FML_SYMBOL **arguments, int) {
    result->value.number = hasVariable(arguments[0]) ? 1.0f : 0.0f;
}

void isVariable(FML_FUNCTION *, FML_SYMBOL *result, FML_SYMBOL **arguments, int) {
    result->value.number = hasVariable(arguments[0]) || OrvaneGetenv(textOf(arguments[0])) ? 1.0f : 0.0f;
}

constexpr int theStrings[] = { FML_STRING, FML_STRING };

/// A function with its help text.
struct BridgeFunction : FML_FUNCTION {
    constexpr BridgeFunction(const char *name, int arguments, int result, FML_EvaluateCallback evaluate,
                             const char *help, unsigned flags = 0)
        : FML_FUNCTION(FML_VOLATILE | flags, name, arguments, result, theStrings, evaluate, nullptr, nullptr, 1,
                       false),
          help(help) {}
    const char *help;
};

constinit BridgeFunction theFunctions[] = {
    { "execute", 1, FML_STRING, executeCommand<Capture::OUTPUT>,
      "execute(command)\n"
      "Runs a command and returns its output as one line.\n"
      "Newlines at the end are dropped, other newlines and tabs become blanks. Error messages are dropped." },
    { "executee", 1, FML_STRING, executeCommand<Capture::ERRORS>,
      "executee(command)\n"
      "Runs a command and returns its error messages as one line." },
    { "executeb", 1, FML_STRING, executeCommand<Capture::BOTH>,
      "executeb(command)\n"
      "Runs a command and returns its output and, after \" ~~~~ \", its error messages if there are any." },
    { "pythonexprs", 1, FML_STRING, evaluatePythonText,
      "pythonexprs(code)\n"
      "Evaluates a Python expression and returns its value as a text, that of an exception if it raises one.\n"
      "Refused in safe mode.",
      FML_UNSAFE },
    { "pythonexprf", 1, FML_FLOAT, evaluatePythonNumber,
      "pythonexprf(code)\n"
      "Evaluates a Python expression and returns its value as a number, 0 for any other value.\n"
      "Refused in safe mode.",
      FML_UNSAFE },
    { "run", 1, FML_STRING, executeCommand<Capture::OUTPUT>, "run(command)\nThe same as execute." },
    { "rune", 1, FML_STRING, executeCommand<Capture::ERRORS>, "rune(command)\nThe same as executee." },
    { "runb", 1, FML_STRING, executeCommand<Capture::BOTH>, "runb(command)\nThe same as executeb." },
    { "findfile", 1, FML_STRING, findFile,
      "findfile(name)\n"
      "The first file, or else directory, of that name on the search path.\n"
      "The name itself when there is none." },
    { "findfiles", 2, FML_STRING, findFiles,
      "findfiles(name, separator)\n"
      "All files and directories of that name on the search path, with the separator between them." },
    { "isovariable", 1, FML_FLOAT, isOrvlangVariable,
      "isovariable(name)\n"
      "1 when the command language has a variable of that name, else 0." },
    { "isvariable", 1, FML_FLOAT, isVariable,
      "isvariable(name)\n"
      "1 when the command language or the process environment has a variable of that name, else 0." },
};

// The value of a symbol of this type is the name of the variable, which is read when the symbol is: a change in
// between shows.

void clearName(FML_SYMBOL *symbol) {
    symbol->value.text = nullptr;
}

void freeName(FML_SYMBOL *symbol) {
    std::free(symbol->value.text);
    symbol->value.text = nullptr;
}

extern const FML_TYPEDEF theGlobalVariable;

FML_SYMBOL *resolveName(const char *name, int thread) {
    const CMD_Manager *manager = CMD_Manager::getContext();
    if (!manager || !manager->hasVariable(name))
        return nullptr;
    FML_SYMBOL *symbol = fml_AllocSymbol(theGlobalVariable.code, thread);
    symbol->value.text = strdup(name);
    return symbol;
}

const char *getName(FML_SYMBOL *symbol) {
    return symbol->value.text;
}

int castToVector(fml_Vector &vector, const CMD_Manager &manager, const char *name) {
    KIT_String text;
    if (manager.getVariable(name, text))
        return vector.scan(text.c_str()) ? 0 : -1;
    vector.grow(1);
    vector.setValue(0, 0);
    return 1;
}

int castVariable(FML_SYMBOL *target, FML_SYMBOL *source) {
    const CMD_Manager *manager = CMD_Manager::getContext();
    if (!manager)
        return -1;
    const char *name = textOf(source);
    switch (target->type->code) {
    case FML_FLOAT:
        manager->getVariable(name, target->value.number);
        return 0;
    case FML_STRING: {
        KIT_String text;
        manager->getVariable(name, text);
        target->value.text = text.steal();
        return 0;
    }
    case FML_VECTOR:
        return castToVector(*target->value.vector, *manager, name);
    default:
        return -1;
    }
}

const FML_TYPEDEF theGlobalVariable = { 20,          "globalVar", clearName,    freeName,
                                        resolveName, getName,     castVariable, {} };

}   // namespace

bool CMD_Engine::theLibraryGlueNeeded = true;

void CMD_Engine::initLibraryGlue() {
    if (!theLibraryGlueNeeded)
        return;
    theLibraryGlueNeeded = false;
    manager.setContext();
    TRK_Manager::initExpressionLibrary();
    fml_AddVariableType(&theGlobalVariable, 0);
    for (BridgeFunction &function : theFunctions)
        fml_AddFunction(&function, function.help);
    fml_SetOptimization(0);
    TRK_Manager::initLibraryGlue();
    SNKsetLanguage(&CMDgetPythonLanguage());
}
