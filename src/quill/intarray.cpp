// IntArray: checked access, resizing, comparison, printing and stream form of integer arrays.
#include "quill/intarray.h"

#include <cstring>
#include <ostream>

#include "quill/binstrm.h"
#include "quill/objalloc.h"
#include "quill/objio.h"
#include "quill/quillerr.h"
#include "quill/readgrow.h"

DEFINE_CLASS(IntArray, Object, 1, 0)

void IntArray::allocate(unsigned n) {
    sz = n;
    unsigned slots = n > 0 ? n : 1;
    v = static_cast<int*>(objectCalloc(slots, sizeof(int)));
}

IntArray::IntArray(unsigned size) { allocate(size); }

IntArray::IntArray(const IntArray& a) : Object(a) {
    allocate(a.sz);
    if (sz) memcpy(v, a.v, sz * sizeof(int));
}

// The values arrive into storage that grows with them: a damaged count
// ends at the end of the stream, not in a huge allocation.
template <class Stream>
void IntArray::readValues(Stream& is) {
    unsigned n = readNumber<unsigned>(is);
    v = readGrowing<int>(is, n);
    sz = n;
}

IntArray::IntArray(std::istream& is, Object* where) : Object(is, where), v(0), sz(0) {
    QASSERT_TEXT(where != 0, "&where!=0");
    readValues(is);
}

IntArray::IntArray(BinIstream& is, Object* where) : Object(is, where), v(0), sz(0) {
    QASSERT_TEXT(where != 0, "&where!=0");
    readValues(is);
}

IntArray::~IntArray() noexcept(false) { objectFree(v); }

IntArray& IntArray::operator=(const IntArray& a) {
    if (&a == this) return *this;
    objectFree(v);
    allocate(a.sz);
    if (sz) memcpy(v, a.v, sz * sizeof(int));
    return *this;
}

void IntArray::checkIndex(int i) const {
    if (i < 0 || unsigned(i) >= sz) setError(INDEXRANGE, SEV_ERROR, className(), "operator[]", i);
}

int& IntArray::operator[](int i) {
    checkIndex(i);
    return v[i];
}

int IntArray::operator[](int i) const {
    checkIndex(i);
    return v[i];
}

void IntArray::reSize(unsigned n) {
    if (n == sz) return;
    unsigned slots = n > 0 ? n : 1;
    v = static_cast<int*>(objectRealloc(v, slots * sizeof(int)));
    for (unsigned i = n < sz ? n : sz; i < slots; ++i) v[i] = 0;
    sz = n;
}

bool IntArray::isEqual(const Object& ob) const {
    if (this == &ob) return true;
    if (!ob.isSpecies(*species())) return false;
    const IntArray& a = static_cast<const IntArray&>(ob);
    return a.sz == sz && (sz == 0 || memcmp(a.v, v, sz * sizeof(int)) == 0);
}

unsigned IntArray::hash() const {
    unsigned h = sz;
    for (unsigned i = 0; i < sz; ++i) h = (h << 5 | h >> 27) ^ unsigned(v[i]);
    return h;
}

void IntArray::storer(std::ostream& os) const {
    Object::storer(os);
    os << sz << ' ';
    for (unsigned i = 0; i < sz; ++i) os << v[i] << ' ';
}

void IntArray::storer(BinOstream& os) const {
    Object::storer(os);
    os.putArray(v, sz);
}

void IntArray::printOn(std::ostream& os) const {
    os << className() << "[";
    for (unsigned i = 0; i < sz; ++i) os << (i ? ", " : "") << v[i];
    os << "]";
}

void IntArray::clearCopiedState() {
    Object::clearCopiedState();
    int* shared = v;
    allocate(sz);
    if (sz) memcpy(v, shared, sz * sizeof(int));
}
