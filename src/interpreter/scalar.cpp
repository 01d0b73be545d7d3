// ScalarVar: the operator tables, arithmetic, unary operators and constructors shared by char, int and float.
#include "interpreter/scalar.h"

#include <cmath>
#include <csignal>
#include <memory>
#include <ostream>

#include "interpreter/charvar.h"
#include "interpreter/floatvar.h"
#include "interpreter/intvar.h"
#include "interpreter/operator.h"
#include "quill/quillerr.h"
#include "quill/quillsig.h"

DEFINE_ABSTRACT_CLASS(ScalarVar, Variable, 1, 0)

void scalarops::divisionByZero() { setError(SYSERR, SEV_FATAL, "System Signal ", signalName(SIGFPE), ""); }

bool ScalarVar::toOwnType(const Variable* v) const {
    return v->isA()->base() == &class_ScalarVar && v->getLevel() <= getLevel();
}

// What op gives: the integers know every operator but the plain shifts, float
// knows the assignments up to /=, the arithmetic but %, the power, the comparisons and the logical ones.
ScalarVar::ResultKind ScalarVar::resultKind(int op, bool integer) {
    if (Operator::isLogical(op) && !Operator::isUnary(op)) return TRUTH_RESULT;
    if (integer) {
        if (Operator::isAssign(op) || Operator::isArithmetic(op)) return OWN_RESULT;
        if (op == OP_BIT_OR || op == OP_BIT_AND || op == OP_POWER) return INT_RESULT;
        return NO_RESULT;
    }
    if (Operator::isArithmeticAssign(op) || op == OP_POWER || (Operator::isArithmetic(op) && op != OP_MOD))
        return OWN_RESULT;
    return NO_RESULT;
}

int ScalarVar::resultLevel(ResultKind kind, int ownLevel) {
    return kind == TRUTH_RESULT ? CHAR_LEVEL : kind == INT_RESULT ? INT_LEVEL : ownLevel;
}

bool ScalarVar::accepts(const Variable* other, int op) const {
    return toOwnType(other) || (Operator::isAssign(op) && other->canConvertTo(this));
}

double ScalarVar::operandValue(const Variable* other) const {
    if (toOwnType(other)) return static_cast<const ScalarVar*>(other)->number();
    std::unique_ptr<Variable> converted(other->convertTo(this));
    if (!converted->isKindOf(class_ScalarVar)) other->Variable::convertTo(this);
    return static_cast<ScalarVar*>(converted.get())->number();
}

ScalarVar* ScalarVar::scalarOf(Variable* v) {
    Variable* d = dereference(v);
    return d && d->isA()->base() == &class_ScalarVar ? static_cast<ScalarVar*>(d) : 0;
}

ScalarVar* ScalarVar::makeOfLevel(int level, double x) {
    if (level == FLOAT_LEVEL) return new FloatVar(x);
    if (level == INT_LEVEL) return new IntVar(truncate(x));
    return new CharVar(std::int8_t(truncate(x)));
}

bool ScalarVar::operate(int op, int ownLevel, double a, double b, ScalarValue& result) {
    bool integer = ownLevel != FLOAT_LEVEL;
    ResultKind kind = resultKind(op, integer);
    if (kind == NO_RESULT) return false;
    result.level = resultLevel(kind, ownLevel);
    result.value = fitTo(result.level, compute(op, a, b, kind == INT_RESULT || integer));
    return true;
}

bool ScalarVar::assigned(int op, int level, double current, double r, double& stored) {
    bool integer = level != FLOAT_LEVEL;
    if (resultKind(op, integer) == NO_RESULT) return false;
    stored =
        fitTo(level, op == OP_ASSIGN ? r : compute(Operator::assignedOperation(op), current, r, integer));
    return true;
}

// The prototype of a result holds -1 (a truth value 0): a condition made of
// arithmetic is thus no char, since -1 does not convert to one.
Variable* ScalarVar::getOperationType(Variable* other, int op, int swapped) {
    if (!accepts(other, op)) {
        if (!Operator::isAssign(op) && !swapped) return other->getOperationType(this, op, 1);
        operationError(other, op, swapped);
    }
    ResultKind kind = resultKind(op, isInteger());
    if (kind == NO_RESULT) operationError(other, op, swapped);
    return makeOfLevel(resultLevel(kind, getLevel()), kind == TRUTH_RESULT ? 0.0 : -1.0);
}

Variable* ScalarVar::doOperation(Variable* other, int op, int swapped) {
    if (!accepts(other, op)) {
        if (!Operator::isAssign(op) && !swapped) return other->doOperation(this, op, 1);
        operationError(other, op, swapped);
    }
    if (resultKind(op, isInteger()) == NO_RESULT) operationError(other, op, swapped);
    double r = operandValue(other);
    if (Operator::isAssign(op)) {
        double stored = 0.0;
        assigned(op, getLevel(), number(), r, stored);
        setNumber(stored);
        return this;
    }
    ScalarValue result{0, 0.0};
    operate(op, getLevel(), swapped ? r : number(), swapped ? number() : r, result);
    return makeOfLevel(result.level, result.value);
}

Variable* ScalarVar::getUnaryOperationType(int op) {
    if (op == OP_NOT) return new CharVar(std::int8_t(0));
    if (op == OP_COMPLEMENT && !isInteger()) unaryOperationError(op);
    if (op >= OP_COMPLEMENT && op <= OP_POST_DEC) return makeOfLevel(getLevel(), -1.0);
    unaryOperationError(op);
}

bool ScalarVar::unaryOperation(int op, ScalarValue v, ScalarValue& result, bool& stores, double& stored) {
    bool integer = v.level != FLOAT_LEVEL;
    double x = v.value;
    stores = false;
    result.level = v.level;
    switch (op) {
        case OP_NOT:
            result.level = CHAR_LEVEL;
            x = x == 0.0 ? 1.0 : 0.0;
            break;
        case OP_COMPLEMENT:
            if (!integer) return false;
            x = ~truncate(x);
            break;
        case OP_PLUS:
            break;
        case OP_MINUS:
            x = integer ? double(scalarops::wrap(-(long long)x)) : -x;
            break;
        case OP_PRE_INC:
        case OP_POST_INC:
        case OP_PRE_DEC:
        case OP_POST_DEC:
            stores = true;
            stored = fitTo(v.level,
                           compute(op == OP_PRE_INC || op == OP_POST_INC ? OP_ADD : OP_SUB, x, 1.0, integer));
            if (op == OP_PRE_INC || op == OP_PRE_DEC) x = stored;
            break;
        default:
            return false;
    }
    result.value = fitTo(result.level, x);
    return true;
}

// The increments change the variable; every operator answers a new value.
Variable* ScalarVar::doUnaryOperation(int op) {
    ScalarValue result;
    bool stores;
    double stored;
    if (!unaryOperation(op, {getLevel(), number()}, result, stores, stored)) unaryOperationError(op);
    if (stores) setNumber(stored);
    return makeOfLevel(result.level, result.value);
}

bool ScalarVar::acceptsInConstructor(const Variable* argument) const {
    return toOwnType(argument) || argument->canConvertTo(this);
}

int ScalarVar::constructorIndex(const OrderedCltn& types) const {
    if (types.size() == 0) return 0;
    if (types.size() == 1 && acceptsInConstructor(dereference(argumentAt(types, 0)))) return 1;
    return -1;
}

void ScalarVar::execConstructor(int index, const OrderedCltn& arguments, std::int32_t& errorFlag) {
    if (index == 0) {
        setNumber(0.0);
        return;
    }
    if (index != 1) {
        Variable::execConstructor(index, arguments, errorFlag);
        return;
    }
    Variable* argument = dereference(argumentAt(arguments, 0));
    if (toOwnType(argument) || argument->isKindOf(class_FloatVar))
        setNumber(static_cast<ScalarVar*>(argument)->number());
    else
        setNumber(operandValue(argument));
}

void ScalarVar::printOn(std::ostream& os) const {
    Variable::printOn(os);
    os << " Value " << getValueString().asCharPointer();
}
