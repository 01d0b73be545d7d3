// CodeParser: the parse entries, significant tokens and macros, symbol and type tables, and the error.
#include "interpreter/codepars.h"

#include <cstring>
#include <memory>
#include <sstream>

#include "interpreter/cleanup.h"
#include "interpreter/expressn.h"
#include "interpreter/funcdecl.h"
#include "interpreter/vardecl.h"
#include "interpreter/variable.h"
#include "interpreter/varref.h"
#include "quill/assoc.h"
#include "quill/collectn.h"
#include "quill/quillerr.h"
#include "quill/stackgrd.h"

DEFINE_CLASS(CodeParser, BaseParser, 1, 0)

CodeParser::CodeParser() : BaseParser(0, 1, 1), pendingKind(ScanEOF) {}

CodeParser::~CodeParser() noexcept(false) {
    reset();
    externalFunctions.deleteContents();
    scopes.deleteContents();
}

// --- Entries ---

String CodeParser::parseText(const String& text, int resetFirst) {
    std::unique_ptr<std::istream> stream(new std::istringstream(text.asCharPointer()));
    Scanner textScanner(stream.get());
    stream.release();
    scanner = &textScanner;
    String result;
    parse(result, resetFirst);
    scanner = 0;
    return result;
}

String CodeParser::parseFile(const String& fileName) {
    Scanner fileScanner(fileName);
    scanner = &fileScanner;
    String result;
    parse(result, 1);
    scanner = 0;
    return result;
}

void CodeParser::parse(String& result, int resetFirst) {
    result = "";
    if (resetFirst) reset();
    pendingKind = ScanEOF;
    line = 1;
    column = 1;
    try {
        if (resetFirst) addPredefinedGlobals();
        next();
        while (tokenKind != ScanEOF) {
            parseTopLevel();
            next();
        }
    } catch (TarnException* e) {
        result = e->message();
        delete e;
    }
    scopes.deleteContents();
}

void CodeParser::addPredefinedGlobals() {
    const OrderedCltn& predefined = Variable::predefinedVariables();
    for (unsigned i = 0; i < predefined.size(); ++i) {
        Variable* v = Variable::argumentAt(predefined, int(i));
        Variable* type = lookupType(v->getType(), 1);
        addGlobalVar(new VarDeclare(v->getName(), 0, type ? type : v, static_cast<ConstructorCall*>(0)));
    }
}

void CodeParser::reset() {
    globals.deleteContents();
    functions.deleteContents();
    deleteTypes();
}

// Typedefs refer to other prototypes and go first, so that each prototype is
// destroyed after the references to it. Nothing is allocated, so that a
// parser destroyed when memory has run out still frees its types.
void CodeParser::deleteTypes() {
    for (bool aliases : {true, false}) {
        Iterator it(types);
        while (Object* ob = it()) {
            Assoc* pair = static_cast<Assoc*>(ob);
            Object* value = pair->value();
            if (value == nil || value->isKindOf(class_VarReference) != aliases) continue;
            pair->value(*nil);
            delete value;
        }
    }
    Iterator it(types);
    while (Object* ob = it()) delete static_cast<Assoc*>(ob)->key();
    types.deleteContents();
}

// --- Significant tokens ---

bool CodeParser::is(const char* text) const { return std::strcmp(token.asCharPointer(), text) == 0; }

// Blanks and comments are dropped, and so is a line that starts with # in the first column.
void CodeParser::next() {
    if (pendingKind != ScanEOF) {
        token = pendingToken;
        tokenKind = pendingKind;
        pendingKind = ScanEOF;
        return;
    }
    for (;;) {
        nextToken();
        if (tokenKind == ScanSpace) continue;
        if (tokenKind != ScanOperator) return;
        if (is("#") && column == 2)
            parseMacro();
        else if (is("/*"))
            parseComment();
        else if (is("//"))
            skipLine();
        else
            return;
    }
}

void CodeParser::pushBack(const String& text, int kind) {
    pendingToken = token;
    pendingKind = tokenKind;
    token = text;
    tokenKind = kind;
}

// The whole line, continued by a backslash before its new-line. #include is
// accepted and includes nothing, and every other # line is skipped as well:
// a program is the text it is given.
void CodeParser::parseMacro() {
    for (;;) {
        nextToken();
        if (tokenKind == ScanEOF || (tokenKind == ScanSpace && is("\n"))) return;
        if (tokenKind == ScanOperator && is("\\")) {
            skipSpaces(1);
            if (tokenKind != ScanSpace) parseError("parseMacro");
        }
    }
}

void CodeParser::expectEnd() {
    if (!is(";") && !is("}")) error("';' or '}' expected");
}

// --- Tables ---

void CodeParser::openBlock() { addOwned(scopes, new OrderedCltn); }

void CodeParser::closeBlock() { delete scopes.removeLast(); }

OrderedCltn& CodeParser::innerBlock() const { return *static_cast<OrderedCltn*>(scopes.last()); }

void CodeParser::addGlobalVar(VarDeclare* declaration) {
    std::unique_ptr<VarDeclare> owned(declaration);
    if (globals.find(declaration->getName()) != nil)
        error(String("Global var ") + declaration->getName() + " already defined");
    declaration->setPosition(-1, int(globals.size()));
    addOwned(globals, owned.release());
}

void CodeParser::addLocalVar(VarDeclare* declaration) {
    OrderedCltn& block = innerBlock();
    if (declaration->getName().size() > 0 && block.find(declaration->getName()) != nil)
        error(String("Local var ") + declaration->getName() + " already defined in that block of code");
    declaration->setPosition(int(scopes.size()) - 1, int(block.size()));
    block.add(*declaration);
}

void CodeParser::addFunction(FuncDeclare* function, int external) {
    if (externalFunctions.find(function->getName()) != nil)
        error(String("Function ") + function->getName() + " already defined as external function");
    if (functions.find(function->getName()) != nil)
        error(String("Function ") + function->getName() + " already defined");
    (external ? externalFunctions : functions).add(*function);
}

void CodeParser::addExternalFunction(FuncDeclare* function) { addFunction(function, 1); }

bool CodeParser::isExternalFunction(const String& name) const { return externalFunctions.find(name) != nil; }

Statement* CodeParser::findSymbol(const String& name, int silent) {
    for (int i = int(scopes.size()) - 1; i >= 0; --i) {
        Object* found = static_cast<OrderedCltn*>(scopes.at(i))->find(name);
        if (found != nil) return static_cast<Statement*>(found);
    }
    for (const OrderedCltn* table : {&globals, &functions, &externalFunctions}) {
        Object* found = table->find(name);
        if (found != nil) return static_cast<Statement*>(found);
    }
    if (!silent) error("Expected variable or function name");
    return 0;
}

Variable* CodeParser::lookupType(const String& name, int silent) {
    Variable* type = Variable::findType(name);
    if (!type) {
        Object* pair = types.assocAt(name);
        if (pair != nil)
            type = Variable::dereference(static_cast<Variable*>(static_cast<Assoc*>(pair)->value()));
    }
    if (!type && !silent) error("Type expected");
    return type;
}

FuncDeclare* CodeParser::getMainFunction() const {
    Object* found = functions.find(String("main"));
    return found == nil ? 0 : static_cast<FuncDeclare*>(found);
}

FuncDeclare* CodeParser::findMain(int silent) {
    FuncDeclare* main = getMainFunction();
    if (!main && !silent) error("main function not found");
    return main;
}

FuncDeclare* CodeParser::findFunction(const String& name, const OrderedCltn& arguments, int silent) {
    for (unsigned i = 0; i < functions.size(); ++i) {
        FuncDeclare* f = static_cast<FuncDeclare*>(functions.at(int(i)));
        if (!f->getName().isEqual(name) || f->argumentCount() != int(arguments.size())) continue;
        bool accepted = true;
        for (int k = 0; accepted && k < f->argumentCount(); ++k)
            accepted = f->getArgument(k)->acceptsValue(Variable::argumentAt(arguments, k));
        if (accepted) return f;
    }
    if (!silent) error("Expected function name");
    return 0;
}

void CodeParser::updateGlobal(Variable* variable) {
    Variable* type = lookupType(variable->getType(), 0);
    int index = globals.indexOf(variable->getName());
    if (index < 0) {
        addGlobalVar(new VarDeclare(variable->getName(), 0, type, static_cast<ConstructorCall*>(0)));
        return;
    }
    // The declaration takes the new type in place: code already parsed refers to it.
    static_cast<VarDeclare*>(globals.at(index))->setType(type);
}

// Enters type under name; the table owns both from then on. When the table
// cannot take them they go at once, unless it holds them already, as when it
// failed to grow after placing them.
void CodeParser::addType(const String& name, Variable* type) {
    std::unique_ptr<Variable> owned(type);
    std::unique_ptr<String> key(new String(name));
    std::unique_ptr<Assoc> pair(new Assoc(*key, *type));
    auto handOff = [&] {
        pair.release();
        key.release();
        owned.release();
    };
    try {
        types.add(*pair);
    } catch (...) {
        if (types.assocAt(name) == pair.get()) handOff();
        throw;
    }
    handOff();
}

// --- Errors and checks ---

void CodeParser::error(const String& message) {
    String full =
        message + formatText(" at line %d on token ", int(line)) + token + " " + Scanner::kindName(tokenKind);
    setError(GENERICERR, SEV_ERROR, "PARSE ERROR", full.asCharPointer(), "", "");
}

void CodeParser::constructorError(const String& name, const OrderedCltn& types) {
    error(String("Unknown constructor call for object ") + name + " from args " + Variable::typeList(types));
}

// A condition must be assignable to char, the truth type.
void CodeParser::checkCondition(Expression* test) {
    OrderedCltn types;
    ContentsGuard guard(types);
    Variable* type = test->toPostfix();
    if (type) addOwned(types, type);
    Variable* truth = lookupType("char", 0);
    if (truth->constructorIndex(types) != 1) constructorError(truth->getName(), types);
}

int CodeParser::evalConstInt(Expression* expression, int silent) {
    std::unique_ptr<Variable> value(expression->evalConst());
    if (!value) {
        if (!silent) error("Constant expression expected");
        return 0;
    }
    return Variable::intValue(value.get());
}

// The executer needs room for the same nesting, so parsing stops well before
// the stack runs out.
void CodeParser::checkNesting() {
    if (stackRemaining() < 2 * STACK_RESERVE) error("Nesting too deep");
}
