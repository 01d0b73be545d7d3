// EMatrix, a matrix whose entries are expressions; its evaluation gives a CMatrix.
#ifndef ALGEBRA_EMATRIX_H
#define ALGEBRA_EMATRIX_H

#include <iosfwd>
#include <vector>

#include "algebra/exprs.h"

extern Class class_EMatrix;

class EMatrix : public Object {
    DECLARE_MEMBERS(EMatrix)
public:
    EMatrix() : EMatrix(0, 0) {}
    EMatrix(int rows, int cols);  // rows x cols empty expressions
    EMatrix(std::istream& is, Object* where);
    EMatrix(BinIstream& is, Object* where);
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;

    int rowNumber() const { return rows; }
    int columnNumber() const { return cols; }
    // Checked access; INDEXRANGE named "operator()".
    ExpressionS& operator()(int row, int col);
    const ExpressionS& operator()(int row, int col) const;
    // The rowCount x colCount block at (row, col); INDEXRANGE named "subMatrix".
    EMatrix subMatrix(int row, int col, int rowCount, int colCount) const;

    // Each entry evaluated to its 1x1 value.
    CMatrix evaluate() const;
    // Sets the named variable in every entry; false when no entry holds it.
    bool setVariable(const char* name, double value);

    void printOn(std::ostream& os) const override;
    void clearCopiedState() override;

private:
    template <class Stream>
    void readFields(Stream& is);
    void checkIndex(int i, int limit, const char* method) const;

    std::vector<ExpressionS> entries;  // row by row
    int rows;
    int cols;
};

#endif
