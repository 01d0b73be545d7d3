// writeZpk: the factored print of a transfer function, its numbers in the short form of the console.
#include "interpreter/zpkout.h"

#include <cstdio>
#include <iostream>
#include <string>

#include "algebra/ratfun.h"

namespace {

const int ZPK_PRECISION = 4;

// "%6.4g" without its padding, the exponent cut to its digits: 1e+05 prints as 1e5, 1e-05 as 1e-5.
std::string zpkNumber(double x) {
    char format[16], text[64];
    snprintf(format, sizeof format, "%%6.%dg", ZPK_PRECISION);
    snprintf(text, sizeof text, format, x);
    std::string s(text);
    s.erase(0, s.find_first_not_of(' '));
    static const char* const forms[][2] = {{"e+00", "e"}, {"e-00", "e-"}, {"e+0", "e"}, {"e-0", "e-"}};
    for (const auto& form : forms) {
        size_t at = s.find(form[0]);
        if (at == std::string::npos) continue;
        s.replace(at, std::string(form[0]).size(), form[1]);
        break;
    }
    return s;
}

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
