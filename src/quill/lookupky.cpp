// LookupKey: a pair's key, standing for the pair in hashing and comparison.
#include "quill/lookupky.h"

#include <ostream>

#include "quill/objio.h"
#include "quill/quillerr.h"

DEFINE_CLASS(LookupKey, Object, 1, 0)

LookupKey::LookupKey(std::istream& is, Object* where) : Object(is, where), key_(nil) {
    QASSERT_TEXT(where != 0, "&where!=0");
    key_ = readFrom(is, "", nil);
}

LookupKey::LookupKey(BinIstream& is, Object* where) : Object(is, where), key_(nil) {
    QASSERT_TEXT(where != 0, "&where!=0");
    key_ = readFrom(is, "", nil);
}

void LookupKey::storer(std::ostream& os) const {
    Object::storer(os);
    key_->storeOn(os);
}

void LookupKey::storer(BinOstream& os) const {
    Object::storer(os);
    key_->storeOn(os);
}

Object* LookupKey::key(Object& newKey) {
    Object* old = key_;
    key_ = &newKey;
    return old;
}

Object* LookupKey::value() const { return nil; }

Object* LookupKey::value(Object&) {
    derivedClassResponsibility("value");
    return nil;
}

// Another pair compares by its key; anything else is compared with the key.
bool LookupKey::isEqual(const Object& ob) const {
    if (ob.isKindOf(class_LookupKey)) return key_->isEqual(*static_cast<const LookupKey&>(ob).key_);
    return key_->isEqual(ob);
}

// Against a plain object the comparison runs from the argument's side,
// negated, so that the argument's class decides how it compares with a key.
int LookupKey::compare(const Object& ob) const {
    if (ob.isKindOf(class_LookupKey)) return key_->compare(*static_cast<const LookupKey&>(ob).key_);
    return -ob.compare(*key_);
}

unsigned LookupKey::hash() const { return key_->hash(); }

void LookupKey::printOn(std::ostream& os) const {
    os << className() << "(";
    key_->printOn(os);
    os << "=>";
    value()->printOn(os);
    os << ")";
}

void LookupKey::checkContents(const char* functionName) const {
    Object::checkContents(functionName);
    validate(key_, functionName, 1);
}

void LookupKey::deepenShallowCopy() {
    Object::deepenShallowCopy();
    key_ = key_->deepCopy();
}

void LookupKey::deepDeleteContents() {
    Object::deepDeleteContents();
    deepDelete(key_);
}
