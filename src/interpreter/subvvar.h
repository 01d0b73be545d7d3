// SubVectorVar, a left-value window on a range of a Vector of the language, and its comma initialiser.
#ifndef INTERPRETER_SUBVVAR_H
#define INTERPRETER_SUBVVAR_H

#include "algebra/vector.h"
#include "interpreter/variable.h"

class VectorVar;

extern Class class_SubVectorVar;

// An assignment writes into the range; << writes at the window's start and moves it on as the
// comma initialiser of a vector does; any other operation is that of the range's copy. A window
// on a temporary holds a copy of it; one that outlives its vector fails when it is used.
class SubVectorVar : public Variable {
    DECLARE_MEMBERS(SubVectorVar)
public:
    SubVectorVar();  // an empty window on an empty vector of its own
    SubVectorVar(VectorVar* source, unsigned start, unsigned length);
    ~SubVectorVar() noexcept(false) override;

    Vector part() const;  // a copy of the range, in the vector's orientation

    const String& getType() const override;
    int getLevel() const override { return 23; }
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
    Vector& vector() const;
    bool writes(const Variable* other, int op) const;
    void write(const Variable* other, int op);
    void release();

    VectorVar* source;
    std::int32_t ownsSource;
    unsigned start;
    unsigned length;
};

#endif
