// The binary operations of the scalar classes, one function per operator and rank of the result.
#include "interpreter/scalarapply.h"

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

Apply truthOf(int op) {
    switch (op) {
        case OP_EQ:
            return &truthApply<OP_EQ>;
        case OP_NE:
            return &truthApply<OP_NE>;
        case OP_GT:
            return &truthApply<OP_GT>;
        case OP_LT:
            return &truthApply<OP_LT>;
        case OP_GE:
            return &truthApply<OP_GE>;
        case OP_LE:
            return &truthApply<OP_LE>;
        case OP_OR:
            return &truthApply<OP_OR>;
        case OP_AND:
            return &truthApply<OP_AND>;
        default:
            return 0;
    }
}

Apply floatOf(int op) {
    switch (op) {
        case OP_ADD:
            return &floatApply<OP_ADD>;
        case OP_SUB:
            return &floatApply<OP_SUB>;
        case OP_MUL:
            return &floatApply<OP_MUL>;
        case OP_DIV:
            return &floatApply<OP_DIV>;
        case OP_POWER:
            return &floatApply<OP_POWER>;
        default:
            return 0;
    }
}

Apply integerOf(int op, int level) {
    switch (op) {
        case OP_ADD:
            return integerOf<OP_ADD>(level);
        case OP_SUB:
            return integerOf<OP_SUB>(level);
        case OP_MUL:
            return integerOf<OP_MUL>(level);
        case OP_DIV:
            return integerOf<OP_DIV>(level);
        case OP_MOD:
            return integerOf<OP_MOD>(level);
        case OP_BIT_OR:
            return integerOf<OP_BIT_OR>(level);
        case OP_BIT_AND:
            return integerOf<OP_BIT_AND>(level);
        case OP_XOR_ASSIGN:
            return integerOf<OP_XOR_ASSIGN>(level);
        case OP_SHR:
            return integerOf<OP_SHR>(level);
        case OP_SHL:
            return integerOf<OP_SHL>(level);
        case OP_POWER:
            return integerOf<OP_POWER>(level);
        default:
            return 0;
    }
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
