// SubMatrixVar, a left-value window on a block of a Matrix of the language, and its comma initialiser.
#ifndef INTERPRETER_SUBMVAR_H
#define INTERPRETER_SUBMVAR_H

#include "algebra/matrix.h"
#include "interpreter/variable.h"

class MatrixVar;

extern Class class_SubMatrixVar;

// An assignment writes into the block; << writes at the window's place and moves it on as the
// comma initialiser of a matrix does; any other operation is that of the block's copy. A window
// on a temporary holds a copy of it; one that outlives its matrix fails when it is used.
class SubMatrixVar : public Variable {
    DECLARE_MEMBERS(SubMatrixVar)
public:
    SubMatrixVar();  // an empty window on an empty matrix of its own
    SubMatrixVar(MatrixVar* source, unsigned row, unsigned column, unsigned rows, unsigned columns);
    ~SubMatrixVar() noexcept(false) override;

    Matrix block() const;  // a copy of the block

    const String& getType() const override;
    int getLevel() const override { return 101; }
    Variable* getOperationType(Variable* other, int op, int swapped) override;
    Variable* doOperation(Variable* other, int op, int swapped) override;
    Variable* getUnaryOperationType(int op) override;
    Variable* doUnaryOperation(int op) override;
    // 0 the empty window, 1 the same window as another.
    int constructorIndex(const OrderedCltn& types) const override;
    void execConstructor(int index, const OrderedCltn& arguments, std::int32_t& errorFlag) override;
    String getValueString() const override;
    void deepenShallowCopy() override;

private:
    Matrix& matrix() const;
    bool writes(const Variable* other, int op) const;
    void write(const Variable* other, int op);
    void release();

    MatrixVar* source;
    std::int32_t ownsSource;
    unsigned row;
    unsigned column;
    unsigned rows;
    unsigned columns;
};

#endif
