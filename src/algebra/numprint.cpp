// The bracketed table print of Matrix and Vector.
#include "algebra/numprint.h"

#include <cmath>
#include <cstdio>
#include <ostream>

#include "quill/indent.h"

namespace {

const double PRINT_ZERO = 1e-10;
const unsigned MIN_WIDTH = 11;

}  // namespace

void printTable(std::ostream& os, const double* data, unsigned rows, unsigned cols, PrintSettings& settings) {
    unsigned width = settings.precision > MIN_WIDTH ? settings.precision : MIN_WIDTH;
    char format[32];
    snprintf(format, sizeof format, "%%%u.%ug", width, settings.precision);
    os << " [" << settings.separator;
    char cell[512];
    for (unsigned r = 0; r < rows; ++r) {
        writeIndentation(os);
        for (unsigned c = 0; c < cols; ++c) {
            double x = data[size_t(c) * rows + r];
            if (std::fabs(x) < PRINT_ZERO) x = 0.0;
            snprintf(cell, sizeof cell, format, x);
            os << (c ? " " : "") << cell;
        }
        if (r + 1 < rows) os << ";";
        os << settings.separator;
    }
    writeIndentation(os);
    os << "]";
    settings.reset();
}
