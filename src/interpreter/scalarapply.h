// The binary operations of the scalar classes as plain functions, each chosen once for its operator and rank.
#ifndef INTERPRETER_SCALARAPPLY_H
#define INTERPRETER_SCALARAPPLY_H

namespace scalarops {

// a op b for operands already in their classes' form, the result in the form of the class of
// rank level: what ScalarVar::operate computes for that operator and rank.
typedef double (*Apply)(double a, double b);

// The function of op computed as integers (char and int operands) or as floats, giving a value of
// rank level; null for an operator that is not among them.
Apply applyOf(int op, int level, bool integer);

// The value that the assignment op stores in a variable of rank level, from its value a and the
// right value b, of a rank not above level; null when that class has no such assignment.
Apply assignmentOf(int op, int level);

// What the scalar classes do with a binary operator, for each rank of the class that works it out
// (char, int, float): the function, null when that class has no such operator, and the result's
// rank. An assignment is worked out by the target's class.
struct BinaryOperations {
    Apply apply[3];
    int level[3];
};
BinaryOperations binaryOperations(int op);

}  // namespace scalarops

#endif
