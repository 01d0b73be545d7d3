// The binary operations of the scalar classes, one function per operator and rank of the result.
#include "interpreter/scalarapply.h"

#include <type_traits>

#include "interpreter/scalar.h"

namespace scalarops {

namespace {

// The operands of an integer operation are exact integers of 32 bits at most.
template <int OP, int LEVEL>
double integerApply(double a, double b) {
    std::int32_t n = integerOperation(OP, std::int32_t(a), std::int32_t(b));
    return LEVEL == ScalarVar::CHAR_LEVEL ? double(std::int8_t(n)) : double(n);
}

template <int OP>
double floatApply(double a, double b) {
    return floatOperation(OP, a, b);
}

template <int OP>
double truthApply(double a, double b) {
    return truthOperation(OP, a, b) ? 1.0 : 0.0;
}

template <int LEVEL>
double assignApply(double, double b) {
    return ScalarVar::fitTo(LEVEL, b);
}

template <int OP>
Apply integerOf(int level) {
    return level == ScalarVar::CHAR_LEVEL ? &integerApply<OP, ScalarVar::CHAR_LEVEL>
                                          : &integerApply<OP, ScalarVar::INT_LEVEL>;
}

// The function that make gives for op when op is one of OPS, else null; make takes the operator as a
// compile-time constant.
template <int... OPS, typename Make>
Apply among(int op, Make make) {
    Apply found = 0;
    ((found = op == OPS ? make(std::integral_constant<int, OPS>()) : found), ...);
    return found;
}

Apply truthOf(int op) {
    return among<OP_EQ, OP_NE, OP_GT, OP_LT, OP_GE, OP_LE, OP_OR, OP_AND>(
        op, [](auto code) -> Apply { return &truthApply<decltype(code)::value>; });
}

Apply floatOf(int op) {
    return among<OP_ADD, OP_SUB, OP_MUL, OP_DIV, OP_POWER>(
        op, [](auto code) -> Apply { return &floatApply<decltype(code)::value>; });
}

Apply integerOf(int op, int level) {
    return among<OP_ADD, OP_SUB, OP_MUL, OP_DIV, OP_MOD, OP_BIT_OR, OP_BIT_AND, OP_XOR_ASSIGN, OP_SHR, OP_SHL,
                 OP_POWER>(op, [level](auto code) { return integerOf<decltype(code)::value>(level); });
}

}  // namespace

Apply applyOf(int op, int level, bool integer) {
    if (Operator::isLogical(op)) return truthOf(op);
    return integer ? integerOf(op, level) : floatOf(op);
}

Apply assignmentOf(int op, int level) {
    double stored;
    if (!ScalarVar::assigned(op, level, 1.0, 1.0, stored)) return 0;
    if (op != OP_ASSIGN)
        return applyOf(Operator::assignedOperation(op), level, level != ScalarVar::FLOAT_LEVEL);
    if (level == ScalarVar::CHAR_LEVEL) return &assignApply<ScalarVar::CHAR_LEVEL>;
    return level == ScalarVar::INT_LEVEL ? &assignApply<ScalarVar::INT_LEVEL>
                                         : &assignApply<ScalarVar::FLOAT_LEVEL>;
}

BinaryOperations binaryOperations(int op) {
    BinaryOperations operations;
    for (int k = 0; k < 3; ++k) {
        int own = ScalarVar::CHAR_LEVEL + k;
        ScalarValue result{own, 0.0};
        bool known = Operator::isAssign(op) || ScalarVar::operate(op, own, 1.0, 1.0, result);
        operations.level[k] = result.level;
        operations.apply[k] = !known ? 0
                              : Operator::isAssign(op)
                                  ? assignmentOf(op, own)
                                  : applyOf(op, result.level, own != ScalarVar::FLOAT_LEVEL);
    }
    return operations;
}

}  // namespace scalarops
