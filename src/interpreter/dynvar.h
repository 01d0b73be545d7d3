// DynOpVar, the continuous-time system of the language: compositions, methods, conversions.
#ifndef INTERPRETER_DYNVAR_H
#define INTERPRETER_DYNVAR_H

#include "algebra/vector.h"
#include "control/dynop.h"
#include "interpreter/algvar.h"

extern Class class_DynOpVar;

// Holds its system through a pointer, so that DiscDynOpVar holds a DiscDynOp in the same place.
// The compositions of the library give a DynOp; sameTime brings a result into the time domain of
// this value's system, so that the code of the methods serves both classes.
class DynOpVar : public AlgebraVar {
    DECLARE_MEMBERS(DynOpVar)
public:
    DynOpVar();  // a zero gain without inputs or outputs
    explicit DynOpVar(const DynOp& s);
    ~DynOpVar() noexcept(false) override;

    DynOp& getValue() { return *system; }
    const DynOp& getValue() const { return *system; }

    const String& getType() const override;
    int getLevel() const override { return 101; }
    Matrix computeEigenvalues() override;  // the poles
    void deepenShallowCopy() override;
    int plotOn() override { return plotSystem(*system); }
    int isPlottable() const override { return 1; }

    // A new system in this value's time domain: a discrete one takes the own sampling time.
    DynOp* sameTime(const DynOp& s) const;
    // A new value of this class that takes s.
    virtual DynOpVar* newValue(DynOp* s) const;
    // A new system converted from v in this class's time domain, or the empty one after the line.
    virtual DynOp* converted(const Variable* v) const;
    // The initial condition of the state for a later simulation, sized to the order.
    void setInitialCondition(const Vector& x0);

    // Int and float and a matrix as a static gain, a continuous transfer function in companion
    // form, a continuous system; anything else is the conversion line and the empty system.
    static DynOp* toDynOp(const Variable* v);

protected:
    explicit DynOpVar(DynOp* owned);

    const Object& numericObject() const override { return *system; }
    const MethodTable& methods() const override;
    const ConstructorTable& constructors() const override;
    const char* fileExtension() const override { return "dyn"; }
    const char* workspaceKind() const override { return "continuous time dynamical system"; }
    bool adopt(const Object& ob) override;
    void clear() override { replace(sameTime(DynOp())); }
    void convertFrom(const Variable* v) override { replace(converted(v)); }
    const char* resultType(const Variable* other, int op, int swapped) const override;
    Variable* operate(Variable* other, int op, int swapped) override;
    Variable* negated() const override { return newValue(sameTime(-*system)); }
    // The kinds of systems that combine with this one.
    virtual unsigned systemKinds() const { return KIND_SYSTEM | KIND_RATIONAL; }

    void replace(DynOp* s);

private:
    DynOp combined(const Variable* other, int op, int swapped) const;

    DynOp* system;  // owned
};

// "Run time error, <what> <count> out of range" for a negative count or one above its limit.
void checkCount(int count, unsigned limit, const char* what);

// The counts of controls, measures and feed-forward inputs given from argument first on, each
// checked against the system; a missing feed-forward count keeps the system's own.
struct Partition {
    unsigned controls;
    unsigned measures;
    unsigned feedForward;
};
Partition partitionAt(const OrderedCltn& arguments, int first, const DynOp& s);

#endif
