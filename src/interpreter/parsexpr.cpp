// CodeParser: expressions, primaries, literals, calls, conversions, selectors and argument lists.
#include <cstdio>
#include <memory>

#include "interpreter/arrayvar.h"
#include "interpreter/charvar.h"
#include "interpreter/cleanup.h"
#include "interpreter/codepars.h"
#include "interpreter/expressn.h"
#include "interpreter/floatvar.h"
#include "interpreter/funcdecl.h"
#include "interpreter/intvar.h"
#include "interpreter/operator.h"
#include "interpreter/stringvr.h"
#include "interpreter/vardecl.h"
#include "interpreter/varref.h"
#include "quill/substrng.h"

// expression -> primary { binaryoperator primary }, ended by the terminator, a
// ';' or ',', or a ')' or ']' that the caller checks. The elements go in infix
// order, unary operators after their operand.
void CodeParser::parseExpression(Expression* expression, const char* terminator) {
    for (;;) {
        parsePrimary(expression);
        if (tokenKind != ScanOperator) error("Expected operator");
        if (terminator && is(terminator)) return;
        int code = Operator::codeOf(token.asCharPointer());
        // ".", "[]" and "()" name the member, element and call operators, which
        // only the selectors place.
        if (code == OP_NONE || code == OP_MEMBER || code == OP_ELEMENT || code == OP_CALL) {
            if (is(";") || is(",")) return;
            error("Unexpected operator");
        }
        if (code == OP_GROUP_CLOSE || code == OP_INDEX_CLOSE) return;
        if (Operator::isUnary(code)) error("Unexpected unary operator");
        expression->addOperator(code);
        next();
    }
}

Expression* CodeParser::parseTypedExpression(OrderedCltn* types) {
    std::unique_ptr<Expression> expression(new Expression);
    parseExpression(expression.get());
    Variable* type = expression->toPostfix();
    if (types)
        addOwned(*types, type);
    else
        delete type;
    return expression.release();
}

// primary -> prefixoperator primary | '++' leftvalue | '--' leftvalue | '(' expression ')'
//          | identifier | literal
void CodeParser::parsePrimary(Expression* expression) {
    checkNesting();
    if (tokenKind == ScanIdentifier) {
        parseIdentifier(expression);
        return;
    }
    if (tokenKind != ScanOperator) {
        parseLiteral(expression);
        return;
    }
    int code = Operator::codeOf(token.asCharPointer());
    if (code == OP_NONE) error("Unknown operator");
    if (code == OP_PRE_INC || code == OP_PRE_DEC) {
        next();
        parseLeftValue(expression);
        expression->addOperator(code);
        parsePostfix(expression);
    } else if (Operator::isPrefix(code)) {
        next();
        parsePrimary(expression);
        expression->addOperator(Operator::toUnary(code));
    } else if (code == OP_GROUP) {
        expression->addOperator(OP_GROUP);
        next();
        parseExpression(expression);
        if (!is(")")) error("Expected ')'");
        expression->addOperator(OP_GROUP_CLOSE);
        next();
    } else {
        error("Unexpected binary operator");
    }
}

// A literal becomes a constant named after its text: an int read as a double
// and truncated to 32 bits, a float, a char, a string without its quotes.
void CodeParser::parseLiteral(Expression* expression) {
    double number = 0;
    std::unique_ptr<Variable> value;
    if (tokenKind == ScanDigit || tokenKind == ScanFloat) std::sscanf(token.asCharPointer(), "%lf", &number);
    if (tokenKind == ScanDigit)
        value.reset(new IntVar(ScalarVar::truncate(number)));
    else if (tokenKind == ScanFloat)
        value.reset(new FloatVar(number));
    else if (tokenKind == ScanChar)
        value.reset(CharVar::fromLiteral(token));
    else if (tokenKind == ScanString)
        value.reset(new StringVar(token.size() >= 2 ? String(token(1, int(token.size()) - 2)) : String()));
    else
        error("Unexpected token");
    Variable* type = Variable::findType(value->getType());
    expression->addElement(makeTaking<ConstDeclare>(token, line, type, value).release());
    next();
}

// identifier -> variable selectors [ '++' | '--' ] | function arguments | type '(' arguments ')'
void CodeParser::parseIdentifier(Expression* expression) {
    Statement* symbol = findSymbol(token, 1);
    if (symbol && symbol->isKindOf(class_VarDeclare)) {
        VarDeclare* declaration = static_cast<VarDeclare*>(symbol);
        expression->addElement(new VarDeclReference(declaration, line));
        next();
        parseSelectors(expression, declaration->getType());
        parsePostfix(expression);
    } else if (symbol) {
        FuncDeclare* function = static_cast<FuncDeclare*>(symbol);
        int callLine = line;
        next();
        if (!is("(") && !is("()")) error("Expected '('");
        OwnedList arguments = parseCallArguments(function);
        expression->addElement(makeTaking<FuncCall>(function, arguments, callLine).release());
    } else {
        Variable* type = lookupType(token, 1);
        if (!type) error("Unexpected identifier");
        parseConversion(expression, type);
    }
}

void CodeParser::parsePostfix(Expression* expression) {
    if (is("++") || is("--")) {
        expression->addOperator(is("++") ? OP_POST_INC : OP_POST_DEC);
        next();
    }
}

// leftvalue -> variable selectors
void CodeParser::parseLeftValue(Expression* expression) {
    if (tokenKind != ScanIdentifier) error("Expected variable identifier");
    Statement* symbol = findSymbol(token, 1);
    if (!symbol) error("Unexpected identifier");
    if (!symbol->isKindOf(class_VarDeclare)) error("Expected variable");
    VarDeclare* declaration = static_cast<VarDeclare*>(symbol);
    expression->addElement(new VarDeclReference(declaration, line));
    next();
    parseSelectors(expression, declaration->getType());
}

// A conversion is written as a call of the type: an unnamed declaration with constructor arguments.
void CodeParser::parseConversion(Expression* expression, Variable* type) {
    if (type == Variable::voidType()) error("Cannot cast to a variable of type void");
    int conversionLine = line;
    next();
    if (!is("(")) error("Expected '('");
    next();
    OrderedCltn expressions, types;
    ContentsGuard expressionsGuard(expressions), typesGuard(types);
    parseArgumentsInside(expressions, types);
    int index = type->constructorIndex(types);
    if (index < 0) constructorError(type->getName(), types);
    std::unique_ptr<ConstructorCall> call(new ConstructorCall(index));
    call->takeArguments(types, expressions);
    expression->addElement(makeTaking<VarDeclare>("", conversionLine, type, call).release());
}

// arguments -> '()' | '(' expression { ',' expression } ')', as many as the
// function has parameters. A reference parameter needs a left value of its
// type, a value parameter a type assignable to its own. With no parameters,
// "( )" leaves its ')' current.
OwnedList CodeParser::parseCallArguments(FuncDeclare* function) {
    int n = function->argumentCount();
    if (is("()")) {
        if (n != 0) error(String("Function ") + function->getName() + " needs arguments");
        next();
        return OwnedList();
    }
    next();
    OwnedList arguments(new OrderedCltn);
    for (int i = 0; i < n; ++i) {
        OrderedCltn types;
        ContentsGuard typesGuard(types);
        addOwned(*arguments, parseTypedExpression(&types));
        Variable* type = Variable::argumentAt(types, 0);
        VarDeclare* parameter = function->getArgument(i);
        if (parameter->isRef()) {
            if (!type->isKindOf(class_VarReference))
                error("A left-value element must used to assign to a reference");
            if (!type->getType().isEqual(parameter->getType()->getType()))
                error(String("Cannot initialize a reference to ") + parameter->getType()->getType() +
                      " with " + type->getType());
        } else if (parameter->getType()->constructorIndex(types) != 1) {
            constructorError(parameter->getName(), types);
        }
        if (i < n - 1) {
            if (!is(",")) error("Expected ','");
            next();
        }
    }
    if (n > 0) {
        if (!is(")")) error("Expected ')'");
        next();
    }
    return arguments;
}

// selectors -> { '.' NAME [ arguments ] | '[' expression ']' | arguments }, on the static type at the left.
void CodeParser::parseSelectors(Expression* expression, Variable* type) {
    while (tokenKind == ScanOperator) {
        String methodName;
        if (is(".")) {
            expression->addOperator(OP_MEMBER);
            next();
            if (tokenKind != ScanIdentifier) error("Expected object field identifier");
            methodName = token;
            int memberLine = line;
            next();
            if (!is("(") && !is("()")) {
                VarDeclare* member = type->getMember(methodName);
                expression->addElement(new VarDeclReference(member, memberLine));
                type = member->getType();
                continue;
            }
        } else if (is("[")) {
            if (!type->isKindOf(class_ArrayVar))
                error(formatText("Type %s is not a vector", type->getType().asCharPointer()));
            expression->addOperator(OP_INDEX);
            next();
            parseExpression(expression);
            if (!is("]")) error("Expected ']'");
            expression->addOperator(OP_INDEX_CLOSE);
            next();
            type = static_cast<ArrayVar*>(type)->getElementType();
            continue;
        } else if (is("(") || is("()")) {
            expression->addOperator(OP_CALL);
            methodName = token;
        } else {
            return;
        }
        int callLine = line;
        OwnedList arguments(new OrderedCltn);
        OrderedCltn types;
        ContentsGuard typesGuard(types);
        parseArgumentList(*arguments, types);
        FuncDeclare* method = type->getMethod(methodName, types);
        expression->addElement(makeTaking<MethodCall>(method, arguments, callLine).release());
        type = method->getType();
    }
}

void CodeParser::parseArgumentList(OrderedCltn& expressions, OrderedCltn& types) {
    bool empty = is("()");
    next();
    if (!empty) parseArgumentsInside(expressions, types);
}

void CodeParser::parseArgumentsInside(OrderedCltn& expressions, OrderedCltn& types) {
    if (is(")")) {
        next();
        return;
    }
    for (;;) {
        addOwned(expressions, parseTypedExpression(&types));
        if (is(",")) {
            next();
            continue;
        }
        if (!is(")")) error("Expected ')'");
        next();
        return;
    }
}
