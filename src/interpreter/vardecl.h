// VarDeclare, the declaration of a variable, and FieldDeclare, a member of a struct.
#ifndef INTERPRETER_VARDECL_H
#define INTERPRETER_VARDECL_H

#include "interpreter/codeelem.h"

class ConstructorCall;

extern Class class_VarDeclare;
extern Class class_FieldDeclare;

// level and index place the variable at run time: a global has level -1 and
// its place among the globals; a local the place of its block in the open
// blocks of its function (0 for the outermost, which holds the parameters)
// and its place in that block. A declaration not yet entered has level -2.
class VarDeclare : public CodeElement {
    DECLARE_MEMBERS(VarDeclare)
public:
    VarDeclare();
    // Takes call, which may be null: the variable is then built by its default constructor.
    VarDeclare(const String& name, int line, Variable* type, ConstructorCall* call);
    VarDeclare(const String& name, int line, Variable* type, int isReference);
    ~VarDeclare() noexcept(false) override;

    Variable* getType() const override { return type; }
    void setType(Variable* newType) {
        type = newType;
        typeLevel = -1;
    }
    // The rank of the type's class when it is char, int or float, 0 for any other; found once.
    int scalarLevel() const { return typeLevel >= 0 ? typeLevel : findScalarLevel(); }
    ConstructorCall* getConstructorCall() const { return constructorCall; }
    int getLevel() const { return level; }
    int getIndex() const { return index; }
    void setPosition(int newLevel, int newIndex);
    bool isRef() const { return isReference != 0; }
    // Whether the place always holds a value of the declared type's own class: a local that is no
    // reference holds what was made for it from its type, or a scalar of the parameter's class; a global
    // may have been replaced by a resident line, a reference refers to anything.
    bool holdsDeclaredClass() const { return level >= 0 && !isRef(); }
    // Whether v may be passed for this parameter: a reference needs a reference
    // to a variable of this type (by identity or type name); a value needs a
    // type whose one-argument constructor from v is number 1.
    bool acceptsValue(Variable* v) const;
    void printOn(std::ostream& os) const override;
    // A conversion has no name: it prints as its type followed by "()".
    void printShort(std::ostream& os) const override;
    // Gives the constructor call up to the caller.
    ConstructorCall* takeConstructorCall();

private:
    int findScalarLevel() const;

    Variable* type;  // a prototype, not owned
    ConstructorCall* constructorCall;
    std::int32_t level;
    std::int32_t index;
    std::int32_t isReference;
    mutable std::int32_t typeLevel;  // -1 until found
};

class FieldDeclare : public VarDeclare {
    DECLARE_MEMBERS(FieldDeclare)
public:
    FieldDeclare() {}
    // Same name, line and type as declaration; takes call, which may be null.
    FieldDeclare(const VarDeclare& declaration, ConstructorCall* call);

    // A new value of the field, built by its declaration.
    Variable* buildValue(std::int32_t& errorFlag) const;
};

#endif
