// CodeParser, the one-pass parser of the interpreted language into a program tree and its tables.
#ifndef INTERPRETER_CODEPARS_H
#define INTERPRETER_CODEPARS_H

#include <cstdint>

#include "interpreter/cleanup.h"
#include "quill/dictnary.h"
#include "quill/orderedc.h"
#include "reverse/basepars.h"

class BlockOfCode;
class Expression;
class FuncDeclare;
class Statement;
class VarDeclare;
class Variable;

extern Class class_CodeParser;

// Recursive descent with no separate semantic phase: types are resolved and
// checked while parsing by asking prototype Variables what they accept, and
// the first error ends the parse. Each parse function is entered on the first
// token of what it parses and leaves the current token on its last one.
//
// Scopes at parse time mirror the frames of the Executer exactly: a global
// has level -1, a local the place of its block among the open blocks of its
// function and its place in that block.
class CodeParser : public BaseParser {
    DECLARE_MEMBERS(CodeParser)
public:
    CodeParser();
    ~CodeParser() noexcept(false) override;

    // Parses the text through a memory stream; answers the message, empty on success.
    // Without reset the text adds to the present tables.
    String parseText(const String& text, int reset);
    String parseFile(const String& fileName);  // always with reset
    using BaseParser::parse;
    // The core: the top-level loop until the end of input, with the error caught into result.
    void parse(String& result, int reset);
    // Destroys globals, functions and the types the source made.
    void reset();

    FuncDeclare* getMainFunction() const;
    // As getMainFunction; when absent and not silent, fails with "main function not found".
    FuncDeclare* findMain(int silent);
    // The function of that name whose parameters accept the values, one by one.
    FuncDeclare* findFunction(const String& name, const OrderedCltn& arguments, int silent);
    void addExternalFunction(FuncDeclare* function);
    bool isExternalFunction(const String& name) const;
    const OrderedCltn& getExternalFunctions() const { return externalFunctions; }
    // After a resident line made a global: a global of that name and type stays,
    // one of another type takes the new type at its index, a new name is appended.
    void updateGlobal(Variable* variable);
    const OrderedCltn& getGlobals() const { return globals; }
    const OrderedCltn& getFunctions() const { return functions; }

    // The innermost declaration or function of that name: blocks from the
    // innermost, globals, functions, external functions.
    Statement* findSymbol(const String& name, int silent);
    // The registry of built-in types, then the types of the source, a typedef
    // giving what it aliases. Not silent, an unknown name is "Type expected".
    Variable* lookupType(const String& name, int silent);
    // Raises the PARSE ERROR of message at the current line and token.
    [[noreturn]] void error(const String& message);
    // The value of a constant expression, converted by int's constructor; 0 without a value when silent.
    int evalConstInt(Expression* expression, int silent);
    // A parse error when the nesting of statements or expressions leaves too
    // little stack to parse and run the program.
    void checkNesting();

private:
    // --- Lexical level and tables (codepars.cpp) ---
    void next();
    void pushBack(const String& text, int kind);
    void parseMacro();
    bool is(const char* text) const;
    void expectEnd();
    void addGlobalVar(VarDeclare* declaration);
    void addLocalVar(VarDeclare* declaration);
    void addFunction(FuncDeclare* function, int external);
    void addType(const String& name, Variable* type);
    void openBlock();
    void closeBlock();
    OrderedCltn& innerBlock() const;
    void addPredefinedGlobals();
    void deleteTypes();
    [[noreturn]] void constructorError(const String& name, const OrderedCltn& types);
    void checkCondition(Expression* test);

    // --- Declarations (parsdecl.cpp) ---
    void parseTopLevel();
    void parseTypeDeclaration();
    void parseStruct();
    void collectFields(Statement* declaration, OrderedCltn& members);
    void parseTypedef();
    Variable* parseType();
    Variable* parseTypeRest(Variable* type);
    Variable* parseTemplate(Variable* prototype);
    Variable* parseDimensions(Variable* type);
    Statement* parseDeclarators(Variable* type, bool global);
    VarDeclare* parseVariable(const String& name, int declarationLine, Variable* type, bool inParentheses);
    bool parseFunction(const String& name, int declarationLine, Variable* returnType, Variable* firstType,
                       bool listOpen, bool global);
    void parseParameters(Variable* firstType, OrderedCltn& parameters);
    void parseFunctionBody(FuncDeclare* function);
    void checkPrototype(FuncDeclare* definition, FuncDeclare* prototype);

    // --- Statements (parsstmt.cpp) ---
    Statement* parseStatement(Variable* returnType, bool& returned, bool inFor);
    void parseStatements(Variable* returnType, bool& returned, bool inFor, OrderedCltn& code);
    Statement* parseReturn(Variable* returnType, bool& returned);
    Statement* parseFor(Variable* returnType);
    Statement* parseIf(Variable* returnType, bool& returned, bool inFor);
    Statement* parseBlock(Variable* returnType, bool& returned, bool inFor);
    Statement* parseExpressionStatement();

    // --- Expressions (parsexpr.cpp) ---
    // Adds to expression in infix order up to the terminator, a ; or , or a closer.
    void parseExpression(Expression* expression, const char* terminator = 0);
    // A new expression parsed and checked: its static type goes to types when given, else is destroyed.
    Expression* parseTypedExpression(OrderedCltn* types);
    void parsePrimary(Expression* expression);
    void parseLiteral(Expression* expression);
    void parseIdentifier(Expression* expression);
    void parseLeftValue(Expression* expression);
    void parseConversion(Expression* expression, Variable* type);
    void parsePostfix(Expression* expression);
    OwnedList parseCallArguments(FuncDeclare* function);
    void parseSelectors(Expression* expression, Variable* type);
    // From ( or (): expressions up to ) into expressions, their types into types; reads past the ).
    void parseArgumentList(OrderedCltn& expressions, OrderedCltn& types);
    // The same from the first token inside the (.
    void parseArgumentsInside(OrderedCltn& expressions, OrderedCltn& types);

    std::int32_t pendingKind;  // ScanEOF: no pending token
    String pendingToken;
    OrderedCltn functions;          // FuncDeclare, owned, in order of first declaration
    OrderedCltn globals;            // VarDeclare, owned; the predefined ones first
    OrderedCltn scopes;             // the open blocks, each an OrderedCltn of declarations not owned
    Dictionary types;               // name to prototype of every type the source made
    OrderedCltn externalFunctions;  // FuncDeclare of the built-ins, owned
};

#endif
