// OrderedCltn: insertion, removal, search and sorting of a growable sequence.
#include "quill/orderedc.h"

#include <cstdlib>
#include <cstring>

#include "quill/arrayob.h"
#include "quill/objio.h"
#include "quill/quillerr.h"

DEFINE_CLASS(OrderedCltn, SeqCltn, 1, 0)

namespace {

int compareObjects(const void* a, const void* b) {
    return (*static_cast<Object* const*>(a))->compare(**static_cast<Object* const*>(b));
}

}  // namespace

OrderedCltn::OrderedCltn(unsigned capacity) : contents(new ArrayOb(capacity)), endIndex(0) {}

OrderedCltn::OrderedCltn(const OrderedCltn& c)
    : SeqCltn(c), contents(new ArrayOb(*c.contents)), endIndex(c.endIndex) {}

OrderedCltn::OrderedCltn(std::istream& is, Object* where, bool withElements)
    : SeqCltn(is, where), contents(new ArrayOb(DEFAULT_CAPACITY)), endIndex(0) {
    QASSERT_TEXT(where != 0, "&where!=0");
    if (withElements) readOrUndo([&] { readElements(is); }, [this] { delete contents; });
}

OrderedCltn::OrderedCltn(BinIstream& is, Object* where, bool withElements)
    : SeqCltn(is, where), contents(new ArrayOb(DEFAULT_CAPACITY)), endIndex(0) {
    QASSERT_TEXT(where != 0, "&where!=0");
    if (withElements) readOrUndo([&] { readElements(is); }, [this] { delete contents; });
}

OrderedCltn::~OrderedCltn() noexcept(false) { delete contents; }

OrderedCltn& OrderedCltn::operator=(const OrderedCltn& c) {
    if (&c == this) return *this;
    *contents = *c.contents;
    endIndex = c.endIndex;
    return *this;
}

void OrderedCltn::checkIndex(int i, const char* method) const {
    if (i < 0 || i >= endIndex) setError(INDEXRANGE, SEV_ERROR, className(), method, i);
}

Object*& OrderedCltn::operator[](int i) {
    checkIndex(i, "operator[]");
    return contents->elem(i);
}

Object* OrderedCltn::operator[](int i) const {
    checkIndex(i, "operator[]");
    return contents->elem(i);
}

Object* OrderedCltn::at(int i) const {
    checkIndex(i, "at");
    return contents->elem(i);
}

Object* OrderedCltn::add(Object& ob) { return addAtIndex(endIndex, ob); }

Object* OrderedCltn::addAtIndex(int i, Object& ob) {
    if (i < 0) setError(INDEXRANGE, SEV_ERROR, className(), "addAtIndex", i);
    if (i > endIndex) i = endIndex;
    validate(&ob, "OrderedCltn::addAtIndex");
    if (unsigned(endIndex) == capacity()) reSize(capacity() + growthStep());
    Object** v = contents->data();
    memmove(v + i + 1, v + i, (endIndex - i) * sizeof(Object*));
    v[i] = &ob;
    ++endIndex;
    return &ob;
}

// The tail moves down and the freed slot gets nil, so that the unused part
// of the array stays nil.
Object* OrderedCltn::removeAtIndex(int i) {
    checkIndex(i, "removeAtIndex");
    Object** v = contents->data();
    Object* removed = v[i];
    memmove(v + i, v + i + 1, (endIndex - i - 1) * sizeof(Object*));
    v[--endIndex] = nil;
    return removed;
}

Object* OrderedCltn::addFirst(Object& ob) { return addAtIndex(0, ob); }
Object* OrderedCltn::addLast(Object& ob) { return addAtIndex(endIndex, ob); }

Object* OrderedCltn::addBefore(const Object& ob, Object& newOb) {
    int i = indexOf(ob);
    if (i < 0) setError(OBNOTFOUND, SEV_ERROR, className(), "addBefore", ob.asCharPointer());
    return addAtIndex(i, newOb);
}

Object* OrderedCltn::addAfter(const Object& ob, Object& newOb) {
    int i = indexOf(ob);
    if (i < 0) setError(OBNOTFOUND, SEV_ERROR, className(), "addAfter", ob.asCharPointer());
    return addAtIndex(i + 1, newOb);
}

Object* OrderedCltn::first() const {
    if (endIndex == 0) setError(CLTNEMPTY, SEV_ERROR, className(), "first");
    return contents->elem(0);
}

Object* OrderedCltn::last() const {
    if (endIndex == 0) setError(CLTNEMPTY, SEV_ERROR, className(), "last");
    return contents->elem(endIndex - 1);
}

Object* OrderedCltn::removeFirst() {
    if (endIndex == 0) setError(CLTNEMPTY, SEV_ERROR, className(), "removeFirst");
    return removeAtIndex(0);
}

Object* OrderedCltn::removeLast() {
    if (endIndex == 0) setError(CLTNEMPTY, SEV_ERROR, className(), "removeLast");
    return removeAtIndex(endIndex - 1);
}

Object* OrderedCltn::before(const Object& ob) const {
    int i = indexOf(ob);
    if (i < 0) setError(OBNOTFOUND, SEV_ERROR, className(), "before", ob.asCharPointer());
    return i == 0 ? nil : contents->elem(i - 1);
}

Object* OrderedCltn::after(const Object& ob) const {
    int i = indexOf(ob);
    if (i < 0) setError(OBNOTFOUND, SEV_ERROR, className(), "after", ob.asCharPointer());
    return i == endIndex - 1 ? nil : contents->elem(i + 1);
}

int OrderedCltn::indexOf(const Object& ob) const {
    for (int i = 0; i < endIndex; ++i)
        if (contents->elem(i)->isEqual(ob)) return i;
    return -1;
}

int OrderedCltn::indexOfSame(const Object& ob) const {
    for (int i = 0; i < endIndex; ++i)
        if (contents->elem(i) == &ob) return i;
    return -1;
}

Object* OrderedCltn::remove(const Object& ob) {
    int i = indexOf(ob);
    if (i < 0) setError(REMOVEERR, SEV_ERROR, className(), "remove", ob.asCharPointer());
    return removeAtIndex(i);
}

Object* OrderedCltn::removeSame(const Object& ob) {
    int i = indexOfSame(ob);
    if (i < 0) setError(REMOVEERR, SEV_ERROR, className(), "removeSame", ob.asCharPointer());
    return removeAtIndex(i);
}

Object* OrderedCltn::replace(const Object& oldOb, Object& newOb) {
    validate(&newOb, "OrderedCltn::replace");
    int i = indexOf(oldOb);
    if (i < 0) setError(REMOVEERR, SEV_ERROR, className(), "replace", oldOb.asCharPointer());
    Object* old = contents->elem(i);
    contents->elem(i) = &newOb;
    return old;
}

Object* OrderedCltn::replaceSame(const Object& oldOb, Object& newOb) {
    validate(&newOb, "OrderedCltn::replaceSame");
    int i = indexOfSame(oldOb);
    if (i < 0) setError(REMOVEERR, SEV_ERROR, className(), "replaceSame", oldOb.asCharPointer());
    Object* old = contents->elem(i);
    contents->elem(i) = &newOb;
    return old;
}

Object* OrderedCltn::find(const Object& ob) const {
    int i = indexOf(ob);
    return i < 0 ? nil : contents->elem(i);
}

Object* OrderedCltn::findSame(const Object& ob) const {
    return indexOfSame(ob) < 0 ? nil : const_cast<Object*>(&ob);
}

unsigned OrderedCltn::occurrencesOf(const Object& ob) const {
    unsigned n = 0;
    for (int i = 0; i < endIndex; ++i)
        if (*contents->elem(i) == ob) ++n;
    return n;
}

void OrderedCltn::removeAll() {
    contents->removeAll();
    endIndex = 0;
}

void OrderedCltn::deleteContents() {
    for (int i = 0; i < endIndex; ++i) {
        Object* el = contents->elem(i);
        contents->elem(i) = nil;
        if (el != nil) delete el;
    }
    removeAll();
}

void OrderedCltn::reSize(unsigned n) {
    if (n >= unsigned(endIndex)) contents->reSize(n);
}

void OrderedCltn::sortWith(int (*compare)(const void*, const void*)) {
    if (endIndex > 1) qsort(contents->data(), endIndex, sizeof(Object*), compare);
}

void OrderedCltn::sort() { sortWith(compareObjects); }
void OrderedCltn::reSort() { sort(); }

unsigned OrderedCltn::capacity() const { return contents->capacity(); }

void OrderedCltn::clearCopiedState() {
    SeqCltn::clearCopiedState();
    contents = new ArrayOb(*contents);
}

void OrderedCltn::deepenShallowCopy() {
    SeqCltn::deepenShallowCopy();
    for (int i = 0; i < endIndex; ++i) contents->elem(i) = contents->elem(i)->deepCopy();
}

void OrderedCltn::deepDeleteContents() {
    for (int i = 0; i < endIndex; ++i) deepDelete(contents->elem(i));
}
