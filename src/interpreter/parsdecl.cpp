// CodeParser: top-level items, types, struct and typedef, declarators, functions and their prototypes.
#include <memory>

#include "interpreter/arrayvar.h"
#include "interpreter/cleanup.h"
#include "interpreter/codepars.h"
#include "interpreter/expressn.h"
#include "interpreter/funcdecl.h"
#include "interpreter/genvar.h"
#include "interpreter/vardecl.h"
#include "interpreter/varref.h"
#include "quill/objalloc.h"

// item -> typedeclaration | type declarators
void CodeParser::parseTopLevel() {
    if (tokenKind != ScanIdentifier) error("Unexpected token");
    if (is("struct") || is("enum") || is("union") || is("typedef") || is("class")) {
        parseTypeDeclaration();
        return;
    }
    parseDeclarators(parseType(), true);
}

void CodeParser::parseTypeDeclaration() {
    if (is("struct"))
        parseStruct();
    else if (is("typedef"))
        parseTypedef();
    else
        error("Unhandled type declaration for");
}

// type -> NAME [ '<' constant { ',' constant } '>' ]; leaves the token after it current.
Variable* CodeParser::parseType() {
    if (is("const")) error("Type identifier expected");
    return parseTypeRest(lookupType(token, 0));
}

Variable* CodeParser::parseTypeRest(Variable* type) {
    next();
    return is("<") ? parseTemplate(type) : type;
}

// The instance is made once by its prototype and kept among the types under its name.
Variable* CodeParser::parseTemplate(Variable* prototype) {
    OrderedCltn values;
    ContentsGuard guard(values);
    for (;;) {
        next();
        std::unique_ptr<Expression> argument(new Expression);
        parseExpression(argument.get(), ">");
        delete argument->toPostfix();
        if (!argument->isConstant()) error("Argument of a template must be constant");
        addOwned(values, argument->evalConst());
        if (is(">")) break;
        if (!is(",")) error("Expected ','");
    }
    String name = prototype->getTemplateName(values);
    Variable* instance = lookupType(name, 1);
    if (!instance) {
        instance = prototype->makeTemplate(values);
        addType(name, instance);
    }
    next();
    return instance;
}

// dimensions -> '[' constant ']' { '[' constant ']' }: the first written is the
// innermost, so int a[2][3] is an array of 3 of int[2].
Variable* CodeParser::parseDimensions(Variable* type) {
    for (;;) {
        next();
        std::unique_ptr<Expression> size(new Expression);
        parseExpression(size.get());
        if (!is("]")) error("Expected ']'");
        delete size->toPostfix();
        if (!size->isConstant()) error("Constant expression expected");
        int n = evalConstInt(size.get(), 0);
        if (n < 0) error("Positive constant expression expected");
        String name = type->getType() + formatText("[%d]", n);
        Variable* array = lookupType(name, 1);
        if (!array) {
            std::unique_ptr<ArrayVar> made(new ArrayVar(type, n));
            double bytes = made->storageEstimate();
            if (bytes > double(allocationLimit()))
                error(formatText("Array %s too big: about %.3g bytes, more than the limit of %lu",
                                 name.asCharPointer(), bytes, (unsigned long)allocationLimit()));
            array = made.get();
            addType(name, made.release());
        }
        type = array;
        next();
        if (!is("[")) return type;
    }
}

// struct -> 'struct' NAME '{' { type declarators } '}' ';'. Field initialisers
// are constant: a value of the struct is built without an Executer.
void CodeParser::parseStruct() {
    next();
    if (tokenKind != ScanIdentifier) error("struct name expected");
    String name = token;
    if (lookupType(name, 1)) error(String("Type ") + name + " already defined");
    next();
    if (!is("{")) error("'{' expected");
    openBlock();
    OrderedCltn declarations, members;
    ContentsGuard guard(declarations);
    for (next(); !is("}"); next()) {
        Variable* type = parseType();
        if (tokenKind != ScanIdentifier) error("Identifier expected");
        Statement* declaration = parseDeclarators(type, false);
        if (!declaration) continue;
        addOwned(declarations, declaration);
        collectFields(declaration, members);
    }
    next();
    if (!is(";")) error("';' expected");
    closeBlock();
    OwnedList fields(new OrderedCltn);
    for (unsigned i = 0; i < members.size(); ++i) {
        VarDeclare* member = static_cast<VarDeclare*>(members.at(int(i)));
        std::unique_ptr<ConstructorCall> call(member->takeConstructorCall());
        addOwned(*fields, makeTaking<FieldDeclare>(*member, call).release());
    }
    addType(name, makeTaking<GenericVar>(name, fields).release());
}

// Adds the variables of one declaration, each with constant initialisers only.
void CodeParser::collectFields(Statement* declaration, OrderedCltn& members) {
    if (declaration->isKindOf(class_ListOfElement)) {
        const OrderedCltn& declared = static_cast<ListOfElement*>(declaration)->getCode();
        for (unsigned i = 0; i < declared.size(); ++i)
            collectFields(static_cast<Statement*>(declared.at(int(i))), members);
        return;
    }
    ConstructorCall* call = static_cast<VarDeclare*>(declaration)->getConstructorCall();
    for (unsigned k = 0; call && k < call->size(); ++k)
        if (!call->getExpression(int(k))->isConstant()) error("Constant expression expected");
    members.add(*declaration);
}

// typedef -> 'typedef' type NAME [ dimensions ] { ',' NAME [ dimensions ] } ';'
void CodeParser::parseTypedef() {
    next();
    if (tokenKind != ScanIdentifier) error("type name expected");
    Variable* type = parseType();
    for (;;) {
        if (tokenKind != ScanIdentifier) error("Identifier expected");
        String name = token;
        if (lookupType(name, 1)) error(String("Type ") + name + " already defined");
        next();
        Variable* aliased = type;
        if (is("[")) {
            if (type == Variable::voidType()) error("Cannot define a type as an array of void");
            aliased = parseDimensions(type);
        }
        if (!is(",") && !is(";")) error("Expected ';' ','  or '['");
        std::unique_ptr<VarReference> alias(new VarReference(aliased));
        alias->setName(name);
        addType(name, alias.release());
        if (is(";")) return;
        next();
    }
}

// declarators -> declarator { ',' declarator } ';'
// declarator -> NAME [ '=' expression | dimensions | '(' arguments ')' ] | NAME parameters function
// Globals go to their table; locals come back as one statement, a ListOfElement
// when there are several, or null when there are none.
Statement* CodeParser::parseDeclarators(Variable* type, bool global) {
    OrderedCltn declared;
    ContentsGuard guard(declared);
    int listLine = line;
    bool listOpen = false;
    for (;;) {
        if (tokenKind != ScanIdentifier) error("Identifier expected");
        String name = token;
        int declarationLine = line;
        next();
        if (tokenKind != ScanOperator) error("Expected ';' ',' '(' or '['");
        Variable* firstType = 0;
        bool isFunction = is("()");
        bool inParentheses = is("(");
        if (inParentheses) {
            next();
            firstType = tokenKind == ScanIdentifier ? lookupType(token, 1) : 0;
            isFunction = firstType != 0;
        }
        if (isFunction) {
            if (parseFunction(name, declarationLine, type, firstType, listOpen, global)) return 0;
        } else {
            std::unique_ptr<VarDeclare> variable(parseVariable(name, declarationLine, type, inParentheses));
            if (global) {
                addGlobalVar(variable.release());
            } else {
                addLocalVar(variable.get());
                addOwned(declared, variable.release());
            }
        }
        listOpen = true;
        if (is(";")) break;
        next();
    }
    if (declared.size() == 0) return 0;
    if (declared.size() == 1) return static_cast<Statement*>(declared.removeLast());
    std::unique_ptr<ListOfElement> list(new ListOfElement(listLine));
    handOver(declared, [&](Object* declaration) { list->add(static_cast<Statement*>(declaration)); });
    return list.release();
}

// Entered on '=', '[', ',' or ';' after the name, or inside the '(' of constructor
// arguments; leaves the ',' or ';' that ends the declarator current.
VarDeclare* CodeParser::parseVariable(const String& name, int declarationLine, Variable* type,
                                      bool inParentheses) {
    if (type == Variable::voidType()) error("Cannot define a variable of type void");
    OrderedCltn expressions, argumentTypes;
    ContentsGuard expressionsGuard(expressions), typesGuard(argumentTypes);
    Variable* variableType = type;
    bool hasCall = inParentheses || is("=");
    if (inParentheses) {
        parseArgumentsInside(expressions, argumentTypes);
    } else if (is("=")) {
        next();
        addOwned(expressions, parseTypedExpression(&argumentTypes));
    } else if (is("[")) {
        variableType = parseDimensions(type);
        if (!is(",") && !is(";")) error("Expected ';' ',' '(' or '['");
        return new VarDeclare(name, declarationLine, variableType, static_cast<ConstructorCall*>(0));
    } else if (!is(",") && !is(";")) {
        error("Expected ';' ',' '(' or '['");
    }
    int index = type->constructorIndex(argumentTypes);
    if (index < 0) constructorError(name, argumentTypes);
    if (!is(",") && !is(";")) error("Expected ',' or ';'");
    std::unique_ptr<ConstructorCall> call;
    if (hasCall) {
        call.reset(new ConstructorCall(index));
        call->takeArguments(argumentTypes, expressions);
    }
    return makeTaking<VarDeclare>(name, declarationLine, variableType, call).release();
}

// Entered on "()" or on the first parameter's type inside '('. A prototype
// ends with ',' or ';' and leaves it current; a body, which must stand alone at
// the top level, answers true.
bool CodeParser::parseFunction(const String& name, int declarationLine, Variable* returnType,
                               Variable* firstType, bool listOpen, bool global) {
    OwnedList parameters(new OrderedCltn);
    if (firstType) parseParameters(firstType, *parameters);
    if (name.isEqual(String("main")) && parameters->size() > 0) error("main must have no arguments");
    std::unique_ptr<FuncDeclare> function =
        makeTaking<FuncDeclare>(name, declarationLine, returnType, parameters);
    next();
    if (!is(",") && !is(";") && !is("{")) error("Expected ',' ';' or '{'");
    if (is("{") && (listOpen || !global)) error("Unexpected '{'");
    if (!is("{")) {
        addFunction(function.get(), 0);
        function.release();
        return false;
    }
    parseFunctionBody(function.release());
    return true;
}

// parameters -> type ['&'] [NAME] { ',' type ['&'] [NAME] } ')'. The first type
// was found by a plain lookup, so it cannot be a template instance.
void CodeParser::parseParameters(Variable* firstType, OrderedCltn& parameters) {
    Variable* type = firstType;
    next();
    for (;;) {
        int isReference = 0;
        if (is("&")) {
            isReference = 1;
            next();
        }
        String name;
        if (tokenKind == ScanIdentifier) {
            name = token;
            next();
        }
        std::unique_ptr<VarDeclare> parameter(new VarDeclare(name, line, type, isReference));
        parameter->setPosition(0, int(parameters.size()));
        addOwned(parameters, parameter.release());
        if (is(")")) return;
        if (!is(",")) error("Expected ',' or ')'");
        next();
        if (tokenKind != ScanIdentifier) error("Type expected");
        type = parseType();
    }
}

// A definition after a prototype must match it; the prototype, which the
// earlier calls point to, takes the definition's parameters and its body.
void CodeParser::parseFunctionBody(FuncDeclare* definition) {
    std::unique_ptr<FuncDeclare> owned(definition);
    Object* found = functions.find(definition->getName());
    FuncDeclare* function = definition;
    if (found == nil) {
        addFunction(definition, 0);
        owned.release();
    } else {
        function = static_cast<FuncDeclare*>(found);
        checkPrototype(definition, function);
        function->swapArguments(definition);
        function->clearCode();
    }
    openBlock();
    for (int i = 0; i < function->argumentCount(); ++i) addLocalVar(function->getArgument(i));
    OrderedCltn code;
    ContentsGuard guard(code);
    bool returned = false;
    next();
    parseStatements(function->getType(), returned, false, code);
    if (function->getType() != Variable::voidType() && !returned) error("return expected");
    closeBlock();
    handOver(code, [&](Object* statement) { function->addStatement(static_cast<Statement*>(statement)); });
}

void CodeParser::checkPrototype(FuncDeclare* definition, FuncDeclare* prototype) {
    String both = definition->signature() + "\n" + prototype->signature();
    if (!definition->getType()->getType().isEqual(prototype->getType()->getType()))
        error(String("Function implementation has a different return type from prototype:\n") + both);
    if (definition->argumentCount() != prototype->argumentCount())
        error(String("Function implementation has a different number of arguments from prototype:\n") + both);
    for (int i = 0; i < definition->argumentCount(); ++i) {
        VarDeclare* mine = definition->getArgument(i);
        VarDeclare* theirs = prototype->getArgument(i);
        if (!mine->getType()->getType().isEqual(theirs->getType()->getType()) ||
            mine->isRef() != theirs->isRef())
            error(formatText("Function implementation has the %d argument with a different type respect the "
                             "prototype:\n",
                             i + 1) +
                  both);
    }
}
