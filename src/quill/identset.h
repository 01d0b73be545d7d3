// IdentSet, a Set that matches its elements by address.
#ifndef QUILL_IDENTSET_H
#define QUILL_IDENTSET_H

#include "quill/set.h"

extern Class class_IdentSet;

// Equal but distinct objects are distinct elements here.
class IdentSet : public Set {
    DECLARE_MEMBERS(IdentSet)
public:
    explicit IdentSet(unsigned capacity = DEFAULT_CAPACITY) : Set(capacity) {}
    IdentSet(const IdentSet& s) : Set(s, SameLayout()) {}
    // The elements are added anew, matched by address.
    IdentSet(std::istream& is, Object* where) : Set(is, where, false) { readElements(is); }
    IdentSet(BinIstream& is, Object* where) : Set(is, where, false) { readElements(is); }
    IdentSet& operator=(const IdentSet& s) {
        Set::operator=(s);
        return *this;
    }

    unsigned startIndex(const Object& ob) const override;  // the address modulo mask
    bool matches(const Object& stored, const Object& candidate) const override;
};

#endif
