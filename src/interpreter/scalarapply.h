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

}  // namespace scalarops

#endif
