// Dictionary, a Set of key-value pairs matched by their keys.
#ifndef QUILL_DICTNARY_H
#define QUILL_DICTNARY_H

#include "quill/set.h"

class LookupKey;

extern Class class_Dictionary;

// The elements are LookupKey kinds, Assoc as a rule, each standing for its
// key: find, remove and includes take a pair or a bare key. The look-ups by
// key below wrap the key in a LookupKey, so a key that is itself a pair is
// found as a key. The dictionary doesn't own its pairs: deleteContents
// deletes them, keys and values stay.
class Dictionary : public Set {
    DECLARE_MEMBERS(Dictionary)
public:
    explicit Dictionary(unsigned capacity = DEFAULT_CAPACITY) : Set(capacity) {}
    Dictionary(const Dictionary& d) : Set(d, SameLayout()) {}
    // The pairs are added anew, matched by their keys.
    Dictionary(std::istream& is, Object* where) : Dictionary(is, where, true) {}
    Dictionary(BinIstream& is, Object* where) : Dictionary(is, where, true) {}
    Dictionary& operator=(const Dictionary& d) {
        Set::operator=(d);
        return *this;
    }

    // Only LookupKey kinds: anything else raises BADARGCLM.
    Object* add(Object& ob) override;
    // Adds a heap pair. When its key is already present, the pair is
    // deleted and DUPKEY raised.
    LookupKey& addAssoc(LookupKey& pair);
    // addAssoc of a new Assoc; answers the value.
    Object* atPut(Object& key, Object& value);
    Object* atPut(Object* key, Object* value) { return atPut(*key, *value); }

    Object* atKey(const Object& key) const;              // the value; KEYNOTFOUND when absent
    Object* atKey(const Object& key, Object& newValue);  // answers the former value
    Object* assocAt(const Object& key) const;            // the pair, or nil
    bool includesKey(const Object& key) const;
    // Takes the pair out and answers it, deleting nothing; KEYNOTFOUND when absent.
    Object* removeKey(const Object& key);
    // The key of a pair whose value isEqual value, scanning from the table's
    // end; nil when there is none.
    Object* keyOf(const Object& value) const;
    bool includesAssoc(const Object& key, const Object& value) const;

    Collection& addKeysTo(Collection& c) const;
    Collection& addValuesTo(Collection& c) const;

protected:
    // Leave the pairs to the derived class's stream constructor, unless withElements.
    Dictionary(std::istream& is, Object* where, bool withElements) : Set(is, where, false) {
        if (withElements) readElements(is);
    }
    Dictionary(BinIstream& is, Object* where, bool withElements) : Set(is, where, false) {
        if (withElements) readElements(is);
    }

    // The slot of the pair with this key, or the empty slot ending the probe.
    unsigned findKeyIndex(const Object& key) const;
    LookupKey* pairAt(unsigned i) const;
};

#endif
