// AssocInt, the pair of a key and an embedded Integer.
#ifndef QUILL_ASSOCINT_H
#define QUILL_ASSOCINT_H

#include "quill/integer.h"
#include "quill/lookupky.h"

extern Class class_AssocInt;

class AssocInt : public LookupKey {
    DECLARE_MEMBERS(AssocInt)
public:
    explicit AssocInt(Object& newKey = *nil, int newValue = 0) : LookupKey(newKey), value_(newValue) {}
    // The key, then the Integer, read into place.
    AssocInt(std::istream& is, Object* where);
    AssocInt(BinIstream& is, Object* where);
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;

    // The embedded Integer itself.
    Object* value() const override { return const_cast<Integer*>(&value_); }
    // Takes the number of an Integer (BADARGCLM otherwise); answers the
    // embedded Integer, which now holds it.
    Object* value(Object& newValue) override;
    int intValue() const { return value_.value(); }
    int intValue(int newValue) { return value_.value(newValue); }  // answers the former

    void checkContents(const char* functionName) const override;
    void clearCopiedState() override;

protected:
    Integer value_;
};

#endif
