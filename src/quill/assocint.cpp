// AssocInt: a key with an embedded Integer, as in the store table of object numbers.
#include "quill/assocint.h"

#include "quill/objio.h"

DEFINE_CLASS(AssocInt, LookupKey, 1, 0)

AssocInt::AssocInt(std::istream& is, Object* where) : LookupKey(is, where) {
    readFrom(is, "Integer", &value_);
}

AssocInt::AssocInt(BinIstream& is, Object* where) : LookupKey(is, where) { readFrom(is, "Integer", &value_); }

void AssocInt::storer(std::ostream& os) const {
    LookupKey::storer(os);
    value_.storeOn(os);
}

void AssocInt::storer(BinOstream& os) const {
    LookupKey::storer(os);
    value_.storeOn(os);
}

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
