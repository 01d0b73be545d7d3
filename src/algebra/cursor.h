// MatrixCursor and VectorCursor: positions in a matrix or vector, for m[r][c] and comma initialisers.
#ifndef ALGEBRA_CURSOR_H
#define ALGEBRA_CURSOR_H

class Matrix;
class Vector;

// A position (row, column) in a matrix it does not own. Values written
// through the comma operator go to the position, which then moves along the
// row and on to the first column of the next row.
class MatrixCursor {
public:
    MatrixCursor(Matrix& m, unsigned row, unsigned column) : m(&m), r(row), c(column) {}

    // The element (row, c) of the cursor's row, checked.
    double& operator[](unsigned c);
    // Row r from the cursor's column to the end.
    operator Vector() const;

    MatrixCursor& operator,(double x);
    // Written with setRow at the position; the cursor moves by its size.
    MatrixCursor& operator,(const Vector& v);

    unsigned row() const { return r; }
    unsigned column() const { return c; }

private:
    void advance(unsigned n);

    Matrix* m;
    unsigned r;
    unsigned c;
};

// A position in a vector it does not own; the comma operator writes through
// the vector's checked access and moves on.
class VectorCursor {
public:
    VectorCursor(Vector& v, unsigned index) : v(&v), i(index) {}
    VectorCursor& operator,(double x);
    unsigned index() const { return i; }

private:
    Vector* v;
    unsigned i;
};

#endif
