// ArrayOb, a fixed-size array of object pointers with nil in the empty slots.
#ifndef QUILL_ARRAYOB_H
#define QUILL_ARRAYOB_H

#include "quill/collectn.h"

extern Class class_ArrayOb;

// The representation under the sequences and sets. Its size is its capacity:
// every slot counts, nil ones included, and the iteration visits them all.
class ArrayOb : public Collection {
    DECLARE_MEMBERS(ArrayOb)
public:
    enum { DEFAULT_CAPACITY = 16 };

    explicit ArrayOb(unsigned size = DEFAULT_CAPACITY);
    ArrayOb(const ArrayOb& a);
    // The capacity, then every slot, nil ones included.
    ArrayOb(std::istream& is, Object* where);
    ArrayOb(BinIstream& is, Object* where);
    ~ArrayOb() noexcept(false) override;
    ArrayOb& operator=(const ArrayOb& a);

    // Checked access: INDEXRANGE outside 0..size()-1.
    Object*& operator[](int i);
    Object* operator[](int i) const;
    Object* atIndex(int i) const;
    Object* atIndexPut(int i, Object& ob);  // answers the former element
    // Unchecked access, for the collections built on this array.
    Object*& elem(int i) { return v[i]; }
    Object* elem(int i) const { return v[i]; }
    Object** data() { return v; }

    Object* add(Object& ob) override;  // refused
    void removeAll() override;         // every slot back to nil
    void deleteContents() override;    // deletes what is not nil, then removeAll
    Object* doNext(Iterator& it) const override;
    // Keeps the first n slots (nil-filling new ones); the storage keeps one slot at least.
    void reSize(unsigned n) override;
    void sort();  // by compare, over all slots

    unsigned capacity() const override { return sz; }
    unsigned size() const override { return sz; }

    bool isEqual(const Object& ob) const override;
    unsigned hash() const override;
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;
    void clearCopiedState() override;
    void deepenShallowCopy() override;
    void deepDeleteContents() override;

private:
    void checkIndex(int i, const char* method) const;
    void allocate(unsigned n);
    template <class Stream>
    void readSlots(Stream& is, unsigned n);

    Object** v;   // max(sz, 1) slots from the object allocator
    unsigned sz;  // the capacity
};

#endif
