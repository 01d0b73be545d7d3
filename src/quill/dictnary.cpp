// Dictionary: pairs found by key, and its two error texts.
#include "quill/dictnary.h"

#include "quill/assoc.h"
#include "quill/quillerr.h"

int DUPKEY = 0;
int KEYNOTFOUND = 0;

static void initDictionary(Class*) {
    DUPKEY = newQUILLerror("[DUPKEY] Tried to add duplicate key: %s::%s(%s)");
    KEYNOTFOUND = newQUILLerror("[KEYNOTFOUND] Key not found: %s::%s(%s)");
}

DEFINE_CLASS(Dictionary, Set, 1, initDictionary)

unsigned Dictionary::findKeyIndex(const Object& key) const {
    LookupKey probe(const_cast<Object&>(key));
    return findIndexOf(probe);
}

// Every element passed add's test: the static cast is safe.
LookupKey* Dictionary::pairAt(unsigned i) const { return static_cast<LookupKey*>(slot(i)); }

Object* Dictionary::add(Object& ob) {
    assertArgKindOf(ob, class_LookupKey, "add");
    return Set::add(ob);
}

LookupKey& Dictionary::addAssoc(LookupKey& pair) {
    if (add(pair) != &pair) {
        const char* keyText = pair.key()->asCharPointer();
        delete &pair;
        setError(DUPKEY, SEV_ERROR, className(), "addAssoc", keyText);
    }
    return pair;
}

Object* Dictionary::atPut(Object& key, Object& value) {
    addAssoc(*new Assoc(key, value));
    return &value;
}

Object* Dictionary::atKey(const Object& key) const {
    unsigned i = findKeyIndex(key);
    if (slot(i) == nil) setError(KEYNOTFOUND, SEV_ERROR, className(), "atKey", key.asCharPointer());
    return pairAt(i)->value();
}

Object* Dictionary::atKey(const Object& key, Object& newValue) {
    unsigned i = findKeyIndex(key);
    if (slot(i) == nil) setError(KEYNOTFOUND, SEV_ERROR, className(), "atKey", key.asCharPointer());
    return pairAt(i)->value(newValue);
}

Object* Dictionary::assocAt(const Object& key) const { return slot(findKeyIndex(key)); }

bool Dictionary::includesKey(const Object& key) const { return assocAt(key) != nil; }

Object* Dictionary::removeKey(const Object& key) {
    unsigned i = findKeyIndex(key);
    Object* pair = slot(i);
    if (pair == nil) setError(KEYNOTFOUND, SEV_ERROR, className(), "removeKey", key.asCharPointer());
    removeAtSlot(i);
    return pair;
}

Object* Dictionary::keyOf(const Object& value) const {
    for (unsigned i = mask + 1; i-- > 0;)
        if (slot(i) != nil && pairAt(i)->value()->isEqual(value)) return pairAt(i)->key();
    return nil;
}

bool Dictionary::includesAssoc(const Object& key, const Object& value) const {
    Object* pair = assocAt(key);
    return pair != nil && static_cast<LookupKey*>(pair)->value()->isEqual(value);
}

Collection& Dictionary::addKeysTo(Collection& c) const {
    for (unsigned i = 0; i <= mask; ++i)
        if (slot(i) != nil) c.add(*pairAt(i)->key());
    return c;
}

Collection& Dictionary::addValuesTo(Collection& c) const {
    for (unsigned i = 0; i <= mask; ++i)
        if (slot(i) != nil) c.add(*pairAt(i)->value());
    return c;
}
