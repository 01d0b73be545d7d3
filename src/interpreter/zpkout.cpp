// writeZpk: the factored print of a transfer function, its numbers in the short form of the console.
#include "interpreter/zpkout.h"

#include <iostream>
#include <string>

#include "algebra/ratfun.h"
#include "algebra/shortnum.h"

namespace {

const int ZPK_PRECISION = 4;

std::string zpkNumber(double x) { return shortNumber(x, ZPK_PRECISION); }

bool isZero(const Vector& v) {
    for (unsigned i = 0; i < v.size(); ++i)
        if (v[i] != 0.0) return false;
    return true;
}

}  // namespace

void writeZpk(const RationalFunction& f, const char* label) {
    std::cout << label;
    if (isZero(f.numeratorCoefficients())) {
        std::cout << "zero gain" << std::endl;
        return;
    }
    RationalFunction factored(f);
    factored.zpk();
    std::cout << factored.zpkText(zpkNumber).asCharPointer() << std::endl;
}
