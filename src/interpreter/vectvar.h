// VectorVar, the Vector of the language: operators, elements and windows, methods, conversions.
#ifndef INTERPRETER_VECTVAR_H
#define INTERPRETER_VECTVAR_H

#include "algebra/vector.h"
#include "interpreter/algvar.h"

extern Class class_VectorVar;

// Files and the workspace hold a vector as a matrix of one column (one row for a row vector).
class VectorVar : public AlgebraVar {
    DECLARE_MEMBERS(VectorVar)
public:
    VectorVar();  // size 0
    explicit VectorVar(const Vector& v);

    Vector& getValue() { return value; }
    const Vector& getValue() const { return value; }

    const String& getType() const override;
    int getLevel() const override { return 23; }
    Object* storeObject() const override;
    void deepenShallowCopy() override;

    // Int and float as a vector of one element, a vector, a window, the storage of a matrix as
    // its toVector gives it; anything else is the conversion line and the empty vector.
    static Vector toVector(const Variable* v);

protected:
    const Object& numericObject() const override { return value; }
    const MethodTable& methods() const override;
    const ConstructorTable& constructors() const override;
    const char* fileExtension() const override { return "mat"; }
    const char* workspaceKind() const override { return "vector object"; }
    // A vector, or a matrix of one column or one row.
    bool adopt(const Object& ob) override;
    void clear() override { value = Vector(0u); }
    void convertFrom(const Variable* v) override { value = toVector(v); }
    const char* resultType(const Variable* other, int op, int swapped) const override;
    Variable* operate(Variable* other, int op, int swapped) override;
    Variable* negated() const override { return new VectorVar(-value); }

private:
    Variable* assignment(const Variable* other, int op);
    Variable* product(const Variable* other, int swapped) const;

    Vector value;
};

#endif
