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

namespace {

std::int32_t wrap(long long x) { return std::int32_t(static_cast<std::uint32_t>(x)); }

// An int divided by zero ends the run as the machine's trap would, with the same
// message, but without relying on the trap, which the language leaves undefined.
void checkDivisor(std::int32_t b) {
    if (b == 0) setError(SYSERR, SEV_FATAL, "System Signal ", signalName(SIGFPE), "");
}

std::int32_t integerOperation(int op, std::int32_t a, std::int32_t b) {
    switch (op) {
        case OP_ADD:
            return wrap((long long)a + b);
        case OP_SUB:
            return wrap((long long)a - b);
        case OP_MUL:
            return wrap((long long)a * b);
        case OP_DIV:  // the quotient of INT_MIN by -1 wraps
            checkDivisor(b);
            return wrap((long long)a / b);
        case OP_MOD:
            checkDivisor(b);
            return std::int32_t((long long)a % b);
        case OP_BIT_OR:
            return a | b;
        case OP_BIT_AND:
            return a & b;
        case OP_XOR_ASSIGN:
            return a ^ b;
        case OP_SHR:
            return a >> (b & 31);
        case OP_SHL:
            return wrap((long long)(static_cast<std::uint32_t>(a) << (b & 31)));
        case OP_POWER:
            return ScalarVar::truncate(std::pow(double(a), double(b)));
        default:
            return 0;
    }
}

double floatOperation(int op, double a, double b) {
    switch (op) {
        case OP_ADD:
            return a + b;
        case OP_SUB:
            return a - b;
        case OP_MUL:
            return a * b;
        case OP_DIV:
            return a / b;
        case OP_POWER:
            return std::pow(a, b);
        default:
            return 0.0;
    }
}

bool truthOperation(int op, double a, double b) {
    switch (op) {
        case OP_EQ:
            return a == b;
        case OP_NE:
            return a != b;
        case OP_GT:
            return a > b;
        case OP_LT:
            return a < b;
        case OP_GE:
            return a >= b;
        case OP_LE:
            return a <= b;
        case OP_OR:
            return a != 0 || b != 0;
        default:  // OP_AND
            return a != 0 && b != 0;
    }
}

}  // namespace

std::int32_t ScalarVar::truncate(double x) {
    if (x > -2147483649.0 && x < 2147483648.0) return std::int32_t(x);
    if (!std::isfinite(x)) return 0;
    return wrap((long long)std::fmod(std::trunc(x), 4294967296.0));
}

double ScalarVar::compute(int op, double a, double b, bool integer) {
    if (Operator::isLogical(op)) return truthOperation(op, a, b) ? 1.0 : 0.0;
    if (integer) return integerOperation(op, truncate(a), truncate(b));
    return floatOperation(op, a, b);
}

bool ScalarVar::toOwnType(const Variable* v) const {
    return v->isA()->base() == &class_ScalarVar && v->getLevel() <= getLevel();
}

// What op gives: the integers know every operator but the plain shifts, float
// knows the assignments up to /=, the arithmetic but %, the power, the comparisons and the logical ones.
ScalarVar::ResultKind ScalarVar::resultKind(int op) const {
    if (Operator::isLogical(op) && !Operator::isUnary(op)) return TRUTH_RESULT;
    if (isInteger()) {
        if (Operator::isAssign(op) || Operator::isArithmetic(op)) return OWN_RESULT;
        if (op == OP_BIT_OR || op == OP_BIT_AND || op == OP_POWER) return INT_RESULT;
        return NO_RESULT;
    }
    if (Operator::isArithmeticAssign(op) || op == OP_POWER || (Operator::isArithmetic(op) && op != OP_MOD))
        return OWN_RESULT;
    return NO_RESULT;
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

Variable* ScalarVar::makeResult(ResultKind kind, double x) const {
    if (kind == TRUTH_RESULT) return new CharVar(std::int8_t(truncate(x)));
    if (kind == INT_RESULT) return new IntVar(truncate(x));
    return makeValue(x);
}

// The prototype of a result holds -1 (a truth value 0): a condition made of
// arithmetic is thus no char, since -1 does not convert to one.
Variable* ScalarVar::getOperationType(Variable* other, int op, int swapped) {
    if (!accepts(other, op)) {
        if (!Operator::isAssign(op) && !swapped) return other->getOperationType(this, op, 1);
        operationError(other, op, swapped);
    }
    ResultKind kind = resultKind(op);
    if (kind == NO_RESULT) operationError(other, op, swapped);
    return makeResult(kind, kind == TRUTH_RESULT ? 0.0 : -1.0);
}

Variable* ScalarVar::doOperation(Variable* other, int op, int swapped) {
    if (!accepts(other, op)) {
        if (!Operator::isAssign(op) && !swapped) return other->doOperation(this, op, 1);
        operationError(other, op, swapped);
    }
    ResultKind kind = resultKind(op);
    if (kind == NO_RESULT) operationError(other, op, swapped);
    double r = operandValue(other);
    if (Operator::isAssign(op)) {
        if (op == OP_ASSIGN)
            setNumber(r);
        else
            setNumber(compute(Operator::assignedOperation(op), number(), r, isInteger()));
        return this;
    }
    double a = swapped ? r : number();
    double b = swapped ? number() : r;
    return makeResult(kind, compute(op, a, b, kind == INT_RESULT || isInteger()));
}

Variable* ScalarVar::getUnaryOperationType(int op) {
    if (op == OP_NOT) return new CharVar(std::int8_t(0));
    if (op == OP_COMPLEMENT && !isInteger()) unaryOperationError(op);
    if (op >= OP_COMPLEMENT && op <= OP_POST_DEC) return makeValue(-1.0);
    unaryOperationError(op);
}

// The increments change the variable; every operator answers a new value.
Variable* ScalarVar::doUnaryOperation(int op) {
    double v = number();
    switch (op) {
        case OP_NOT:
            return new CharVar(std::int8_t(v == 0.0 ? 1 : 0));
        case OP_COMPLEMENT:
            if (!isInteger()) unaryOperationError(op);
            return makeValue(~truncate(v));
        case OP_PLUS:
            return makeValue(v);
        case OP_MINUS:
            return makeValue(isInteger() ? double(wrap(-(long long)v)) : -v);
        case OP_PRE_INC:
        case OP_POST_INC:
            setNumber(compute(OP_ADD, v, 1.0, isInteger()));
            return makeValue(op == OP_PRE_INC ? number() : v);
        case OP_PRE_DEC:
        case OP_POST_DEC:
            setNumber(compute(OP_SUB, v, 1.0, isInteger()));
            return makeValue(op == OP_PRE_DEC ? number() : v);
        default:
            unaryOperationError(op);
    }
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
