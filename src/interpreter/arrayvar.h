// ArrayVar, the fixed-size array of the language.
#ifndef INTERPRETER_ARRAYVAR_H
#define INTERPRETER_ARRAYVAR_H

#include "interpreter/variable.h"

extern Class class_ArrayVar;

// The type name is the element's followed by [size]: int[2][3] is an array of
// 3 of int[2]. An element is reached as a reference, so that it can be assigned.
class ArrayVar : public Variable {
    DECLARE_MEMBERS(ArrayVar)
public:
    ArrayVar();
    // A prototype: no elements until constructed.
    ArrayVar(Variable* elementType, int size);
    ~ArrayVar() noexcept(false) override;

    Variable* getElementType() const { return elementType; }
    int getSize() const { return size; }

    const String& getType() const override { return typeName; }
    int getLevel() const override { return 50; }
    // The element operator, and = between arrays of one type.
    Variable* getOperationType(Variable* other, int op, int swapped) override;
    Variable* doOperation(Variable* other, int op, int swapped) override;
    // 0: size elements by the element's default constructor; 1: a copy of an array of this type.
    int constructorIndex(const OrderedCltn& types) const override;
    void execConstructor(int index, const OrderedCltn& arguments, std::int32_t& errorFlag) override;
    FuncDeclare* getMethod(const String& methodName, const OrderedCltn& types) const override;  // size()
    Variable* execMethodCall(FuncDeclare* method, OrderedCltn& arguments, std::int32_t& errorFlag) override;
    String getValueString() const override;
    void printOn(std::ostream& os) const override;
    double storageEstimate() const override;
    void deepenShallowCopy() override;
    // The element itself at index, which the element operator refers to; out of range is a run-time
    // error.
    Variable* elementAt(std::int32_t index) const;

private:
    bool sameType(const Variable* other) const { return other->getType().isEqual(typeName); }
    Variable* element(Variable* index) const;
    void copyElements(const ArrayVar& from, std::int32_t& errorFlag);

    String typeName;
    Variable* elementType;  // a prototype, not owned
    std::int32_t size;
    OrderedCltn* elements;  // owned; null in a prototype
};

#endif
