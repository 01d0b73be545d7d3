// Assoc: a key with a value object.
#include "quill/assoc.h"

DEFINE_CLASS(Assoc, LookupKey, 1, 0)

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
