// CharVar, the char of the language and its truth type.
#ifndef INTERPRETER_CHARVAR_H
#define INTERPRETER_CHARVAR_H

#include "interpreter/scalar.h"

extern Class class_CharVar;

// Every comparison and logical operator, on every class, yields a CharVar of 0 or 1.
class CharVar : public ScalarVar {
    DECLARE_MEMBERS(CharVar)
public:
    explicit CharVar(std::int8_t value = 0) : value(value) {}
    // From a literal's text, quotes included: 'a', '\n', '\65' is A; after a
    // backslash anything but " \ b f n r t is read as a decimal number, so '\x41' is 0.
    static CharVar* fromLiteral(const String& text);
    // The character that a backslash and c stand for, or -1 when c is none of " \ b f n r t.
    static int escapedCharacter(char c);

    std::int8_t getValue() const { return value; }

    const String& getType() const override;
    int getLevel() const override { return 21; }
    double number() const override { return value; }
    void setNumber(double x) override { value = std::int8_t(truncate(x)); }
    bool isInteger() const override { return true; }
    String getValueString() const override;  // the character itself
    // " Value '": letters and digits as they are, escapes for 8, 9, 10, 12, 13, 34, 92, else the code.
    void printOn(std::ostream& os) const override;

private:
    std::int8_t value;
};

#endif
