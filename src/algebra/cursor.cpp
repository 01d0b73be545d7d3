// MatrixCursor and VectorCursor: element reach and the comma initialisers.
#include "algebra/cursor.h"

#include "algebra/matrix.h"
#include "algebra/vector.h"

double& MatrixCursor::operator[](unsigned column) { return (*m)(r, column); }

MatrixCursor::operator Vector() const { return m->row(int(r), int(c)); }

// At the end of a row the cursor goes on at the first column of the next.
void MatrixCursor::advance(unsigned n) {
    c += n;
    if (c >= m->columnNumber()) {
        ++r;
        c = 0;
    }
}

MatrixCursor &MatrixCursor::operator,(double x) {
    (*m)(r, c) = x;
    advance(1);
    return *this;
}

MatrixCursor &MatrixCursor::operator,(const Vector&v) {
    m->setRow(int(r), v, int(c), int(v.size()));
    advance(v.size());
    return *this;
}

VectorCursor &VectorCursor::operator,(double x) {
    (*v)[i++] = x;
    return *this;
}
