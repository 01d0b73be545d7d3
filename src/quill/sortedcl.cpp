// SortedCltn: ordered insertion and search by a replaceable comparison function.
#include "quill/sortedcl.h"

#include "quill/arrayob.h"
#include "quill/quillerr.h"

DEFINE_CLASS(SortedCltn, OrderedCltn, 1, 0)

namespace {

// The C library's sort takes no context: the function of the sort in
// progress is kept here, and restored afterwards for a nested sort.
SortedCltn::CompareFunction activeCompare = 0;

int compareActive(const void* a, const void* b) {
    return activeCompare(static_cast<Object* const*>(a), static_cast<Object* const*>(b));
}

}  // namespace

int SortedCltn::defaultCompare(Object* const* a, Object* const* b) { return (*a)->compare(**b); }

SortedCltn::SortedCltn(unsigned capacity) : OrderedCltn(capacity), compareFunction(defaultCompare) {}

SortedCltn::SortedCltn(const SortedCltn& c) : OrderedCltn(c), compareFunction(c.compareFunction) {}

SortedCltn::SortedCltn(std::istream& is, Object* where)
    : OrderedCltn(is, where, false), compareFunction(defaultCompare) {
    readElements(is);
}

SortedCltn::SortedCltn(BinIstream& is, Object* where)
    : OrderedCltn(is, where, false), compareFunction(defaultCompare) {
    readElements(is);
}

SortedCltn& SortedCltn::operator=(const SortedCltn& c) {
    OrderedCltn::operator=(c);
    compareFunction = c.compareFunction;
    return *this;
}

// ob against the element at i.
int SortedCltn::compareWith(const Object& ob, int i) const {
    Object* p = const_cast<Object*>(&ob);
    return compareFunction(&p, &contents->elem(i));
}

Object* SortedCltn::add(Object& ob) {
    int low = 0, high = endIndex;
    while (low < high) {
        int mid = (low + high) / 2;
        if (compareWith(ob, mid) < 0)
            high = mid;
        else
            low = mid + 1;
    }
    return addAtIndex(low, ob);
}

Object* SortedCltn::addFirst(Object&) {
    shouldNotImplement("addFirst");
    return nil;
}

Object* SortedCltn::addLast(Object&) {
    shouldNotImplement("addLast");
    return nil;
}

Object* SortedCltn::addBefore(const Object&, Object&) {
    shouldNotImplement("addBefore");
    return nil;
}

Object* SortedCltn::addAfter(const Object&, Object&) {
    shouldNotImplement("addAfter");
    return nil;
}

int SortedCltn::indexOf(const Object& ob) const {
    int low = 0, high = endIndex - 1, start = -1;
    while (low <= high) {
        int mid = (low + high) / 2;
        int c = compareWith(ob, mid);
        if (c == 0) {
            start = mid;
            break;
        }
        if (c < 0)
            high = mid - 1;
        else
            low = mid + 1;
    }
    if (start < 0) return -1;
    for (int i = start; i < endIndex && compareWith(ob, i) == 0; ++i)
        if (contents->elem(i)->isEqual(ob)) return i;
    for (int i = start - 1; i >= 0 && compareWith(ob, i) == 0; --i)
        if (contents->elem(i)->isEqual(ob)) return i;
    return -1;
}

SortedCltn::CompareFunction SortedCltn::setCompareFunction(CompareFunction f) {
    CompareFunction former = compareFunction;
    if (f) {
        compareFunction = f;
        reSort();
    }
    return former;
}

void SortedCltn::reSort() {
    CompareFunction outer = activeCompare;
    activeCompare = compareFunction;
    try {
        sortWith(compareActive);
    } catch (...) {
        activeCompare = outer;
        throw;
    }
    activeCompare = outer;
}
