// Vector, the dense real vector with an orientation flag and value semantics.
#ifndef ALGEBRA_VECTOR_H
#define ALGEBRA_VECTOR_H

#include <iosfwd>

#include "quill/object.h"
#include "quill/qclass.h"
#include "quill/quillstr.h"

class Matrix;
class VectorCursor;

extern Class class_Vector;
// Size mismatch: class, method, this vector's size, the other's.
extern int DIFFVECTSIZE;

class Vector : public Object {
    DECLARE_MEMBERS(Vector)
public:
    Vector();                                            // size 3, zero, column
    explicit Vector(unsigned size, double value = 0.0);  // column
    Vector(const Vector& v);                             // orientation kept
    Vector(const double* source, unsigned size);         // copies; column
    Vector(double a, double b, double c);
    // Stream form: size, the elements as the stream prints doubles, the
    // orientation flag.
    Vector(std::istream& is, Object* where);
    Vector(BinIstream& is, Object* where);
    ~Vector() noexcept(false) override;
    // Copies the orientation; reallocates only on a change of size.
    Vector& operator=(const Vector& v);

    // Checked access; INDEXRANGE named "operator[]".
    double& operator[](int i);
    double operator[](int i) const;
    double& operator[](unsigned i);
    double operator[](unsigned i) const;

    // resize 0: the sizes must match (failure "set") and the orientation
    // stays; else as assignment.
    Vector& set(const Vector& v, int resize = 0);

    Vector operator+(const Vector& v) const;  // left's orientation
    Vector operator-(const Vector& v) const;
    Vector operator-() const;  // column
    // Inner product: this a row, v a column, of equal size.
    double operator*(const Vector& v) const;
    // This a row of size m.rows: the product with each column of m, in a
    // vector of this size; more columns than rows fail on the index check.
    Vector operator*(const Matrix& m) const;
    Vector operator*(double x) const;
    // Cyclic cross product; a zero vector below size 3.
    Vector operator^(const Vector& v) const;
    Vector& operator+=(const Vector& v);
    Vector& operator-=(const Vector& v);
    Vector& operator+=(double x);
    Vector& operator-=(double x);
    Vector& operator*=(double x);

    double dist(const Vector& v) const;
    double norm() const;
    double sum() const;
    // Whichever of the two ranks higher (lower) in compare: by bytes.
    Vector max(const Vector& v) const;
    Vector min(const Vector& v) const;
    Vector transpose() const;
    void setAsRow() { isCol = 0; }
    void setAsColumn() { isCol = 1; }
    bool isColumn() const { return isCol != 0; }

    // A negative start counts from the end; length 0 runs to the end, a
    // negative one to the end less that many. Failures are assertions.
    Vector subVector(int start, int length = 0) const;
    void setSubVector(const Vector& v, int start, int length = 0);

    // Comma initialiser: v << 1, 2, 3.
    VectorCursor operator<<(double x);

    const Vector& precision(unsigned n) const;  // the next print only
    static void setLineSeparator(const char* separator);
    String toString(unsigned precision = 3) const;

    double* elements() { return data; }
    const double* elements() const { return data; }

    bool isEqual(const Object& ob) const override;  // size and bytes; not the orientation
    int compare(const Object& ob) const override;
    unsigned hash() const override;
    unsigned capacity() const override { return sz; }
    unsigned size() const override { return sz; }
    void printOn(std::ostream& os) const override;
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;
    void clearCopiedState() override;
    // Keeps the first min(old, new) elements; new ones are 0.
    virtual void reSize(unsigned n);

    void sizeError(const char* method, unsigned otherSize) const;

private:
    void allocate(unsigned n);
    void checkSameSize(const Vector& v, const char* method) const;
    void checkIndex(unsigned i) const;
    unsigned checkedRange(int& start, int length) const;
    template <class Stream>
    void readFields(Stream& is);

    int isCol;     // 1 column, 0 row
    double* data;  // max(1, sz) doubles, owned
    unsigned sz;
};

Vector operator*(double x, const Vector& v);

#endif
