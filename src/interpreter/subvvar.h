// SubVectorVar, a left-value window on a range of a Vector of the language, and its comma initialiser.
#ifndef INTERPRETER_SUBVVAR_H
#define INTERPRETER_SUBVVAR_H

#include "algebra/vector.h"
#include "interpreter/winvar.h"

class VectorVar;

extern Class class_SubVectorVar;

// An assignment writes into the range; << writes at the window's start and moves it on as the
// comma initialiser of a vector does; any other operation is that of the range's copy.
class SubVectorVar : public WindowVar {
    DECLARE_MEMBERS(SubVectorVar)
public:
    SubVectorVar();  // an empty window on an empty vector of its own
    SubVectorVar(VectorVar* source, unsigned start, unsigned length);

    Vector part() const;  // a copy of the range, in the vector's orientation

    const String& getType() const override;
    int getLevel() const override { return 23; }
    void execConstructor(int index, const OrderedCltn& arguments, std::int32_t& errorFlag) override;
    String getValueString() const override;

protected:
    const char* valueType() const override { return "Vector"; }
    Variable* valueCopy() const override;
    bool writes(const Variable* other, int op) const override;
    void write(const Variable* other, int op) override;

private:
    Vector& vector() const;

    unsigned start;
    unsigned length;
};

#endif
