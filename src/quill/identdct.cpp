// IdentDict: hashing and matching by the key's address.
#include "quill/identdct.h"

#include <cstdint>

#include "quill/lookupky.h"

DEFINE_CLASS(IdentDict, Dictionary, 1, 0)

namespace {

const Object* keyOfPair(const Object& ob) {
    if (ob.isKindOf(class_LookupKey)) return static_cast<const LookupKey&>(ob).key();
    return &ob;
}

}  // namespace

unsigned IdentDict::startIndex(const Object& ob) const { return unsigned(uintptr_t(keyOfPair(ob)) % mask); }

bool IdentDict::matches(const Object& stored, const Object& candidate) const {
    return static_cast<const LookupKey&>(stored).key() == keyOfPair(candidate);
}
