// IntVar, the 32-bit int of the language.
#ifndef INTERPRETER_INTVAR_H
#define INTERPRETER_INTVAR_H

#include "interpreter/scalar.h"

extern Class class_IntVar;

class IntVar : public ScalarVar {
    DECLARE_MEMBERS(IntVar)
public:
    explicit IntVar(std::int32_t value = 0) : value(value) {}

    std::int32_t getValue() const { return value; }

    const String& getType() const override;
    int getLevel() const override { return 22; }
    double number() const override { return value; }
    void setNumber(double x) override { value = truncate(x); }
    bool isInteger() const override { return true; }
    // The one conversion to char: a value from 0 to 255.
    int canConvertTo(const Variable* target) const override;
    Variable* convertTo(const Variable* target) const override;
    String getValueString() const override;  // "%d"

protected:
    bool acceptsInConstructor(const Variable* argument) const override;

private:
    std::int32_t value;
};

#endif
