// WindowVar: the source of a window and the operations it shares with a copy of its contents.
#include "interpreter/winvar.h"

#include <memory>

#include "interpreter/algvar.h"
#include "interpreter/operator.h"
#include "quill/orderedc.h"
#include "quill/quillerr.h"

DEFINE_ABSTRACT_CLASS(WindowVar, Variable, 1, 0)

WindowVar::WindowVar(AlgebraVar* shown, bool owned) : source(shown), ownsSource(owned) {
    if (owned || !shown->isTemporary()) return;
    source = static_cast<AlgebraVar*>(shown->clone());
    ownsSource = 1;
}

WindowVar::~WindowVar() noexcept(false) { release(); }

void WindowVar::release() {
    if (ownsSource) delete source;
    ownsSource = 0;
}

void WindowVar::deepenShallowCopy() {
    Variable::deepenShallowCopy();
    if (ownsSource) source = static_cast<AlgebraVar*>(source->clone());
}

void WindowVar::ownSource(AlgebraVar* fresh) {
    release();
    source = fresh;
    ownsSource = 1;
}

void WindowVar::takeSource(const WindowVar& other) {
    release();
    source = other.ownsSource ? static_cast<AlgebraVar*>(other.source->clone()) : other.source;
    ownsSource = other.ownsSource;
}

// The variable of a window whose variable is gone may not be reached.
AlgebraVar& WindowVar::liveSource(const Class& expected, const char* lostMessage) const {
    bool live = ownsSource || (liveVariables().indexOfSame(*source) >= 0 && source->isA() == &expected);
    if (!live) typeError(lostMessage);
    return *source;
}

Variable* WindowVar::getOperationType(Variable* other, int op, int swapped) {
    if (!swapped && writes(other, op)) return this;
    if (Operator::isAssign(op)) operationError(other, op, swapped);
    return findType(valueType())->getOperationType(other, op, swapped);
}

Variable* WindowVar::doOperation(Variable* other, int op, int swapped) {
    if (!swapped && writes(other, op)) {
        try {
            write(other, op);
        } catch (TarnException* e) {
            AlgebraVar::numericFault(e);
        }
        return this;
    }
    if (Operator::isAssign(op)) operationError(other, op, swapped);
    std::unique_ptr<Variable> value(valueCopy());
    return value->doOperation(other, op, swapped);
}

Variable* WindowVar::getUnaryOperationType(int op) {
    return findType(valueType())->getUnaryOperationType(op);
}

Variable* WindowVar::doUnaryOperation(int op) {
    std::unique_ptr<Variable> value(valueCopy());
    return value->doUnaryOperation(op);
}

int WindowVar::constructorIndex(const OrderedCltn& types) const {
    if (types.size() == 0) return 0;
    return types.size() == 1 && dereference(argumentAt(types, 0))->isA() == isA() ? 1 : -1;
}
