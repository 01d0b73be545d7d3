// FuncDeclare, FuncCall and MethodCall: parameters, signatures, calls and their printed forms.
#include "interpreter/funcdecl.h"

#include <ostream>

#include "interpreter/cleanup.h"
#include "interpreter/expressn.h"
#include "interpreter/scalar.h"
#include "interpreter/vardecl.h"
#include "interpreter/variable.h"

DEFINE_CLASS(FuncDeclare, CodeElement, 1, 0)
DEFINE_CLASS(FuncCall, CodeElement, 1, 0)
DEFINE_CLASS(MethodCall, FuncCall, 1, 0)

// --- FuncDeclare ---

FuncDeclare::FuncDeclare() : returnType(0), arguments(0), returnTypeLevel(-1) {}

FuncDeclare::FuncDeclare(const String& name, int line, Variable* returnType, OrderedCltn* arguments)
    : CodeElement(name, line), returnType(returnType), arguments(arguments), returnTypeLevel(-1) {}

int FuncDeclare::findReturnLevel() const {
    returnTypeLevel = ScalarVar::rankOf(returnType);
    return returnTypeLevel;
}

FuncDeclare::~FuncDeclare() noexcept(false) {
    ListDeleter()(arguments);
    code.deleteContents();
}

Variable* FuncDeclare::getArgumentType(int i) const { return getArgument(i)->getType(); }

void FuncDeclare::swapArguments(FuncDeclare* other) {
    OrderedCltn* mine = arguments;
    arguments = other->arguments;
    other->arguments = mine;
    plan.forget();
    other->plan.forget();
}

String FuncDeclare::signature() const {
    String text = returnType->getType() + " ";
    text += getName().isEqual(String("(")) ? String("operator()") : getName();
    text += "(";
    for (int i = 0; i < argumentCount(); ++i) {
        text += getArgumentType(i)->getType();
        if (getArgument(i)->isRef()) text += "&&&";
        text += ", ";
    }
    if (argumentCount() > 0) text = text.left(text.size() - 2);
    return text + ")";
}

void FuncDeclare::printOn(std::ostream& os) const {
    Statement::printOn(os);
    if (arguments && arguments->size() > 0) {
        os << " Arguments [\n";
        printCode(os, *arguments);
        os << "\n";
    } else {
        os << " Arguments [ ]\n";
    }
    os << "Code [\n";
    printCode(os, code);
}

// --- FuncCall ---

FuncCall::FuncCall() : function(0), arguments(0) {}

FuncCall::FuncCall(FuncDeclare* function, OrderedCltn* arguments, int line)
    : CodeElement(function->getName(), line), function(function), arguments(arguments) {}

FuncCall::~FuncCall() noexcept(false) { ListDeleter()(arguments); }

void FuncCall::printShort(std::ostream& os) const { os << getName().asCharPointer() << "()"; }

void FuncCall::printOn(std::ostream& os) const {
    Statement::printOn(os);
    if (arguments && arguments->size() > 0) {
        os << " Arguments [\n";
        printCode(os, *arguments);
    } else {
        os << " Arguments = []";
    }
}
