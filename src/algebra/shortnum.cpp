// shortNumber: "%6.<precision>g" with the exponent's leading zeros and plus sign cut.
#include "algebra/shortnum.h"

#include <cstdio>

std::string shortNumber(double x, int precision) {
    char format[16], text[64];
    snprintf(format, sizeof format, "%%6.%dg", precision);
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
