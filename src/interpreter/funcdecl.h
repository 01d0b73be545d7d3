// FuncDeclare, a function or method, and FuncCall and MethodCall, its calls.
#ifndef INTERPRETER_FUNCDECL_H
#define INTERPRETER_FUNCDECL_H

#include "interpreter/codeelem.h"
#include "interpreter/expressn.h"
#include "interpreter/keptplan.h"
#include "interpreter/vardecl.h"

extern Class class_FuncDeclare;
extern Class class_FuncCall;
extern Class class_MethodCall;

class FuncDeclare : public CodeElement {
    DECLARE_MEMBERS(FuncDeclare)
public:
    FuncDeclare();
    // Takes arguments, a collection of VarDeclare that may be null.
    FuncDeclare(const String& name, int line, Variable* returnType, OrderedCltn* arguments);
    ~FuncDeclare() noexcept(false) override;

    Variable* getType() const override { return returnType; }
    // The rank of the return type's class when it is char, int or float, 0 for any other; found once.
    int returnLevel() const { return returnTypeLevel >= 0 ? returnTypeLevel : findReturnLevel(); }
    bool hasArguments() const { return argumentCount() > 0; }
    int argumentCount() const { return arguments ? int(arguments->size()) : 0; }
    Variable* getArgumentType(int i) const;
    VarDeclare* getArgument(int i) const { return static_cast<VarDeclare*>(arguments->atInline(i)); }
    void addStatement(Statement* statement) {
        code.add(*statement);
        plan.forget();
    }
    const OrderedCltn& getCode() const { return code; }
    // Destroys the statements, for a definition that replaces an earlier one.
    void clearCode() {
        code.deleteContents();
        plan.forget();
    }
    // The executer's plan of the whole body, made once when the body is of that kind.
    KeptPlan& bodyPlan() const { return plan; }
    // Exchanges the parameter lists: a prototype, which earlier calls point to,
    // takes the parameters of its definition.
    void swapArguments(FuncDeclare* other);
    // "<return type> <name>(<T1>, <T2>)": the name "(" prints as operator(),
    // a reference parameter has "&&&" right after its type.
    String signature() const;
    void printOn(std::ostream& os) const override;

private:
    int findReturnLevel() const;

    Variable* returnType;                  // a prototype, not owned
    OrderedCltn* arguments;                // VarDeclare, owned; may be null
    OrderedCltn code;                      // owned statements
    mutable std::int32_t returnTypeLevel;  // -1 until found
    mutable KeptPlan plan;
};

class FuncCall : public CodeElement {
    DECLARE_MEMBERS(FuncCall)
public:
    FuncCall();
    // Takes arguments, a collection of Expression that may be null.
    FuncCall(FuncDeclare* function, OrderedCltn* arguments, int line);
    ~FuncCall() noexcept(false) override;

    FuncDeclare* getFunction() const { return function; }
    Variable* getType() const override { return function->getType(); }
    bool hasArguments() const { return function->hasArguments(); }
    int argumentCount() const { return function->argumentCount(); }
    Variable* getArgumentType(int i) const { return function->getArgumentType(i); }
    VarDeclare* getArgument(int i) const { return function->getArgument(i); }
    Expression* getExpression(int i) const { return static_cast<Expression*>(arguments->atInline(i)); }
    const OrderedCltn& getCode() const { return function->getCode(); }
    void printShort(std::ostream& os) const override;  // name()
    void printOn(std::ostream& os) const override;

private:
    FuncDeclare* function;   // not owned
    OrderedCltn* arguments;  // Expression, owned; may be null
};

// A call of a method: the receiver comes from the value stack.
class MethodCall : public FuncCall {
    DECLARE_MEMBERS(MethodCall)
public:
    MethodCall() {}
    MethodCall(FuncDeclare* method, OrderedCltn* arguments, int line) : FuncCall(method, arguments, line) {}
};

#endif
