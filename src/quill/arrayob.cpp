// ArrayOb: checked slot access, resizing, sorting, copying and stream form of object arrays.
#include "quill/arrayob.h"

#include <cstdlib>
#include <cstring>
#include <ostream>

#include "quill/objalloc.h"
#include "quill/objio.h"
#include "quill/quillerr.h"

DEFINE_CLASS(ArrayOb, Collection, 1, 0)

namespace {

int compareObjects(const void* a, const void* b) {
    return (*static_cast<Object* const*>(a))->compare(**static_cast<Object* const*>(b));
}

}  // namespace

void ArrayOb::allocate(unsigned n) {
    sz = n;
    unsigned slots = n > 0 ? n : 1;
    v = static_cast<Object**>(objectAlloc(slots * sizeof(Object*)));
    for (unsigned i = 0; i < slots; ++i) v[i] = nil;
}

ArrayOb::ArrayOb(unsigned size) { allocate(size); }

ArrayOb::ArrayOb(const ArrayOb& a) : Collection(a) {
    allocate(a.sz);
    if (sz) memcpy(v, a.v, sz * sizeof(Object*));
}

// Each slot is nil until its element is read: a slot that refers back to
// this array finds it alive. The array grows as its slots are read, so that
// a damaged count ends at the end of the stream, not in a huge allocation.
template <class Stream>
void ArrayOb::readSlots(Stream& is, unsigned n) {
    allocate(capacityToReserve(n));
    readOrUndo(
        [&] {
            for (unsigned i = 0; i < n; ++i) {
                if (i == sz) reSize(n / 2 > i ? 2 * i : n);
                v[i] = readElement(is);
            }
        },
        [this] { objectFree(v); });
}

ArrayOb::ArrayOb(std::istream& is, Object* where) : Collection(is, where), v(0), sz(0) {
    QASSERT_TEXT(where != 0, "&where!=0");
    readSlots(is, readNumber<unsigned>(is));
}

ArrayOb::ArrayOb(BinIstream& is, Object* where) : Collection(is, where), v(0), sz(0) {
    QASSERT_TEXT(where != 0, "&where!=0");
    unsigned n;
    is >> n;
    readSlots(is, n);
}

ArrayOb::~ArrayOb() noexcept(false) { objectFree(v); }

ArrayOb& ArrayOb::operator=(const ArrayOb& a) {
    if (&a == this) return *this;
    objectFree(v);
    allocate(a.sz);
    if (sz) memcpy(v, a.v, sz * sizeof(Object*));
    return *this;
}

void ArrayOb::checkIndex(int i, const char* method) const {
    if (i < 0 || unsigned(i) >= sz) setError(INDEXRANGE, SEV_ERROR, className(), method, i);
}

Object*& ArrayOb::operator[](int i) {
    checkIndex(i, "operator[]");
    return v[i];
}

Object* ArrayOb::operator[](int i) const {
    checkIndex(i, "operator[]");
    return v[i];
}

Object* ArrayOb::atIndex(int i) const {
    checkIndex(i, "atIndex");
    return v[i];
}

Object* ArrayOb::atIndexPut(int i, Object& ob) {
    checkIndex(i, "atIndexPut");
    validate(&ob, "ArrayOb::atIndexPut");
    Object* old = v[i];
    v[i] = &ob;
    return old;
}

Object* ArrayOb::add(Object&) {
    shouldNotImplement("add");
    return nil;
}

void ArrayOb::removeAll() {
    for (unsigned i = 0; i < sz; ++i) v[i] = nil;
}

void ArrayOb::deleteContents() {
    for (unsigned i = 0; i < sz; ++i) {
        Object* el = v[i];
        v[i] = nil;
        if (el != nil) delete el;
    }
}

Object* ArrayOb::doNext(Iterator& it) const {
    if (it.index + 1 < int(sz)) {
        ++it.index;
        ++it.count;
        it.current = v[it.index];
    } else {
        it.index = int(sz);
        it.current = 0;
    }
    return it.current;
}

// In place when the allocator can: the sequences grow their array often.
void ArrayOb::reSize(unsigned n) {
    if (n == sz) return;
    unsigned slots = n > 0 ? n : 1;
    v = static_cast<Object**>(objectRealloc(v, slots * sizeof(Object*)));
    for (unsigned i = n < sz ? n : sz; i < slots; ++i) v[i] = nil;
    sz = n;
}

void ArrayOb::sort() {
    if (sz > 1) qsort(v, sz, sizeof(Object*), compareObjects);
}

bool ArrayOb::isEqual(const Object& ob) const {
    if (this == &ob) return true;
    if (!ob.isSpecies(*species())) return false;
    const ArrayOb& a = static_cast<const ArrayOb&>(ob);
    if (a.sz != sz) return false;
    for (unsigned i = 0; i < sz; ++i)
        if (*v[i] != *a.v[i]) return false;
    return true;
}

unsigned ArrayOb::hash() const {
    unsigned h = sz;
    for (unsigned i = 0; i < sz; ++i) h ^= v[i]->hash();
    return h;
}

void ArrayOb::storer(std::ostream& os) const {
    Object::storer(os);
    os << sz;
    for (unsigned i = 0; i < sz; ++i) v[i]->storeOn(os);
}

void ArrayOb::storer(BinOstream& os) const {
    Object::storer(os);
    os << sz;
    for (unsigned i = 0; i < sz; ++i) v[i]->storeOn(os);
}

// A bitwise copy shares the slots: give it its own.
void ArrayOb::clearCopiedState() {
    Collection::clearCopiedState();
    Object** shared = v;
    allocate(sz);
    if (sz) memcpy(v, shared, sz * sizeof(Object*));
}

void ArrayOb::deepenShallowCopy() {
    Collection::deepenShallowCopy();
    for (unsigned i = 0; i < sz; ++i) v[i] = v[i]->deepCopy();
}

void ArrayOb::deepDeleteContents() {
    for (unsigned i = 0; i < sz; ++i) deepDelete(v[i]);
}
