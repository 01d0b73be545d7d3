// Expressions read from their infix text: numbers, the names of known variables, + - * with the
// operators' priorities, unary minus and brackets.
#ifndef ALGEBRA_EXPRTEXT_H
#define ALGEBRA_EXPRTEXT_H

#include <string>
#include <vector>

#include "algebra/exprs.h"

// Builds the postfix expression of text over the variables (copied into it); on a fault answers
// false with the message in error, and result is left empty.
bool parseExpression(const std::string& text, const std::vector<VariableS>& variables, ExpressionS& result,
                     std::string& error);

#endif
