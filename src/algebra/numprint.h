// The bracketed table print shared by Matrix and Vector, and its class-wide settings.
#ifndef ALGEBRA_NUMPRINT_H
#define ALGEBRA_NUMPRINT_H

#include <iosfwd>
#include <string>

// A print precision and a line separator that last for one print: every
// print sets them back to 3 and "\n".
struct PrintSettings {
    enum { DEFAULT_PRECISION = 3 };
    unsigned precision = DEFAULT_PRECISION;
    std::string separator = "\n";
    void reset() {
        precision = DEFAULT_PRECISION;
        separator = "\n";
    }
};

// Writes " [", the separator, then each row of the column-major table, after
// the stream's indentation, with ";" behind all rows but the last, then the
// indentation and "]". Elements below 1e-10 in
// absolute value print as 0. Resets the settings afterwards.
void printTable(std::ostream& os, const double* data, unsigned rows, unsigned cols, PrintSettings& settings);

#endif
