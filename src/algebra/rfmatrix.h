// RFMatrix, a matrix of rational functions: a system shown as a transfer function and its frequency gains.
#ifndef ALGEBRA_RFMATRIX_H
#define ALGEBRA_RFMATRIX_H

#include <iosfwd>

#include "algebra/algebra.h"
#include "algebra/cmatrix.h"
#include "algebra/complex.h"
#include "algebra/pmatrix.h"
#include "algebra/ratfun.h"

class DynOp;
class ExpressionS;

extern Class class_RFMatrix;

class RFMatrix : public Algebra {
    DECLARE_MEMBERS(RFMatrix)
public:
    RFMatrix();  // 1x1 holding 0 / 1
    RFMatrix(unsigned rows, unsigned columns, double samplingTime = 0.0);
    RFMatrix(const RFMatrix& m);
    // Each element of the numerator over the one denominator, with the numerator's sampling time.
    RFMatrix(const PMatrix& numerator, const Polynomial& denominator);
    // C (sI - A)^-1 B + D element by element over det(sI - A) from the eigenvalues of A; each
    // numerator from the invariant zeros of its entry and the entry's gain.
    RFMatrix(const Matrix& A, const Matrix& B, const Matrix& C, const Matrix& D, double samplingTime = 0.0);
    // Stream form: rows, columns, the sampling time, then the elements row by row.
    RFMatrix(std::istream& is, Object* where);
    RFMatrix(BinIstream& is, Object* where);
    ~RFMatrix() noexcept(false) override;
    RFMatrix& operator=(const RFMatrix& m);

    unsigned rowNumber() const { return rows; }
    unsigned columnNumber() const { return columns; }
    double samplingTimeOf() const { return samplingTime; }
    const Complex& lastEvaluationPoint() const { return evaluationPoint; }

    // Checked access; INDEXRANGE named "operator()".
    RationalFunction& operator()(unsigned row, unsigned column);
    const RationalFunction& operator()(unsigned row, unsigned column) const;
    // The rowNumber x colNumber block at (row, column); INDEXRANGE named "subMatrix".
    RFMatrix subMatrix(unsigned row, unsigned column, unsigned rowNumber, unsigned colNumber) const;

    // One row or one column only: the sum of the elements' H2 norms over [from, to]. Any other
    // shape prints a console line and answers 0.
    using Algebra::norm2;
    double norm2(double from, double to) const;
    // The element matrix at the point: the expression's value when one is held, otherwise
    // each element's value there.
    CMatrix valueAt(const Complex& point) const;
    // The largest singular value of valueAt(point); the point is kept.
    double evaluate(const Complex& point);
    // A copy of e becomes the symbolic expression behind the matrix; the expression held, or null.
    void setExpression(const ExpressionS& e);
    ExpressionS* expressionOf() const { return expression; }
    // The point of the frequency w: jw, or e^(jwT) when discrete (T not positive counts as 1).
    Complex frequencyPoint(double w) const;
    // The peak of the largest singular value over frequency: 8 samples at ten-fold steps from
    // wStart, then a two-way step search from the best sample. wStart gets the frequency found,
    // or the point where the search went below it.
    double normHinf(double& wStart);

    RFMatrix operator*(const RFMatrix& m) const;
    RFMatrix operator*(const Matrix& m) const;
    RFMatrix operator*(double x) const;

    bool isEqual(const Object& ob) const override;
    // One element per line, rows in order.
    void printOn(std::ostream& os) const override;
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;
    void clearCopiedState() override;

private:
    void allocate(unsigned r, unsigned c);
    void copyFrom(const RFMatrix& m);
    void checkIndex(unsigned i, unsigned limit, const char* method) const;
    template <class Stream>
    void readElements(Stream& is, unsigned r, unsigned c);

    double samplingTime;
    RationalFunction* elements;  // rows * columns, row by row; owned
    unsigned rows;
    unsigned columns;
    Complex evaluationPoint;
    ExpressionS* expression;  // the symbolic expression behind the matrix, owned, or null
    DynOp* system;            // the system it was built from, not owned, or null
};

RFMatrix operator*(double x, const RFMatrix& m);

#endif
