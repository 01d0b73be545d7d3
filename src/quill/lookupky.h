// LookupKey, the key half of the pairs that dictionaries hold.
#ifndef QUILL_LOOKUPKY_H
#define QUILL_LOOKUPKY_H

#include "quill/object.h"
#include "quill/qclass.h"

extern Class class_LookupKey;

// hash, isEqual and compare are those of the key, so that a pair stands for
// its key in a Set. The value operations are for the derived pairs.
class LookupKey : public Object {
    DECLARE_MEMBERS(LookupKey)
public:
    explicit LookupKey(Object& newKey = *nil) : key_(&newKey) {}
    // The key.
    LookupKey(std::istream& is, Object* where);
    LookupKey(BinIstream& is, Object* where);

    Object* key() const { return key_; }
    Object* key(Object& newKey);              // answers the former key
    virtual Object* value() const;            // nil
    virtual Object* value(Object& newValue);  // answers the former value

    bool isEqual(const Object& ob) const override;
    int compare(const Object& ob) const override;
    unsigned hash() const override;
    void printOn(std::ostream& os) const override;  // Class(key=>value)
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;
    void checkContents(const char* functionName) const override;
    void deepenShallowCopy() override;
    void deepDeleteContents() override;

protected:
    Object* key_;
};

#endif
