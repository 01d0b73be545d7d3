// StringVar, the text of the language.
#ifndef INTERPRETER_STRINGVR_H
#define INTERPRETER_STRINGVR_H

#include "interpreter/variable.h"

extern Class class_StringVar;

// Knows only strings: + concatenates, the comparisons go by the bytes, = stores.
// The other assignment operators pass the parser and fail at run time.
class StringVar : public Variable {
    DECLARE_MEMBERS(StringVar)
public:
    StringVar();
    // The text with its escapes turned into characters: \" \\ \b \f \n \r \t, and \ with digits the
    // character of that decimal code.
    explicit StringVar(const String& text);

    const String& getValue() const { return value; }

    const String& getType() const override;
    int getLevel() const override { return 100; }
    Variable* getOperationType(Variable* other, int op, int swapped) override;
    Variable* doOperation(Variable* other, int op, int swapped) override;
    int constructorIndex(const OrderedCltn& types) const override;
    void execConstructor(int index, const OrderedCltn& arguments, std::int32_t& errorFlag) override;
    String getValueString() const override { return value; }
    void printOn(std::ostream& os) const override;
    void deepenShallowCopy() override;

private:
    String value;
};

#endif
