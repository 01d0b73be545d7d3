// The short print of a number on the console and in labels.
#ifndef ALGEBRA_SHORTNUM_H
#define ALGEBRA_SHORTNUM_H

#include <string>

// "%6.<precision>g" without its padding, the exponent cut to its digits: 1e+05 prints as 1e5,
// 1e-05 as 1e-5.
std::string shortNumber(double x, int precision = 4);

#endif
