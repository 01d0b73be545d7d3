// Assoc, the pair of a key and a value object.
#ifndef QUILL_ASSOC_H
#define QUILL_ASSOC_H

#include "quill/lookupky.h"

extern Class class_Assoc;

class Assoc : public LookupKey {
    DECLARE_MEMBERS(Assoc)
public:
    explicit Assoc(Object& newKey = *nil, Object& newValue = *nil) : LookupKey(newKey), value_(&newValue) {}
    // The key, then the value.
    Assoc(std::istream& is, Object* where);
    Assoc(BinIstream& is, Object* where);
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;

    Object* value() const override { return value_; }
    Object* value(Object& newValue) override;  // answers the former value

    void checkContents(const char* functionName) const override;
    void deepenShallowCopy() override;
    void deepDeleteContents() override;

protected:
    Object* value_;
};

#endif
