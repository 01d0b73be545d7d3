// CodeElement and its simpler kinds: expressions, literals, constructor arguments, lists, returns, variable
// uses.
#include "interpreter/codeelem.h"

#include <memory>
#include <ostream>

#include "interpreter/cleanup.h"
#include "interpreter/expressn.h"
#include "interpreter/vardecl.h"
#include "interpreter/variable.h"
#include "interpreter/varref.h"
#include "quill/assoc.h"
#include "quill/quillerr.h"

DEFINE_CLASS(CodeElement, Statement, 1, 0)
DEFINE_CLASS(ExprElement, CodeElement, 1, 0)
DEFINE_CLASS(ConstDeclare, CodeElement, 1, 0)
DEFINE_CLASS(ConstructorCall, CodeElement, 1, 0)
DEFINE_CLASS(ListOfElement, CodeElement, 1, 0)
DEFINE_CLASS(ReturnStatement, CodeElement, 1, 0)
DEFINE_CLASS(VarDeclReference, CodeElement, 1, 0)

// --- CodeElement ---

Variable* CodeElement::getType() const {
    derivedClassResponsibility("getType");
    return 0;
}

Variable* CodeElement::getVariable() const {
    std::unique_ptr<Variable> copy(getType()->clone());
    copy->setName(getName());
    return copy.release();
}

void CodeElement::printShort(std::ostream& os) const { os << getName().asCharPointer(); }

// --- ExprElement ---

ExprElement::ExprElement() : type(0), expression(0) {}

ExprElement::ExprElement(const String& name, int line, Variable* type, Expression* expression)
    : CodeElement(name, line), type(type), expression(expression) {}

ExprElement::~ExprElement() noexcept(false) {
    delete type;
    delete expression;
}

void ExprElement::printOn(std::ostream& os) const {
    Statement::printOn(os);
    os << " " << *expression << " of type ";
    if (type)
        os << *type;
    else
        os << "none";
}

// --- ConstDeclare ---

ConstDeclare::ConstDeclare() : type(0), value(0) {}

ConstDeclare::ConstDeclare(const String& name, int line, Variable* type, Variable* value)
    : CodeElement(name, line), type(type), value(value) {
    value->setName("Constant");
}

ConstDeclare::~ConstDeclare() noexcept(false) { delete value; }

Variable* ConstDeclare::getVariable() const { return value->clone(); }

void ConstDeclare::printOn(std::ostream& os) const {
    Statement::printOn(os);
    os << " Value " << *value;
}

// --- ConstructorCall ---

ConstructorCall::ConstructorCall(int index) : CodeElement("ConstructorCall", 0), index(index) {}

ConstructorCall::~ConstructorCall() noexcept(false) {
    for (unsigned i = 0; i < arguments.size(); ++i) {
        Assoc* pair = static_cast<Assoc*>(arguments.at(int(i)));
        delete pair->key();
        delete pair->value();
    }
    arguments.deleteContents();
}

void ConstructorCall::addArgument(Variable* type, Expression* expression) {
    addOwned(arguments, new Assoc(*type, *expression));
}

void ConstructorCall::takeArguments(OrderedCltn& types, OrderedCltn& expressions) {
    handOver(expressions, [&](Object* expression) {
        unsigned i = size();
        addArgument(Variable::argumentAt(types, int(i)), static_cast<Expression*>(expression));
        types[int(i)] = nil;
    });
    types.removeAll();
}

Expression* ConstructorCall::getExpression(int i) const {
    return static_cast<Expression*>(static_cast<Assoc*>(arguments.at(i))->value());
}

Variable* ConstructorCall::getArgumentType(int i) const {
    return static_cast<Variable*>(static_cast<Assoc*>(arguments.at(i))->key());
}

Variable* ConstructorCall::convertArgument(int i, Variable* value, std::int32_t& errorFlag) const {
    Variable* declared = getArgumentType(i);
    if (declared->isKindOf(class_VarReference) || value->getType().isEqual(declared->getType())) return value;
    std::unique_ptr<Variable> owned(value);
    Variable* converted = declared->clone();
    OrderedCltn source(1);
    source.add(*value);
    try {
        converted->execConstructor(1, source, errorFlag);
    } catch (...) {
        delete converted;
        throw;
    }
    return converted;
}

void ConstructorCall::getValues(OrderedCltn& values, std::int32_t& errorFlag) const {
    for (unsigned i = 0; i < arguments.size(); ++i) {
        Variable* value = getExpression(int(i))->evalConst();
        QASSERT(value != 0);
        values.add(*convertArgument(int(i), value, errorFlag));
    }
}

void ConstructorCall::printOn(std::ostream& os) const {
    Statement::printOn(os);
    os << " " << index << " Arguments [\n";
    OrderedCltn expressions;
    for (unsigned i = 0; i < arguments.size(); ++i) expressions.add(*getExpression(int(i)));
    printCode(os, expressions);
}

// --- ListOfElement ---

ListOfElement::ListOfElement(int line) : CodeElement("ListOfCode", line) {}

ListOfElement::~ListOfElement() noexcept(false) { code.deleteContents(); }

void ListOfElement::printOn(std::ostream& os) const {
    Statement::printOn(os);
    os << " Code [\n";
    printCode(os, code);
}

// --- ReturnStatement ---

ReturnStatement::ReturnStatement() : type(0), value(0) {}

ReturnStatement::ReturnStatement(int line, Variable* type, Expression* value)
    : CodeElement("Return", line), type(type), value(value) {}

ReturnStatement::~ReturnStatement() noexcept(false) { delete value; }

Expression* ReturnStatement::getValue(int check) const {
    if (check) QASSERT(value != 0);
    return value;
}

void ReturnStatement::printOn(std::ostream& os) const {
    Statement::printOn(os);
    if (value) os << " " << *value;
}

// --- VarDeclReference ---

VarDeclReference::VarDeclReference() : declaration(0) {}

VarDeclReference::VarDeclReference(VarDeclare* declaration, int line)
    : CodeElement(declaration->getName(), line), declaration(declaration) {}

Variable* VarDeclReference::getType() const { return declaration->getType(); }

int VarDeclReference::getLevel() const { return declaration->getLevel(); }

int VarDeclReference::getIndex() const { return declaration->getIndex(); }

void VarDeclReference::printOn(std::ostream& os) const {
    Statement::printOn(os);
    os << " Referred to " << *declaration;
}
