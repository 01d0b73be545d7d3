// FloatVar, the double of the language, which may alias a double that it does not own.
#ifndef INTERPRETER_FLOATVAR_H
#define INTERPRETER_FLOATVAR_H

#include "interpreter/scalar.h"

extern Class class_FloatVar;

// A FloatVar that does not own its double is a left value inside something
// else, an element of a matrix say; its copies alias the same double.
class FloatVar : public ScalarVar {
    DECLARE_MEMBERS(FloatVar)
public:
    explicit FloatVar(double x = 0.0);
    explicit FloatVar(double* alias);  // not owned
    ~FloatVar() noexcept(false) override;

    double getValue() const { return *value; }
    bool ownsItsValue() const { return ownsValue != 0; }

    const String& getType() const override;
    int getLevel() const override { return 23; }
    double number() const override { return *value; }
    void setNumber(double x) override { *value = x; }
    bool isInteger() const override { return false; }
    String getValueString() const override;  // "%g"
    void deepenShallowCopy() override;

private:
    double* value;
    std::int32_t ownsValue;
};

#endif
