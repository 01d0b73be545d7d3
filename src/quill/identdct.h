// IdentDict, a Dictionary whose keys are matched by address.
#ifndef QUILL_IDENTDCT_H
#define QUILL_IDENTDCT_H

#include "quill/dictnary.h"

extern Class class_IdentDict;

// Equal but distinct keys are distinct keys here: the store table numbers
// objects by identity with it.
class IdentDict : public Dictionary {
    DECLARE_MEMBERS(IdentDict)
public:
    explicit IdentDict(unsigned capacity = DEFAULT_CAPACITY) : Dictionary(capacity) {}
    IdentDict(const IdentDict& d) : Dictionary(d) {}
    // The pairs are added anew, matched by the addresses of the keys read.
    IdentDict(std::istream& is, Object* where) : Dictionary(is, where, false) { readElements(is); }
    IdentDict(BinIstream& is, Object* where) : Dictionary(is, where, false) { readElements(is); }
    IdentDict& operator=(const IdentDict& d) {
        Dictionary::operator=(d);
        return *this;
    }

    // The address of the key modulo mask; a bare object stands for itself.
    unsigned startIndex(const Object& ob) const override;
    // The two keys are the same object.
    bool matches(const Object& stored, const Object& candidate) const override;
};

#endif
