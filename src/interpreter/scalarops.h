// The arithmetic of char, int and float on plain numbers, inline for the evaluator's fast paths.
#ifndef INTERPRETER_SCALAROPS_H
#define INTERPRETER_SCALAROPS_H

#include <cmath>
#include <cstdint>

#include "interpreter/operator.h"

namespace scalarops {

inline std::int32_t wrap(long long x) { return std::int32_t(static_cast<std::uint32_t>(x)); }

// An int divided by zero ends the run as the machine's trap would, with the same
// message, but without relying on the trap, which the language leaves undefined.
void divisionByZero();

inline void checkDivisor(std::int32_t b) {
    if (b == 0) divisionByZero();
}

inline std::int32_t truncate(double x);

inline std::int32_t integerOperation(int op, std::int32_t a, std::int32_t b) {
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
            return truncate(std::pow(double(a), double(b)));
        default:
            return 0;
    }
}

inline double floatOperation(int op, double a, double b) {
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

inline bool truthOperation(int op, double a, double b) {
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

// Toward zero into 32 bits, the high bits dropped; NaN and the infinities give 0.
inline std::int32_t truncate(double x) {
    if (x > -2147483649.0 && x < 2147483648.0) return std::int32_t(x);
    if (!std::isfinite(x)) return 0;
    return wrap((long long)std::fmod(std::trunc(x), 4294967296.0));
}

// double arithmetic as C does it, or int32 with wrap-around; a comparison or
// logical operator gives 0 or 1, ^ the power truncated for the integers, ^= the
// exclusive or.
inline double compute(int op, double a, double b, bool integer) {
    if (Operator::isLogical(op)) return truthOperation(op, a, b) ? 1.0 : 0.0;
    if (integer) return integerOperation(op, truncate(a), truncate(b));
    return floatOperation(op, a, b);
}

}  // namespace scalarops

#endif
