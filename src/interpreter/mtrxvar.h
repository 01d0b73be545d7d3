// MatrixVar, the Matrix of the language: operators, elements and windows, methods, conversions.
#ifndef INTERPRETER_MTRXVAR_H
#define INTERPRETER_MTRXVAR_H

#include "algebra/matrix.h"
#include "interpreter/algvar.h"

extern Class class_MatrixVar;

class MatrixVar : public AlgebraVar {
    DECLARE_MEMBERS(MatrixVar)
public:
    MatrixVar();  // 0 x 0
    explicit MatrixVar(const Matrix& m);

    Matrix& getValue() { return value; }
    const Matrix& getValue() const { return value; }

    const String& getType() const override;
    int getLevel() const override { return 101; }
    Matrix computeEigenvalues() override;
    void deepenShallowCopy() override;

    // Int and float as the 1 x 1 matrix, a matrix, a window, a vector as one column or row;
    // anything else is the conversion line and the empty matrix.
    static Matrix toMatrix(const Variable* v);
    // Raises "Run time error, <what> <value> out of range" for a negative value.
    static void checkIndex(int value, const char* what);
    // The place of the element that the call method(i, j) reaches when method is the element
    // method, the matrix is named and the indices are in range; null for any other call.
    double* elementPlace(const FuncDeclare* method, int i, int j);
    // Whether method is the element method A(i, j).
    bool isElementMethod(const FuncDeclare* method) const;
    // The place of element (i, j) of a named matrix; an index out of range is reported as the element
    // method reports it.
    double* elementAt(int i, int j);

protected:
    const Object& numericObject() const override { return value; }
    const MethodTable& methods() const override;
    const ConstructorTable& constructors() const override;
    const char* fileExtension() const override { return "mat"; }
    const char* workspaceKind() const override { return "matrix object"; }
    // A matrix, or the direct matrix of a system that is a pure gain.
    bool adopt(const Object& ob) override;
    void clear() override { value = Matrix(0, 0); }
    void convertFrom(const Variable* v) override { value = toMatrix(v); }
    const char* resultType(const Variable* other, int op, int swapped) const override;
    Variable* operate(Variable* other, int op, int swapped) override;
    Variable* negated() const override { return new MatrixVar(-value); }

private:
    // The place of element (i, j) when both indices are in range, else null.
    double* placeInside(int i, int j);
    Variable* assignment(const Variable* other, int op);
    Variable* product(const Variable* other, int swapped) const;

    Matrix value;
};

// The matrix built-ins of the Executer (inv, eig, schur, chol, lyap, lyapd, ls, ls1), entered
// with the Matrix type.
void registerMatrixBuiltins();

#endif
