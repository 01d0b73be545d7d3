// Matrix: comparison, hashing, printing, reading from text and the stream forms.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <sstream>
#include <string>

#include "algebra/matrix.h"
#include "algebra/numprint.h"
#include "quill/binstrm.h"
#include "quill/objio.h"
#include "quill/quillerr.h"
#include "quill/readgrow.h"
#include "quill/substrng.h"

namespace {

PrintSettings& settings() {
    static PrintSettings s;
    return s;
}

int compareBytes(const void* a, const void* b, size_t n) {
    int c = n ? memcmp(a, b, n) : 0;
    return c < 0 ? -1 : c > 0 ? 1 : 0;
}

}  // namespace

bool Matrix::isEqual(const Object& ob) const {
    if (!ob.isSpecies(*species())) return false;
    const Matrix& m = static_cast<const Matrix&>(ob);
    return rows == m.rows && cols == m.cols &&
           compareBytes(data, m.data, size_t(rows) * cols * sizeof(double)) == 0;
}

int Matrix::compare(const Object& ob) const {
    assertArgSpecies(ob, *species(), "compare");
    const Matrix& m = static_cast<const Matrix&>(ob);
    checkSameShape(m, "compare");
    return compareBytes(data, m.data, size_t(rows) * cols * sizeof(double));
}

unsigned Matrix::hash() const {
    return hashText(reinterpret_cast<const char*>(data), rows * cols * sizeof(double));
}

// Printing

const Matrix& Matrix::precision(unsigned n) const {
    settings().precision = n;
    return *this;
}

void Matrix::setLineSeparator(const char* separator) { settings().separator = separator; }

void Matrix::printOn(std::ostream& os) const { printTable(os, data, rows, cols, settings()); }

String Matrix::toString(unsigned n) const {
    setLineSeparator("");
    precision(n);
    std::ostringstream os;
    printOn(os);
    return String(os.str().c_str());
}

// Reading from text

namespace {

void replaceAll(std::string& s, const char* from, const char* to) {
    size_t n = strlen(from), m = strlen(to);
    for (size_t at = s.find(from); at != std::string::npos; at = s.find(from, at + m)) s.replace(at, n, to);
}

bool holdsLooseBlank(const std::string& s) {
    return s.find(" ;") != std::string::npos || s.find(" ]") != std::string::npos ||
           s.find("[ ") != std::string::npos || s.find(" [") != std::string::npos;
}

// Commas become blanks and blanks beside brackets and before ";" go;
// everything up to the first "[" is dropped.
std::string normalizedLiteral(const char* text) {
    std::string s(text);
    replaceAll(s, ",", " ");
    while (holdsLooseBlank(s)) {
        replaceAll(s, "[ ", "[");
        replaceAll(s, " [", "[");
        replaceAll(s, " ;", ";");
        replaceAll(s, " ]", "]");
    }
    size_t open = s.find('[');
    if (open != std::string::npos) s.erase(0, open + 1);
    return s;
}

}  // namespace

// The first row sets the column count; a later row that goes beyond it ends
// the reading with what was read so far.
Matrix& Matrix::fromText(const char* text) {
    if (!text || !*text) return *this = Matrix();
    std::string s = normalizedLiteral(text);
    Matrix m(1, 0);
    unsigned r = 0, c = 0;
    for (size_t at = 0; at <= s.size();) {
        size_t end = s.find_first_of(" ;]", at);
        if (end == std::string::npos) end = s.size();
        if (end > at) {
            double x = strtod(s.substr(at, end - at).c_str(), 0);
            if (r == 0) {
                m.reSize(1, c + 1);
            } else if (c >= m.cols) {
                std::cout << "different matrix row lengths" << std::endl;
                break;
            }
            m.data[size_t(c) * m.rows + r] = x;
            ++c;
        }
        if (end == s.size() || s[end] == ']') break;
        if (s[end] == ';') {
            m.reSize(m.rows + 1, m.cols);
            ++r;
            c = 0;
        }
        at = end + 1;
    }
    return *this = m;
}

// Stream forms

void Matrix::storer(std::ostream& os) const {
    Object::storer(os);
    os << rows << " " << cols;
    char cell[40];
    for (size_t k = 0, n = size_t(rows) * cols; k < n; ++k) {
        snprintf(cell, sizeof cell, " %1.16g", data[k]);
        os << cell;
        if ((k + 1) % 20 == 0) os << "\n";
    }
}

void Matrix::storer(BinOstream& os) const {
    Object::storer(os);
    os << rows << cols;
    for (size_t k = 0, n = size_t(rows) * cols; k < n; ++k) os << data[k];
}

template <class Stream>
void Matrix::readFields(Stream& is) {
    unsigned r = readNumber<unsigned>(is);
    unsigned c = readNumber<unsigned>(is);
    data = readGrowing<double>(is, size_t(r) * c);
    rows = r;
    cols = c;
}

Matrix::Matrix(std::istream& is, Object* where) : Object(is, where), data(0), rows(0), cols(0) {
    readFields(is);
}

Matrix::Matrix(BinIstream& is, Object* where) : Object(is, where), data(0), rows(0), cols(0) {
    readFields(is);
}
