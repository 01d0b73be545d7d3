// DiscDynOpVar, the discrete-time system of the language.
#ifndef INTERPRETER_DISCVAR_H
#define INTERPRETER_DISCVAR_H

#include "control/discdyn.h"
#include "interpreter/dynvar.h"

extern Class class_DiscDynOpVar;

// Every result of a composition or a method takes this system's sampling time; a continuous
// system joins it only when it is a static gain.
class DiscDynOpVar : public DynOpVar {
    DECLARE_MEMBERS(DiscDynOpVar)
public:
    DiscDynOpVar();  // a zero gain without inputs or outputs
    explicit DiscDynOpVar(const DiscDynOp& s);

    DiscDynOp& discrete() { return static_cast<DiscDynOp&>(getValue()); }
    const DiscDynOp& discrete() const { return static_cast<const DiscDynOp&>(getValue()); }

    const String& getType() const override;
    DynOpVar* newValue(DynOp* s) const override;
    DynOp* converted(const Variable* v) const override;

    // A discrete system; a discrete transfer function with its sampling time; a static gain (a
    // number, a matrix, a static continuous system) with the sampling time -1; anything else is
    // the conversion line and the empty system.
    static DiscDynOp* toDiscDynOp(const Variable* v);

protected:
    explicit DiscDynOpVar(DiscDynOp* owned) : DynOpVar(owned) {}

    const MethodTable& methods() const override;
    const ConstructorTable& constructors() const override;
    const char* workspaceKind() const override { return "discrete time dynamical system"; }
    bool adopt(const Object& ob) override;
    unsigned systemKinds() const override { return KIND_SYSTEM | KIND_DISCRETE | KIND_RATIONAL; }
};

#endif
