// writeZpk, the zero-pole-gain print of the zpk methods.
#ifndef INTERPRETER_ZPKOUT_H
#define INTERPRETER_ZPKOUT_H

class RationalFunction;

// One line on the standard output: the label, then the gain and the factors of the zeros over
// those of the poles, or "zero gain" for a zero numerator. The value is left as it is.
void writeZpk(const RationalFunction& f, const char* label = "");

#endif
