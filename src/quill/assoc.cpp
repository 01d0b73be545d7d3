// Assoc: a key with a value object.
#include "quill/assoc.h"

#include "quill/objio.h"

DEFINE_CLASS(Assoc, LookupKey, 1, 0)

Assoc::Assoc(std::istream& is, Object* where) : LookupKey(is, where), value_(nil) {
    value_ = readFrom(is, "", nil);
}

Assoc::Assoc(BinIstream& is, Object* where) : LookupKey(is, where), value_(nil) {
    value_ = readFrom(is, "", nil);
}

void Assoc::storer(std::ostream& os) const {
    LookupKey::storer(os);
    value_->storeOn(os);
}

void Assoc::storer(BinOstream& os) const {
    LookupKey::storer(os);
    value_->storeOn(os);
}

// Tells the pair's dependents, without call data.
Object* Assoc::value(Object& newValue) {
    Object* old = value_;
    value_ = &newValue;
    changed(0);
    return old;
}

void Assoc::checkContents(const char* functionName) const {
    LookupKey::checkContents(functionName);
    validate(value_, functionName, 1);
}

void Assoc::deepenShallowCopy() {
    LookupKey::deepenShallowCopy();
    value_ = value_->deepCopy();
}

void Assoc::deepDeleteContents() {
    LookupKey::deepDeleteContents();
    deepDelete(value_);
}
