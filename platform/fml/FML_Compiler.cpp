// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/fml/FML_Compiler.h>

#include <orvlang/platform/fml/FML_Evaluation.h>
#include <orvlang/platform/fml/FML_Library.h>
#include <orvlang/platform/fml/FML_Registry.h>
#include <orvlang/platform/kit/KIT_Nesting.h>
#include <orvlang/platform/kit/KIT_Number.h>

#include <algorithm>

namespace {

// Far above what people write, and far below what the smallest usual stack holds.
constexpr int theDeepestNesting = 1000;
// What the parser leaves to everybody that it calls.
constexpr std::size_t theStackReserve = 128 * 1024;
// A result that is computed ahead is kept with the program for as long as that lives.
constexpr std::size_t theLongestFoldedText = 256;

struct BinaryOperator {
    int binding;   // 0: no binary operator
    FML_Op op;
};

BinaryOperator binaryOperator(FML_Token::Kind kind) {
    switch (kind) {
    case FML_Token::OR:
        return { 1, FML_Op::OR };
    case FML_Token::AND:
        return { 2, FML_Op::AND };
    case FML_Token::EQUAL:
        return { 3, FML_Op::EQUAL };
    case FML_Token::NOT_EQUAL:
        return { 3, FML_Op::NOT_EQUAL };
    case FML_Token::LESS:
        return { 4, FML_Op::LESS };
    case FML_Token::LESS_EQUAL:
        return { 4, FML_Op::LESS_EQUAL };
    case FML_Token::GREATER:
        return { 4, FML_Op::GREATER };
    case FML_Token::GREATER_EQUAL:
        return { 4, FML_Op::GREATER_EQUAL };
    case FML_Token::PLUS:
        return { 5, FML_Op::ADD };
    case FML_Token::MINUS:
        return { 5, FML_Op::SUBTRACT };
    case FML_Token::TIMES:
        return { 6, FML_Op::MULTIPLY };
    case FML_Token::DIVIDE:
        return { 6, FML_Op::DIVIDE };
    case FML_Token::MODULO:
        return { 6, FML_Op::MODULO };
    default:
        return { 0, FML_Op::CONSTANT };
    }
}

}   // namespace

/// One level of recursion of the parser, which is where a text can ask for more stack than there is.
class FML_Compiler::Level {
public:
    explicit Level(FML_Compiler &compiler) : compiler(compiler) {
        if (++compiler.nesting > theDeepestNesting || KIT_Nesting::isStackShort(theStackReserve))
            compiler.fail(FML_NESTING_TOO_DEEP);
    }
    ~Level() { compiler.nesting--; }
    Level(const Level &) = delete;
    Level &operator=(const Level &) = delete;

private:
    FML_Compiler &compiler;
};

FML_ERROR FML_Compiler::compile(std::string_view text) {
    lexer = FML_Lexer(text);
    advance();
    parseChoice();
    if (token.kind != FML_Token::END)
        fail(FML_SYNTAX_ERROR);
    return error;
}

void FML_Compiler::fail(FML_ERROR number) {
    if (error == FML_NO_ERROR)
        error = number;
    // With nothing left to read, every level of the parser comes to its end.
    lexer = FML_Lexer({});
    token = { FML_Token::END, {}, false, {} };
}

bool FML_Compiler::accept(FML_Token::Kind kind) {
    if (token.kind != kind)
        return false;
    advance();
    return true;
}

void FML_Compiler::expect(FML_Token::Kind kind) {
    if (!accept(kind))
        fail(FML_SYNTAX_ERROR);
}

void FML_Compiler::parseChoice() {
    const Level level(*this);
    parseBinary(1);
    if (!accept(FML_Token::QUESTION))
        return;
    const std::size_t toSecond = emitJump(FML_Op::JUMP_FALSE, -1);
    parseChoice();
    const std::size_t toEnd = emitJump(FML_Op::JUMP, -1);
    expect(FML_Token::COLON);
    land(toSecond);
    parseChoice();
    land(toEnd);
}

void FML_Compiler::parseBinary(int loosest) {
    parseUnary();
    for (;;) {
        const BinaryOperator found = binaryOperator(token.kind);
        if (found.binding < loosest)
            return;
        advance();
        const bool isLazy = found.op == FML_Op::AND || found.op == FML_Op::OR;
        const std::size_t jump = isLazy ? emitJump(found.op, -1) : 0;
        parseBinary(found.binding + 1);
        if (isLazy) {
            emitOperator(FML_Op::TRUTH, 1);
            land(jump);
        } else {
            emitOperator(found.op, 2);
        }
    }
}

void FML_Compiler::parseUnary() {
    const FML_Token::Kind kind = token.kind;
    if (kind != FML_Token::MINUS && kind != FML_Token::NOT)
        return parsePower();
    const Level level(*this);
    if (accept(kind)) {
        parseUnary();
        emitOperator(kind == FML_Token::MINUS ? FML_Op::NEGATE : FML_Op::NOT, 1);
    }
}

void FML_Compiler::parsePower() {
    parsePrimary();
    if (!accept(FML_Token::POWER))
        return;
    const Level level(*this);
    parseUnary();   // so that 2^-1 needs no parentheses, and 2^3^2 groups to the right
    emitOperator(FML_Op::POWER, 2);
}

void FML_Compiler::parsePrimary() {
    const std::string_view text = token.text;
    switch (token.kind) {
    case FML_Token::NUMBER:
        addNumber(text);
        return advance();
    case FML_Token::STRING:
        addString(text);
        return advance();
    case FML_Token::LITERAL:
        addText(text);
        return advance();
    case FML_Token::VARIABLE:
        addReference(FML_Op::VARIABLE, { text, token.hasFallback, token.fallback });
        return advance();
    case FML_Token::NAME:
        return parseName();
    case FML_Token::OPEN:
        advance();
        parseChoice();
        return expect(FML_Token::CLOSE);
    case FML_Token::OPEN_VECTOR:
        return parseVector();
    default:
        return fail(FML_SYNTAX_ERROR);
    }
}

void FML_Compiler::parseVector() {
    advance();
    const unsigned count = parseList(FML_Token::CLOSE_VECTOR);
    emit(FML_Op::VECTOR, count, 0, 1 - static_cast<int>(count));
}

void FML_Compiler::parseName() {
    const std::string_view name = token.text;
    advance();
    if (accept(FML_Token::OPEN))
        return parseCall(name);
    addReference(FML_Op::NAME, { name });
}

void FML_Compiler::parseCall(std::string_view name) {
    const FML_Callee callee = FML_Registry::get().findFunction(name);
    if (!callee)
        return fail(FML_UNKNOWN_FUNCTION);
    if (callee.library && !callee.library->evaluate)
        return parseChoiceCall();
    const unsigned count = parseList(FML_Token::CLOSE);
    if (error != FML_NO_ERROR)
        return;
    if (!FML_Registry::takesArguments(callee, count))
        return fail(FML_ARGUMENT_COUNT);
    const auto operand = static_cast<unsigned>(program.callees.size());
    program.callees.push_back(callee);
    emit(FML_Op::CALL, count, operand, 1 - static_cast<int>(count));
    if (FML_Registry::get().getOptimization() > 0 && FML_Registry::isPure(callee))
        fold(count);
}

/// `if(condition, first, second)`: only the value that is wanted is computed.
void FML_Compiler::parseChoiceCall() {
    std::size_t toSecond = 0;
    std::size_t toEnd = 0;
    unsigned count = 0;
    while (token.kind != FML_Token::CLOSE && error == FML_NO_ERROR) {
        if (count > 0)
            expect(FML_Token::COMMA);
        if (count == 1) {
            toSecond = emitJump(FML_Op::JUMP_FALSE, -1);
        } else if (count == 2) {
            toEnd = emitJump(FML_Op::JUMP, -1);
            land(toSecond);
        }
        parseChoice();
        count++;
    }
    expect(FML_Token::CLOSE);
    if (error != FML_NO_ERROR)
        return;
    if (count != 3)
        return fail(FML_ARGUMENT_COUNT);
    land(toEnd);
}

unsigned FML_Compiler::parseList(FML_Token::Kind close) {
    unsigned count = 0;
    if (accept(close))
        return count;
    do {
        parseChoice();
        count++;
    } while (accept(FML_Token::COMMA));
    expect(close);
    return count;
}

void FML_Compiler::addNumber(std::string_view text) {
    double number = 0;
    KITisNumber(text, &number);
    program.constants.push_back(FML_Value::ofNumberText(program.keep(text), number));
    emit(FML_Op::CONSTANT, 0, static_cast<unsigned>(program.constants.size() - 1), 1);
}

void FML_Compiler::addText(std::string_view text) {
    FML_Value value = FML_Value::ofText(program.keep(text));
    value.isNumber();   // decided once for all evaluations
    program.constants.push_back(value);
    emit(FML_Op::CONSTANT, 0, static_cast<unsigned>(program.constants.size() - 1), 1);
}

/// The text between double quotes: escapes become their characters, references their values.
void FML_Compiler::addString(std::string_view raw) {
    unsigned pieces = 0;
    bool hasReference = false;
    KIT_CshReference reference(raw);
    unescaped.clear();
    const auto addPiece = [&] {
        if (unescaped.empty())
            return;
        addText(unescaped);
        unescaped.clear();
        pieces++;
    };
    for (std::size_t i = 0; i < raw.size(); i++) {
        const std::size_t plain = std::min(raw.find_first_of("\\$", i), raw.size());
        unescaped += raw.substr(i, plain - i);
        i = plain;
        if (i == raw.size())
            break;
        if (raw[i] == '\\') {
            const char next = raw[++i];   // there is one: the lexer took it together with the backslash
            switch (next) {
            case 'n':
                unescaped += '\n';
                break;
            case 't':
                unescaped += '\t';
                break;
            case '"':
            case '\\':
            case '$':
                unescaped += next;
                break;
            default:
                unescaped += '\\';
                unescaped += next;
            }
            continue;
        }
        if (!reference.read(i, false)) {
            unescaped += '$';
            continue;
        }
        addPiece();
        addReference(FML_Op::VARIABLE,
                     { reference.name(), reference.form() == KIT_CshReference::Form::withFallback,
                       reference.fallback() });
        hasReference = true;
        pieces++;
        i += reference.length() - 1;
    }
    addPiece();
    if (pieces == 0)
        addText({});
    if (pieces > 1 || hasReference)
        emit(FML_Op::JOIN, pieces, 0, 1 - static_cast<int>(pieces));
}

void FML_Compiler::addReference(FML_Op op, const FML_VariableReference &reference) {
    program.references.push_back(
        { program.keep(reference.name), reference.hasFallback, program.keep(reference.fallback) });
    emit(op, 0, static_cast<unsigned>(program.references.size() - 1), 1);
}

void FML_Compiler::emit(FML_Op op, unsigned count, unsigned operand, int stackEffect) {
    program.code.push_back({ op, count, operand });
    depth += static_cast<std::size_t>(stackEffect);
    program.stackDepth = std::max(program.stackDepth, depth);
}

void FML_Compiler::emitOperator(FML_Op op, unsigned operands) {
    if (error != FML_NO_ERROR)
        return;
    emit(op, 0, 0, 1 - static_cast<int>(operands));
    fold(operands);
}

std::size_t FML_Compiler::emitJump(FML_Op op, int stackEffect) {
    emit(op, 0, 0, stackEffect);
    return program.code.size() - 1;
}

void FML_Compiler::land(std::size_t jump) {
    landing = program.code.size();
    program.code[jump].operand = static_cast<unsigned>(landing);
}

void FML_Compiler::fold(unsigned operands) {
    const std::size_t end = program.code.size();
    const std::size_t begin = end - 1 - operands;
    if (end < 1 + operands || begin < landing)
        return;
    for (std::size_t i = begin; i < end - 1; i++)
        if (program.code[i].op != FML_Op::CONSTANT)
            return;
    FML_Value result;
    // What fails now fails again, and is reported, when the program runs: perhaps never.
    if (!evaluation.runAhead(program, begin, end, result))
        return;
    if (result.kind == FML_Value::TEXT && result.text.size() <= theLongestFoldedText)
        result.text = program.keep(result.text);
    else if (result.kind != FML_Value::NUMBER)
        return;
    program.code.resize(begin);
    program.constants.push_back(result);
    program.code.push_back({ FML_Op::CONSTANT, 0, static_cast<unsigned>(program.constants.size() - 1) });
}
