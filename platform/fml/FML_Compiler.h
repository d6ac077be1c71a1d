// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <orvlang/platform/fml/FML.h>
#include <orvlang/platform/fml/FML_Lexer.h>
#include <orvlang/platform/fml/FML_Program.h>

#include <initializer_list>
#include <string>

class FML_Evaluation;

/// Turns the text of an expression into a program, in one pass over the text. Operators, the loosest first:
/// `?:`, `||`, `&&`, `== !=`, `< <= > >=`, `+ -`, `* / %`, unary `- !`, `^`, which groups to the right.
class FML_Compiler {
public:
    /// `evaluation` computes constant parts ahead; nothing else may run in it meanwhile.
    FML_Compiler(FML_Program &program, FML_Evaluation &evaluation) : program(program), evaluation(evaluation) {}

    /// Fills the program. After anything but FML_NO_ERROR it must not run.
    FML_ERROR compile(std::string_view text);

private:
    class Level;

    // One for each level of the grammar; each leaves its value on the stack.
    void parseChoice();
    void parseBinary(int loosest);
    void parseUnary();
    void parsePower();
    void parsePrimary();
    void parseVector();
    void parseName();
    void parseCall(std::string_view name);
    void parseChoiceCall();
    /// Parses a list up to `close` and returns the number of its values.
    unsigned parseList(FML_Token::Kind close);

    void addNumber(std::string_view text);
    void addText(std::string_view text);
    void addString(std::string_view raw);
    void addReference(FML_Op op, const FML_VariableReference &reference);

    void advance() { token = lexer.next(); }
    bool accept(FML_Token::Kind kind);
    void expect(FML_Token::Kind kind);
    void fail(FML_ERROR number);

    void emit(FML_Op op, unsigned count, unsigned operand, int stackEffect);
    void emitOperator(FML_Op op, unsigned operands);
    /// An instruction whose target is set by land.
    std::size_t emitJump(FML_Op op, int stackEffect);
    void land(std::size_t jump);
    /// Replaces the last instruction and the constants before it, as many as it takes, by their result.
    void fold(unsigned operands);

    FML_Program &program;
    FML_Evaluation &evaluation;
    FML_Lexer lexer{ {} };
    FML_Token token{ FML_Token::END, {}, false, {} };
    FML_ERROR error = FML_NO_ERROR;
    int nesting = 0;
    std::size_t depth = 0;     // values on the stack at this instruction
    std::size_t landing = 0;   // no jump leads to an instruction after this one
    std::string unescaped;     // of the string being read
};
