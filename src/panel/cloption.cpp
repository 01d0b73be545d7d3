// The options of the headless modes, taken from the argument store.
#include "panel/cloption.h"

#include <cmath>
#include <cstdlib>
#include <iostream>
#include <sstream>
#include <string>

#include "quill/startup.h"

namespace {

bool inRange(double x, const Range& r) {
    return (r.closed ? x >= r.low : x > r.low) && x <= r.high && (!r.integer || x == std::floor(x));
}

// "an integer from 1 to 1000000", "a number above 0"
std::string rangeText(const Range& r) {
    std::ostringstream os;
    os.precision(15);
    os << (r.integer ? "an integer " : "a number ") << (r.closed ? "from " : "above ") << r.low;
    if (r.high < HUGE_VAL) os << (r.closed ? " to " : " up to ") << r.high;
    return os.str();
}

}  // namespace

String textOption(const char* name, const char* fallback) {
    String value;
    return findOption(name, value) ? value : String(fallback);
}

bool choiceOption(const char* name, std::string& value, std::initializer_list<const char*> texts,
                  const char* fallback) {
    value = textOption(name, fallback).asCharPointer();
    for (const char* text : texts)
        if (value == text) return true;
    std::cerr << "tarn: option " << name << ": \"" << value << "\" is not";
    size_t i = 0;
    for (const char* text : texts) {
        std::cerr << (i == 0 ? " " : i + 1 == texts.size() ? " or " : ", ") << '"' << text << '"';
        ++i;
    }
    std::cerr << std::endl;
    return false;
}

bool numberOption(const char* name, double& value, const Range& range) {
    String text;
    if (!findOption(name, text)) return true;
    const char* start = text.asCharPointer();
    char* end = 0;
    double x = std::strtod(start, &end);
    if (end == start || *end != '\0' || !std::isfinite(x)) {
        std::cerr << "tarn: option " << name << ": \"" << start << "\" is not a number" << std::endl;
        return false;
    }
    if (!inRange(x, range)) {
        std::cerr << "tarn: option " << name << ": " << start << " is out of range, it must be "
                  << rangeText(range) << std::endl;
        return false;
    }
    value = x;
    return true;
}
