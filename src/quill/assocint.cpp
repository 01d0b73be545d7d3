// AssocInt: a key with an embedded Integer, as in the store table of object numbers.
#include "quill/assocint.h"

DEFINE_CLASS(AssocInt, LookupKey, 1, 0)

Object* AssocInt::value(Object& newValue) {
    assertArgKindOf(newValue, class_Integer, "value");
    value_.value(static_cast<Integer&>(newValue).value());
    return &value_;
}

void AssocInt::checkContents(const char* functionName) const {
    LookupKey::checkContents(functionName);
    validate(&value_, functionName, 1);
}

// The embedded Integer was copied with the pair: it has no callbacks of its own.
void AssocInt::clearCopiedState() {
    LookupKey::clearCopiedState();
    value_.clearCopiedState();
}
