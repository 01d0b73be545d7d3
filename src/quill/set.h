// Set, the hash table of distinct objects matched by isEqual.
#ifndef QUILL_SET_H
#define QUILL_SET_H

#include "quill/collectn.h"

extern Class class_Set;

// An open-addressing table of 2 * threshold slots with linear probing
// downward from h(x) = x.hash() % mask; nil marks an empty slot. The table
// doubles when count exceeds threshold, so at least half the slots are empty.
class Set : public Collection {
    DECLARE_MEMBERS(Set)
public:
    enum { DEFAULT_CAPACITY = 16 };

    explicit Set(unsigned capacity = DEFAULT_CAPACITY);
    // Copies the table of a plain Set; the elements of a Set of another class
    // (an IdentSet, a Dictionary) are added anew, as this Set matches them.
    Set(const Set& s);
    // Capacity, size, then the elements, added anew in the order of the stream.
    Set(std::istream& is, Object* where) : Set(is, where, true) {}
    Set(BinIstream& is, Object* where) : Set(is, where, true) {}
    ~Set() noexcept(false) override;
    Set& operator=(const Set& s);

    // Set algebra, by membership of each element of the operands.
    Set operator-(const Set& s) const;
    Set operator&(const Set& s) const;
    Set operator|(const Set& s) const;
    Set& operator-=(const Set& s);
    Set& operator&=(const Set& s);
    Set& operator|=(const Set& s);

    // nil is not added and answers nil; an element already present is kept
    // and answered, so the caller can tell by comparing with what it gave.
    Object* add(Object& ob) override;
    // Raises REMOVEERR when absent.
    Object* remove(const Object& ob) override;
    Object* removeSame(const Object& ob) override;                     // refused
    Object* replace(const Object& oldOb, Object& newOb) override;      // refused
    Object* replaceSame(const Object& oldOb, Object& newOb) override;  // refused
    Object* find(const Object& ob) const override;                     // nil when absent
    Object* findSame(const Object& ob) const override;
    bool includes(const Object& ob) const override;
    unsigned occurrencesOf(const Object& ob) const override;  // 0 or 1
    void removeAll() override;
    void deleteContents() override;
    // Raises ITEREMOVE when the current element was removed since the last step.
    Object* doNext(Iterator& it) const override;
    // Only when n is above size(); the elements are added anew from the last slot down.
    void reSize(unsigned n) override;

    unsigned capacity() const override { return threshold; }
    unsigned size() const override { return count; }

    void clearCopiedState() override;
    void deepenShallowCopy() override;
    void deepDeleteContents() override;
    void checkContents(const char* functionName) const override;

    // Where the probe for ob starts: h(ob).
    virtual unsigned startIndex(const Object& ob) const;
    // Whether the stored element stands for the candidate.
    virtual bool matches(const Object& stored, const Object& candidate) const;

    unsigned tableMask() const { return mask; }
    unsigned tableSize() const { return mask + 1; }

protected:
    struct SameLayout {};
    // Copies the table as it stands: for the copy constructors of derived
    // classes, whose probing is the same as the original's.
    Set(const Set& s, SameLayout);
    // Stream constructors that leave the elements to the derived class's
    // (readElements), unless withElements is set. The table starts at capacity 1.
    Set(std::istream& is, Object* where, bool withElements);
    Set(BinIstream& is, Object* where, bool withElements);

    // The slot that holds an element matching ob, or the empty slot where
    // the probe for it ends.
    unsigned findIndexOf(const Object& ob) const;
    Object*& slot(unsigned i) const;
    // Places ob in an empty slot, without the growth test.
    void insert(Object& ob);
    void removeAtSlot(unsigned i);

    unsigned mask;       // 2 * threshold - 1
    unsigned threshold;  // the capacity, a power of two
    unsigned count;      // elements held
    ArrayOb* table;      // 2 * threshold slots, owned

private:
    void setCapacity(unsigned n);
    void rehash(unsigned n);  // a new table for capacity n, the elements added anew
    void copyTable(const Set& s);
    void addElementsOf(const Set& s);
};

#endif
