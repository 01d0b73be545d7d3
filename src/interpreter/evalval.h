// EvalValue, a register of the expression evaluator, which keeps scalars out of the heap.
#ifndef INTERPRETER_EVALVAL_H
#define INTERPRETER_EVALVAL_H

#include "interpreter/charvar.h"
#include "interpreter/cleanup.h"
#include "interpreter/floatvar.h"
#include "interpreter/intvar.h"
#include "interpreter/scalar.h"
#include "interpreter/varref.h"

// Nothing, a scalar held by value, a variable of a scope (not owned), the
// place of a float inside a value of a scope, or a value that the evaluation owns. A scalar becomes a
// Variable (box) only when something other than a scalar operation needs it: a variable then as a new
// reference, so that it stays a left value. Copies share what they hold: one
// of them drops it.
class EvalValue {
public:
    enum Tag : unsigned char { NONE, NUMBER, VARIABLE, PLACE, OWNED };

    EvalValue() : value(0.0), variable(0), level(0), tag(NONE) {}
    // Field by field: a register is often read right after its fields were
    // written, which a copy of the whole block would have to wait for.
    EvalValue(const EvalValue& v) : value(v.value), variable(v.variable), level(v.level), tag(v.tag) {}
    EvalValue& operator=(const EvalValue& v) {
        value = v.value;
        variable = v.variable;
        level = v.level;
        tag = v.tag;
        return *this;
    }
    // A scalar held by value; a literal's keeps the literal's name for when it becomes a Variable.
    static EvalValue of(ScalarValue s, const String* name = 0) {
        EvalValue v;
        v.tag = NUMBER;
        v.value = s.value;
        v.level = s.level;
        v.name = name;
        return v;
    }
    // A variable of a scope, by its place.
    static EvalValue of(Variable* found) { return ofScalar(found, ScalarVar::rankOf(found)); }
    // A variable of a scope: a scalar of the class of that rank, anything else with rank 0.
    static EvalValue ofScalar(Variable* found, int level) {
        EvalValue v;
        v.tag = VARIABLE;
        v.variable = found;
        v.level = level;
        return v;
    }
    // A float inside a value of a scope, a matrix's element say; as a Variable, its alias.
    static EvalValue at(double* place) {
        EvalValue v;
        v.tag = PLACE;
        v.place = place;
        v.level = ScalarVar::FLOAT_LEVEL;
        return v;
    }
    // A value owned from now on; null is none.
    static EvalValue owned(Variable* value) {
        EvalValue v;
        if (value) v.takeOwned(value);
        return v;
    }

    bool empty() const { return tag == NONE; }
    // The scalar held or referred to; false when it is no scalar.
    bool scalar(ScalarValue& s) const {
        if (tag == NUMBER) {
            s.level = level;
            s.value = value;
        } else if (tag == VARIABLE) {
            if (level == 0) return false;
            s.level = level;
            s.value = valueOf(variable, level);
        } else if (tag == PLACE) {
            s.level = level;
            s.value = *place;
        } else {
            ScalarVar* found = ScalarVar::scalarOf(variable);
            if (!found) return false;
            s.level = found->getLevel();
            s.value = found->number();
        }
        return true;
    }
    // What a value of the scalar class of rank level assigned from this would hold: a scalar class
    // takes a float or any scalar of a rank not above its own. False when either is no scalar (level 0
    // for a class of another kind) or the conversion goes through the values.
    bool convertedTo(int level, ScalarValue& converted) const {
        ScalarValue s;
        if (level == 0 || !scalar(s) || !takes(level, s.level)) return false;
        converted = ScalarValue{level, ScalarVar::fitTo(level, s.value)};
        return true;
    }
    // Whether a value of the scalar class of rank level takes a scalar of rank rank as it stands.
    static bool takes(int level, int rank) {
        return level != 0 && (rank <= level || rank == ScalarVar::FLOAT_LEVEL);
    }
    // Stores x, already in the scalar's form, in what scalar() read.
    void store(double x) {
        if (tag == NUMBER)
            value = x;
        else if (tag == VARIABLE)
            setValueOf(variable, level, x);
        else if (tag == PLACE)
            *place = x;
        else
            ScalarVar::scalarOf(variable)->setNumber(x);
    }
    // The value as a Variable, kept owned here.
    Variable* box() {
        if (tag == NUMBER) {
            const String* literal = name;
            takeOwned(ScalarVar::makeOfLevel(level, value));
            if (literal) variable->setName(*literal);
        }
        if (tag == VARIABLE) takeOwned(new VarReference(variable));
        if (tag == PLACE) takeOwned(new FloatVar(place));
        return variable;
    }
    // The value as a Variable owned by the caller; null for none.
    Variable* release() {
        Variable* v = tag == NONE ? 0 : box();
        *this = EvalValue();
        return v;
    }
    void drop() {
        if (tag == OWNED) ValueGuard::destroy(variable);
        *this = EvalValue();
    }
    // The owned Variable, or null.
    Variable* ownedValue() const { return tag == OWNED ? variable : 0; }
    // The variable of a scope it stands for, or null.
    Variable* scopeVariable() const { return tag == VARIABLE ? variable : 0; }
    // What outlives the evaluation: the variable of a scope, or what an owned reference refers to, either
    // taken through the references; null for anything else.
    Variable* lasting() const {
        if (tag == VARIABLE) return Variable::dereference(variable);
        if (tag == OWNED && variable->isA() == &class_VarReference) return Variable::dereference(variable);
        return 0;
    }

    // The value of a scalar variable by the rank of its class, without a virtual call.
    static double valueOf(Variable* v, int level) {
        if (level == ScalarVar::INT_LEVEL) return static_cast<IntVar*>(v)->getValue();
        if (level == ScalarVar::FLOAT_LEVEL) return static_cast<FloatVar*>(v)->getValue();
        return static_cast<CharVar*>(v)->getValue();
    }
    static void setValueOf(Variable* v, int level, double x) {
        if (level == ScalarVar::INT_LEVEL)
            static_cast<IntVar*>(v)->IntVar::setNumber(x);
        else if (level == ScalarVar::FLOAT_LEVEL)
            static_cast<FloatVar*>(v)->FloatVar::setNumber(x);
        else
            static_cast<CharVar*>(v)->CharVar::setNumber(x);
    }

private:
    void takeOwned(Variable* value) {
        tag = OWNED;
        variable = value;
    }

    double value;  // NUMBER: the scalar
    union {
        Variable* variable;  // VARIABLE: not owned; OWNED: owned
        const String* name;  // NUMBER: the name it takes as a Variable, none when null
        double* place;       // PLACE: not owned
    };
    int level;  // NUMBER, VARIABLE and PLACE: the rank of the scalar's class; 0 for a variable of another
                // class
    Tag tag;
};

// Drops the value when the scope ends, exceptions included.
class EvalValueGuard {
public:
    explicit EvalValueGuard(EvalValue& value) : value(value) {}
    ~EvalValueGuard() { value.drop(); }
    EvalValueGuard(const EvalValueGuard&) = delete;
    EvalValueGuard& operator=(const EvalValueGuard&) = delete;

private:
    EvalValue& value;
};

#endif
