// GenericVar, the value of a struct, and without fields the void type and the stream functions.
#ifndef INTERPRETER_GENVAR_H
#define INTERPRETER_GENVAR_H

#include "interpreter/variable.h"

extern Class class_GenericVar;

// A struct prototype owns its FieldDeclares; its values share them. The one
// void prototype is the parser's and the Executer's test for "no value".
// endl is a GenericVar of the type "OstreamFunc".
class GenericVar : public Variable {
    DECLARE_MEMBERS(GenericVar)
public:
    GenericVar();
    // A prototype, owning fields (FieldDeclares) when there are any.
    explicit GenericVar(const String& typeName, OrderedCltn* fields = 0);
    ~GenericVar() noexcept(false) override;

    static GenericVar* voidPrototype();

    const String& getType() const override { return typeName; }
    int getLevel() const override { return 200; }
    // = between values of one type, field by field.
    Variable* getOperationType(Variable* other, int op, int swapped) override;
    Variable* doOperation(Variable* other, int op, int swapped) override;
    // 0 builds each field by its declaration; 1 copies a value of this type.
    int constructorIndex(const OrderedCltn& types) const override;
    double storageEstimate() const override;
    void execConstructor(int index, const OrderedCltn& arguments, std::int32_t& errorFlag) override;
    VarDeclare* getMember(const String& memberName) const override;
    Variable* getMemberVar(const VarDeclare* member) override;
    // The position of the member among the fields, -1 for none; the value of the member at a position
    // found on a value of the same type, which looks the member up when the position holds another.
    int memberIndex(const VarDeclare* member) const;
    Variable* memberAt(int index, const VarDeclare* member);
    String getValueString() const override;
    void printOn(std::ostream& os) const override;
    void deepenShallowCopy() override;

private:
    bool sameType(const Variable* other) const { return other->getType().isEqual(typeName); }
    void copyValues(const GenericVar& from, std::int32_t& errorFlag);
    void deleteValues();

    String typeName;
    OrderedCltn* fields;  // FieldDeclares; may be null
    std::int32_t ownsFields;
    OrderedCltn* values;  // owned; null until constructed
};

#endif
