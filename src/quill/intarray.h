// IntArray, a fixed-size array of signed integers.
#ifndef QUILL_INTARRAY_H
#define QUILL_INTARRAY_H

#include "quill/object.h"
#include "quill/qclass.h"

extern Class class_IntArray;

class IntArray : public Object {
    DECLARE_MEMBERS(IntArray)
public:
    enum { DEFAULT_CAPACITY = 16 };

    explicit IntArray(unsigned size = DEFAULT_CAPACITY);  // zero-filled
    IntArray(const IntArray& a);
    // The size, then the values.
    IntArray(std::istream& is, Object* where);
    IntArray(BinIstream& is, Object* where);
    ~IntArray() noexcept(false) override;
    IntArray& operator=(const IntArray& a);

    // Checked access: INDEXRANGE outside 0..size()-1.
    int& operator[](int i);
    int operator[](int i) const;
    // Unchecked access.
    int& elem(int i) { return v[i]; }
    int elem(int i) const { return v[i]; }

    // Keeps the first n values; new ones are 0.
    void reSize(unsigned n);
    unsigned capacity() const override { return sz; }
    unsigned size() const override { return sz; }

    bool isEqual(const Object& ob) const override;
    unsigned hash() const override;
    void printOn(std::ostream& os) const override;  // IntArray[1, 2, 3]
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;
    void clearCopiedState() override;

private:
    void allocate(unsigned n);
    void checkIndex(int i) const;
    template <class Stream>
    void readValues(Stream& is);

    int* v;       // max(sz, 1) values from the object allocator
    unsigned sz;  // the capacity
};

#endif
