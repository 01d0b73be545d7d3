// SubMatrixVar, a left-value window on a block of a Matrix of the language, and its comma initialiser.
#ifndef INTERPRETER_SUBMVAR_H
#define INTERPRETER_SUBMVAR_H

#include "algebra/matrix.h"
#include "interpreter/winvar.h"

class MatrixVar;

extern Class class_SubMatrixVar;

// An assignment writes into the block; << writes at the window's place and moves it on as the
// comma initialiser of a matrix does; any other operation is that of the block's copy.
class SubMatrixVar : public WindowVar {
    DECLARE_MEMBERS(SubMatrixVar)
public:
    SubMatrixVar();  // an empty window on an empty matrix of its own
    SubMatrixVar(MatrixVar* source, unsigned row, unsigned column, unsigned rows, unsigned columns);

    Matrix block() const;  // a copy of the block

    const String& getType() const override;
    int getLevel() const override { return 101; }
    void execConstructor(int index, const OrderedCltn& arguments, std::int32_t& errorFlag) override;
    String getValueString() const override;

protected:
    const char* valueType() const override { return "Matrix"; }
    Variable* valueCopy() const override;
    bool writes(const Variable* other, int op) const override;
    void write(const Variable* other, int op) override;

private:
    Matrix& matrix() const;

    unsigned row;
    unsigned column;
    unsigned rows;
    unsigned columns;
};

#endif
