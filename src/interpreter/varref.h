// VarReference, a left value: every operation goes to the variable it refers to.
#ifndef INTERPRETER_VARREF_H
#define INTERPRETER_VARREF_H

#include "interpreter/variable.h"

extern Class class_VarReference;

// The referred variable counts this reference and may not be destroyed while
// it stands. An operation that answers the referred variable answers this
// reference instead, so that a chain keeps its left value. A typedef is a
// reference to a type prototype, named after the alias.
class VarReference : public Variable {
    DECLARE_MEMBERS(VarReference)
public:
    VarReference();
    explicit VarReference(Variable* referred);  // named after it, with "&" appended
    ~VarReference() noexcept(false) override;

    Variable* getReferred() const { return referred; }

    const String& getType() const override { return referred->getType(); }
    int getLevel() const override { return referred->getLevel(); }
    Variable* getOperationType(Variable* other, int op, int swapped) override;
    Variable* doOperation(Variable* other, int op, int swapped) override;
    Variable* getUnaryOperationType(int op) override;
    Variable* doUnaryOperation(int op) override;
    int canConvertTo(const Variable* target) const override { return referred->canConvertTo(target); }
    Variable* convertTo(const Variable* target) const override { return referred->convertTo(target); }
    int constructorIndex(const OrderedCltn& types) const override {
        return referred->constructorIndex(types);
    }
    void execConstructor(int index, const OrderedCltn& arguments, std::int32_t& errorFlag) override;
    VarDeclare* getMember(const String& memberName) const override { return referred->getMember(memberName); }
    Variable* getMemberVar(const VarDeclare* member) override;
    FuncDeclare* getMethod(const String& methodName, const OrderedCltn& types) const override;
    Variable* execMethodCall(FuncDeclare* method, OrderedCltn& arguments, std::int32_t& errorFlag) override;
    bool execScalarMethod(FuncDeclare* method, OrderedCltn& arguments, ScalarValue& result) override {
        return referred->execScalarMethod(method, arguments, result);
    }
    String getTemplateName(const OrderedCltn& values) const override {
        return referred->getTemplateName(values);
    }
    Variable* makeTemplate(const OrderedCltn& values) const override;
    String getValueString() const override { return referred->getValueString(); }
    void printOn(std::ostream& os) const override;  // adds " Referred to " and the referred variable
    void deepenShallowCopy() override;

private:
    Variable* own(Variable* result) { return result == referred ? this : result; }

    Variable* referred;  // not owned
};

#endif
