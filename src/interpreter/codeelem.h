// CodeElement, the typed node of the program tree, and its simpler kinds.
#ifndef INTERPRETER_CODEELEM_H
#define INTERPRETER_CODEELEM_H

#include <cstdint>

#include "interpreter/statemnt.h"

class Variable;
class VarDeclare;

extern Class class_CodeElement;
extern Class class_ExprElement;
extern Class class_ConstDeclare;
extern Class class_ConstructorCall;
extern Class class_ListOfElement;
extern Class class_ReturnStatement;
extern Class class_VarDeclReference;

class CodeElement : public Statement {
    DECLARE_MEMBERS(CodeElement)
public:
    CodeElement(const String& name, int line) : Statement(name, line) {}

    // The static type, a prototype that the element does not own.
    virtual Variable* getType() const;
    // A new value of the static type named after the element, owned by the caller.
    virtual Variable* getVariable() const;
    // How an expression prints the element: its name.
    virtual void printShort(std::ostream& os) const;

    CodeElement() {}
};

// An expression standing as a statement, named after its first token.
class ExprElement : public CodeElement {
    DECLARE_MEMBERS(ExprElement)
public:
    ExprElement();
    // Takes type (the static type toPostfix gave) and expression.
    ExprElement(const String& name, int line, Variable* type, Expression* expression);
    ~ExprElement() noexcept(false) override;

    Variable* getType() const override { return type; }
    Expression* getExpression() const { return expression; }
    void printOn(std::ostream& os) const override;

private:
    Variable* type;  // owned
    Expression* expression;
};

// A literal, named after its text.
class ConstDeclare : public CodeElement {
    DECLARE_MEMBERS(ConstDeclare)
public:
    ConstDeclare();
    // Takes value, which is renamed "Constant".
    ConstDeclare(const String& name, int line, Variable* type, Variable* value);
    ~ConstDeclare() noexcept(false) override;

    Variable* getType() const override { return type; }
    Variable* getVariable() const override;  // a copy of the value
    Variable* getValue() const { return value; }
    void printOn(std::ostream& os) const override;

private:
    Variable* type;   // not owned
    Variable* value;  // owned
};

// The arguments of a constructor: pairs of a static type and an Expression, both owned.
class ConstructorCall : public CodeElement {
    DECLARE_MEMBERS(ConstructorCall)
public:
    explicit ConstructorCall(int index = 0);
    ~ConstructorCall() noexcept(false) override;

    // Takes both; when the list cannot grow, neither.
    void addArgument(Variable* type, Expression* expression);
    // Takes the argument types and the expressions of the two lists pair by
    // pair and empties them; what was not taken when memory ran out stays there.
    void takeArguments(OrderedCltn& types, OrderedCltn& expressions);
    int getIndex() const { return index; }
    unsigned size() const override { return arguments.size(); }
    Expression* getExpression(int i) const;
    Variable* getArgumentType(int i) const;
    // value as argument i: as it stands when the declared type is a reference or
    // has its type name; otherwise a new value of the declared type assigned from
    // it, and value destroyed. Answers the argument, owned by the caller.
    Variable* convertArgument(int i, Variable* value, std::int32_t& errorFlag) const;
    // Adds the arguments, each a constant expression, evaluated and converted.
    void getValues(OrderedCltn& values, std::int32_t& errorFlag) const;
    void printOn(std::ostream& os) const override;

private:
    std::int32_t index;
    OrderedCltn arguments;  // Assoc of type and Expression
};

// The declarators of one declaration.
class ListOfElement : public CodeElement {
    DECLARE_MEMBERS(ListOfElement)
public:
    explicit ListOfElement(int line = 0);
    ~ListOfElement() noexcept(false) override;

    void add(Statement* statement) { code.add(*statement); }
    const OrderedCltn& getCode() const { return code; }
    void printOn(std::ostream& os) const override;

private:
    OrderedCltn code;  // owned
};

class ReturnStatement : public CodeElement {
    DECLARE_MEMBERS(ReturnStatement)
public:
    ReturnStatement();
    // Takes value, which is null in "return;".
    ReturnStatement(int line, Variable* type, Expression* value);
    ~ReturnStatement() noexcept(false) override;

    Variable* getType() const override { return type; }
    // The returned expression; with check, its absence fails an assertion.
    Expression* getValue(int check) const;
    void printOn(std::ostream& os) const override;

private:
    Variable* type;  // the function's return type, not owned
    Expression* value;
};

// A use of a declared variable in an expression.
class VarDeclReference : public CodeElement {
    DECLARE_MEMBERS(VarDeclReference)
public:
    VarDeclReference();
    VarDeclReference(VarDeclare* declaration, int line);

    VarDeclare* getDeclaration() const { return declaration; }
    Variable* getType() const override;
    int getLevel() const;
    int getIndex() const;
    void printOn(std::ostream& os) const override;

private:
    VarDeclare* declaration;  // not owned
};

#endif
