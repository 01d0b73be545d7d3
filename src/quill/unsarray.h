// UnsArray, a fixed-size array of indices: an IntArray whose values count from 0.
#ifndef QUILL_UNSARRAY_H
#define QUILL_UNSARRAY_H

#include "quill/intarray.h"

extern Class class_UnsArray;

// The same storage and stream form as IntArray, under its own class name, for the lists of
// input and output numbers that designs store.
class UnsArray : public IntArray {
    DECLARE_MEMBERS(UnsArray)
public:
    explicit UnsArray(unsigned size = DEFAULT_CAPACITY) : IntArray(size) {}
    UnsArray(const UnsArray& a) : IntArray(a) {}
    UnsArray(std::istream& is, Object* where) : IntArray(is, where) {}
    UnsArray(BinIstream& is, Object* where) : IntArray(is, where) {}
    UnsArray& operator=(const UnsArray& a) {
        IntArray::operator=(a);
        return *this;
    }
};

#endif
