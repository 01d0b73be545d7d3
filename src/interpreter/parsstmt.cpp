// CodeParser: statements, blocks, for, if, return, exit, break and continue.
#include <memory>

#include "interpreter/cleanup.h"
#include "interpreter/codeelem.h"
#include "interpreter/codepars.h"
#include "interpreter/expressn.h"
#include "interpreter/statemnt.h"
#include "interpreter/variable.h"

// Statements up to the closing '}', which stays current. Once a statement has
// returned, only the '}' may follow.
void CodeParser::parseStatements(Variable* returnType, bool& returned, bool inFor, OrderedCltn& code) {
    while (!is("}")) {
        addOwned(code, parseStatement(returnType, returned, inFor));
        expectEnd();
        next();
        if (returned && !is("}")) error("Statement unreachable");
    }
}

// statement -> return | for | if | 'exit' | 'break' | 'continue' | block | expressionstatement
// break and continue are statements only inside a for. The statement leaves
// its last token, a ';' or a '}', current.
Statement* CodeParser::parseStatement(Variable* returnType, bool& returned, bool inFor) {
    checkNesting();
    int statementLine = line;
    if (tokenKind == ScanIdentifier) {
        if (is("return")) return parseReturn(returnType, returned);
        if (is("for")) return parseFor(returnType);
        if (is("if")) return parseIf(returnType, returned, inFor);
        if (is("exit") || (inFor && (is("break") || is("continue")))) {
            Statement* plain = is("exit")    ? Statement::makeExit(statementLine)
                               : is("break") ? Statement::makeBreak(statementLine)
                                             : Statement::makeContinue(statementLine);
            next();
            return plain;
        }
        return parseExpressionStatement();
    }
    if (is(";") || is(")")) return Statement::makeEmpty(statementLine);
    if (is("{")) return parseBlock(returnType, returned, inFor);
    error("Unexpected token");
}

// return -> 'return' [ expression ] ';'
Statement* CodeParser::parseReturn(Variable* returnType, bool& returned) {
    int statementLine = line;
    next();
    returned = true;
    if (is(";")) {
        if (returnType != Variable::voidType()) error("return without argument");
        return new ReturnStatement(statementLine, returnType, 0);
    }
    OrderedCltn types;
    ContentsGuard guard(types);
    std::unique_ptr<Expression> value(parseTypedExpression(&types));
    if (returnType->constructorIndex(types) != 1) constructorError(returnType->getName(), types);
    return makeTaking<ReturnStatement>(statementLine, returnType, value).release();
}

// for -> 'for' '(' expressionstatement ';' [ condition ] ';' expressionstatement ')' statement
// The body has a block of its own; its return does not count for the function.
Statement* CodeParser::parseFor(Variable* returnType) {
    int statementLine = line;
    next();
    if (!is("(")) error("Expected '(' at the start of a FOR statement");
    next();
    std::unique_ptr<Statement> assign(parseExpressionStatement());
    if (!is(";")) error("';' expected");
    next();
    std::unique_ptr<Expression> test(new Expression);
    if (!is(";")) {
        parseExpression(test.get());
        checkCondition(test.get());
    }
    if (!is(";")) error("';' expected");
    next();
    std::unique_ptr<Statement> increment(parseExpressionStatement());
    if (!is(")")) error("Expected ')'  at the end of a FOR statement");
    next();
    openBlock();
    bool bodyReturned = false;
    std::unique_ptr<Statement> body(parseStatement(returnType, bodyReturned, true));
    closeBlock();
    return makeTaking<ForStatement>(statementLine, assign, test, increment, body).release();
}

// if -> 'if' '(' condition ')' statement [ 'else' statement ]
// Both branches share one block, emptied between them; the if has returned
// when both branches have.
Statement* CodeParser::parseIf(Variable* returnType, bool& returned, bool inFor) {
    int statementLine = line;
    next();
    if (!is("(")) error("Expected '(' at the start of a IF statement");
    next();
    std::unique_ptr<Expression> test(new Expression);
    parseExpression(test.get());
    if (!is(")")) error("')' expected");
    checkCondition(test.get());
    next();
    openBlock();
    bool thenReturned = false, elseReturned = false;
    std::unique_ptr<Statement> thenPart(parseStatement(returnType, thenReturned, inFor));
    expectEnd();
    innerBlock().removeAll();
    String end = token;
    next();
    std::unique_ptr<Statement> elsePart;
    if (tokenKind == ScanIdentifier && is("else")) {
        next();
        elsePart.reset(parseStatement(returnType, elseReturned, inFor));
    } else {
        pushBack(end, ScanOperator);
        elsePart.reset(Statement::makeEmpty(line));
    }
    closeBlock();
    returned = thenReturned && elseReturned;
    return makeTaking<IfStatement>(statementLine, test, thenPart, elsePart).release();
}

// block -> '{' { statement } '}'
Statement* CodeParser::parseBlock(Variable* returnType, bool& returned, bool inFor) {
    std::unique_ptr<BlockOfCode> block(new BlockOfCode(line));
    openBlock();
    OrderedCltn code;
    ContentsGuard guard(code);
    next();
    parseStatements(returnType, returned, inFor, code);
    closeBlock();
    handOver(code, [&](Object* statement) { block->add(static_cast<Statement*>(statement)); });
    return block.release();
}

// expressionstatement -> expression | type declarators | (nothing before ';' or ')')
// An identifier that names no symbol but a type starts a local declaration.
Statement* CodeParser::parseExpressionStatement() {
    int statementLine = line;
    if (is(";") || is(")")) return Statement::makeEmpty(statementLine);
    if (tokenKind != ScanIdentifier) error("Unexpected token");
    if (findSymbol(token, 1)) {
        String first = token;
        OrderedCltn types;
        ValueGuard type;  // goes after the expression that may refer to it
        std::unique_ptr<Expression> expression(parseTypedExpression(&types));
        type.reset(static_cast<Variable*>(types.removeLast()));
        Statement* statement = new ExprElement(first, statementLine, type.get(), expression.get());
        type.release();
        expression.release();
        return statement;
    }
    Variable* type = lookupType(token, 1);
    if (!type) error("Unexpected token");
    Statement* declaration = parseDeclarators(parseTypeRest(type), false);
    return declaration ? declaration : Statement::makeEmpty(statementLine);
}
