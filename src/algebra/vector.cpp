// Vector: construction, checked access, arithmetic, sub-vectors, printing and stream forms.
#include "algebra/vector.h"

#include <cmath>
#include <cstring>
#include <ostream>
#include <sstream>

#include "algebra/cursor.h"
#include "algebra/matrix.h"
#include "algebra/numprint.h"
#include "quill/binstrm.h"
#include "quill/objalloc.h"
#include "quill/objio.h"
#include "quill/quillerr.h"
#include "quill/readgrow.h"
#include "quill/substrng.h"

int DIFFVECTSIZE = 0;

static void initVector(Class*) {
    DIFFVECTSIZE = newQUILLerror("[DIFFVECTSIZE] Different vector size in %s::%s, %u %u");
}

DEFINE_CLASS(Vector, Object, 1, initVector)

namespace {

PrintSettings& settings() {
    static PrintSettings s;
    return s;
}

int compareBytes(const void* a, const void* b, size_t n) {
    int c = n ? memcmp(a, b, n) : 0;
    return c < 0 ? -1 : c > 0 ? 1 : 0;
}

// The sub-vector checks are assertions that name the file "Vector".
void assertRange(bool holds, const char* condition, int line) {
    if (!holds) setError(ASSERTFLD, SEV_ERROR, condition, "Vector", line);
}

}  // namespace

void Vector::allocate(unsigned n) {
    sz = n;
    data = static_cast<double*>(objectCalloc(n > 0 ? n : 1, sizeof(double)));
}

Vector::Vector() : isCol(1) { allocate(3); }

Vector::Vector(unsigned size, double value) : isCol(1) {
    allocate(size);
    for (unsigned i = 0; i < sz; ++i) data[i] = value;
}

Vector::Vector(const Vector& v) : Object(v), isCol(v.isCol) {
    allocate(v.sz);
    memcpy(data, v.data, sz * sizeof(double));
}

Vector::Vector(const double* source, unsigned size) : isCol(1) {
    allocate(size);
    if (sz) memcpy(data, source, sz * sizeof(double));
}

Vector::Vector(double a, double b, double c) : isCol(1) {
    allocate(3);
    data[0] = a;
    data[1] = b;
    data[2] = c;
}

Vector::~Vector() noexcept(false) { objectFree(data); }

Vector& Vector::operator=(const Vector& v) {
    if (v.sz != sz) {
        objectFree(data);
        allocate(v.sz);
    }
    memmove(data, v.data, sz * sizeof(double));
    isCol = v.isCol;
    return *this;
}

void Vector::clearCopiedState() {
    Object::clearCopiedState();
    double* shared = data;
    allocate(sz);
    memcpy(data, shared, sz * sizeof(double));
}

void Vector::sizeError(const char* method, unsigned otherSize) const {
    setError(DIFFVECTSIZE, SEV_ERROR, className(), method, sz, otherSize);
}

void Vector::checkSameSize(const Vector& v, const char* method) const {
    if (v.sz != sz) sizeError(method, v.sz);
}

void Vector::checkIndex(unsigned i) const {
    if (i >= sz) setError(INDEXRANGE, SEV_ERROR, className(), "operator[]", int(i));
}

double& Vector::operator[](int i) {
    checkIndex(unsigned(i));
    return data[i];
}

double Vector::operator[](int i) const {
    checkIndex(unsigned(i));
    return data[i];
}

double& Vector::operator[](unsigned i) {
    checkIndex(i);
    return data[i];
}

double Vector::operator[](unsigned i) const {
    checkIndex(i);
    return data[i];
}

VectorCursor Vector::operator<<(double x) {
    VectorCursor cursor(*this, 0);
    cursor, x;
    return cursor;
}

Vector& Vector::set(const Vector& v, int resize) {
    if (resize) return *this = v;
    checkSameSize(v, "set");
    memmove(data, v.data, sz * sizeof(double));
    return *this;
}

void Vector::reSize(unsigned n) {
    if (n == sz) return;
    double* old = data;
    unsigned keep = n < sz ? n : sz;
    allocate(n);
    memcpy(data, old, keep * sizeof(double));
    objectFree(old);
}

// Arithmetic

Vector Vector::operator+(const Vector& v) const {
    checkSameSize(v, "operator+");
    Vector r(*this);
    for (unsigned i = 0; i < sz; ++i) r.data[i] += v.data[i];
    return r;
}

Vector Vector::operator-(const Vector& v) const {
    checkSameSize(v, "operator-");
    Vector r(*this);
    for (unsigned i = 0; i < sz; ++i) r.data[i] -= v.data[i];
    return r;
}

Vector Vector::operator-() const {
    Vector r(sz);
    for (unsigned i = 0; i < sz; ++i) r.data[i] = -data[i];
    return r;
}

double Vector::operator*(const Vector& v) const {
    if (isCol || !v.isCol || v.sz != sz) sizeError("operator*", v.sz);
    double s = 0.0;
    for (unsigned i = 0; i < sz; ++i) s += data[i] * v.data[i];
    return s;
}

// The result has this vector's size; its element j is the product with
// column j of m, through the checked access.
Vector Vector::operator*(const Matrix& m) const {
    if (isCol || sz != m.rowNumber()) sizeError("operator*", m.rowNumber());
    Vector r(sz);
    const double* md = m.elements();
    for (unsigned j = 0; j < m.columnNumber(); ++j) {
        double s = 0.0;
        for (unsigned i = 0; i < sz; ++i) s += data[i] * md[size_t(j) * sz + i];
        r[j] = s;
    }
    return r;
}

Vector Vector::operator*(double x) const {
    Vector r(*this);
    return r *= x;
}

Vector operator*(double x, const Vector& v) { return v * x; }

// Each element from its two cyclic neighbours.
Vector Vector::operator^(const Vector& b) const {
    checkSameSize(b, "operator^");
    Vector r(sz);
    if (sz < 3) return r;
    const double* a = data;
    unsigned n = sz;
    r.data[0] = b.data[n - 1] * a[1] - a[n - 1] * b.data[1];
    r.data[n - 1] = b.data[n - 2] * a[0] - a[n - 2] * b.data[0];
    for (unsigned i = 1; i + 1 < n; ++i) r.data[i] = b.data[i - 1] * a[i + 1] - a[i - 1] * b.data[i + 1];
    return r;
}

Vector& Vector::operator+=(const Vector& v) {
    checkSameSize(v, "operator+=");
    for (unsigned i = 0; i < sz; ++i) data[i] += v.data[i];
    return *this;
}

Vector& Vector::operator-=(const Vector& v) {
    checkSameSize(v, "operator-=");
    for (unsigned i = 0; i < sz; ++i) data[i] -= v.data[i];
    return *this;
}

Vector& Vector::operator+=(double x) {
    for (unsigned i = 0; i < sz; ++i) data[i] += x;
    return *this;
}

Vector& Vector::operator-=(double x) {
    for (unsigned i = 0; i < sz; ++i) data[i] -= x;
    return *this;
}

Vector& Vector::operator*=(double x) {
    for (unsigned i = 0; i < sz; ++i) data[i] *= x;
    return *this;
}

double Vector::dist(const Vector& v) const {
    checkSameSize(v, "dist");
    double s = 0.0;
    for (unsigned i = 0; i < sz; ++i) s += (data[i] - v.data[i]) * (data[i] - v.data[i]);
    return std::sqrt(s);
}

double Vector::norm() const {
    double s = 0.0;
    for (unsigned i = 0; i < sz; ++i) s += data[i] * data[i];
    return std::sqrt(s);
}

double Vector::sum() const {
    double s = 0.0;
    for (unsigned i = 0; i < sz; ++i) s += data[i];
    return s;
}

Vector Vector::max(const Vector& v) const {
    checkSameSize(v, "max");
    return compare(v) >= 0 ? *this : v;
}

Vector Vector::min(const Vector& v) const {
    checkSameSize(v, "min");
    return compare(v) <= 0 ? *this : v;
}

Vector Vector::transpose() const {
    Vector r(*this);
    r.isCol = !isCol;
    return r;
}

// Sub-vectors

// Wraps start and answers the length; each failed step is an assertion.
unsigned Vector::checkedRange(int& start, int length) const {
    long n = long(sz);
    if (start < 0) {
        assertRange(-long(start) < n, "-start < sz", __LINE__);
        start += int(n);
    }
    assertRange(start < n, "start < sz", __LINE__);
    if (length <= 0) {
        assertRange(long(start) - length < n, "start - length < sz", __LINE__);
        return unsigned(n - start + length);
    }
    assertRange(long(start) + length <= n, "start + length <= sz", __LINE__);
    return unsigned(length);
}

Vector Vector::subVector(int start, int length) const {
    unsigned n = checkedRange(start, length);
    Vector r(data + start, n);
    r.isCol = isCol;
    return r;
}

void Vector::setSubVector(const Vector& vector, int start, int length) {
    unsigned n = checkedRange(start, length);
    assertRange(n == vector.size(), "length == vector.size()", __LINE__);
    memmove(data + start, vector.data, n * sizeof(double));
}

// Comparison

bool Vector::isEqual(const Object& ob) const {
    if (!ob.isSpecies(*species())) return false;
    const Vector& v = static_cast<const Vector&>(ob);
    return sz == v.sz && compareBytes(data, v.data, sz * sizeof(double)) == 0;
}

int Vector::compare(const Object& ob) const {
    assertArgSpecies(ob, *species(), "compare");
    const Vector& v = static_cast<const Vector&>(ob);
    checkSameSize(v, "compare");
    return compareBytes(data, v.data, sz * sizeof(double));
}

unsigned Vector::hash() const { return hashText(reinterpret_cast<const char*>(data), sz * sizeof(double)); }

// Printing: a column one element a line, a row on one line.

const Vector& Vector::precision(unsigned n) const {
    settings().precision = n;
    return *this;
}

void Vector::setLineSeparator(const char* separator) { settings().separator = separator; }

void Vector::printOn(std::ostream& os) const {
    printTable(os, data, isCol ? sz : 1, isCol ? 1 : sz, settings());
}

String Vector::toString(unsigned n) const {
    setLineSeparator("");
    precision(n);
    std::ostringstream os;
    printOn(os);
    return String(os.str().c_str());
}

// Stream forms: the size, the elements, the orientation flag.

void Vector::storer(std::ostream& os) const {
    Object::storer(os);
    os << sz;
    for (unsigned i = 0; i < sz; ++i) {
        os << " " << data[i];
        if ((i + 1) % 40 == 0) os << "\n";
    }
    os << " " << isCol << " ";
}

void Vector::storer(BinOstream& os) const {
    Object::storer(os);
    os << sz;
    for (unsigned i = 0; i < sz; ++i) os << data[i];
    os << isCol;
}

template <class Stream>
void Vector::readFields(Stream& is) {
    unsigned n = readNumber<unsigned>(is);
    data = readGrowing<double>(is, n);
    sz = n;
    readOrUndo([&] { isCol = readNumber<int>(is); }, [this] { objectFree(data); });
}

Vector::Vector(std::istream& is, Object* where) : Object(is, where), isCol(1), data(0), sz(0) {
    QASSERT_TEXT(where != 0, "&where!=0");
    readFields(is);
}

Vector::Vector(BinIstream& is, Object* where) : Object(is, where), isCol(1), data(0), sz(0) {
    QASSERT_TEXT(where != 0, "&where!=0");
    readFields(is);
}
