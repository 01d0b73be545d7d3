// IdentSet: hashing and matching by address.
#include "quill/identset.h"

#include <cstdint>

DEFINE_CLASS(IdentSet, Set, 1, 0)

unsigned IdentSet::startIndex(const Object& ob) const { return unsigned(uintptr_t(&ob) % mask); }

bool IdentSet::matches(const Object& stored, const Object& candidate) const { return &stored == &candidate; }
