// Collection: the default operations of every container, its errors, and Iterator.
#include "quill/collectn.h"

#include <cstdint>
#include <istream>
#include <memory>
#include <ostream>

#include "quill/arrayob.h"
#include "quill/objio.h"
#include "quill/orderedc.h"
#include "quill/quillerr.h"
#include "quill/set.h"
#include "quill/sortedcl.h"

int CLTNEMPTY = 0, OBNOTFOUND = 0, REMOVEERR = 0, ITEREMOVE = 0;

static void initCollection(Class*) {
    CLTNEMPTY = newQUILLerror("[CLTNEMPTY] Collection empty: %s::%s()");
    OBNOTFOUND = newQUILLerror("[OBNOTFOUND] Object not found: %s::%s(%s)");
    REMOVEERR = newQUILLerror("[REMOVEERR] Tried to remove object not in collection: %s::%s(%s)");
    ITEREMOVE = newQUILLerror("[ITEREMOVE] Cannot remove an object from a %s during an iteration\n%s");
}

DEFINE_ABSTRACT_CLASS(Collection, Object, 1, initCollection)

namespace {

// A temporary OrderedCltn holding the elements of c; deleted with the holder.
std::unique_ptr<OrderedCltn> snapshot(const Collection& c) {
    std::unique_ptr<OrderedCltn> copy(new OrderedCltn(c.size()));
    copy->addContentsOf(c);
    return copy;
}

template <class Stream>
void readElementsFrom(Collection& c, Stream& is) {
    unsigned capacity = readNumber<unsigned>(is);
    unsigned n = readNumber<unsigned>(is);
    unsigned reserved = Collection::capacityToReserve(capacity);
    c.reSize(reserved);
    for (unsigned i = 0; i < n; ++i) c.add(*Collection::readElement(is));
    if (capacity > reserved) c.reSize(Collection::capacityToKeep(capacity));
}

template <class Stream>
void storeElementsOf(const Collection& c, Stream& os) {
    Iterator it(c);
    while (Object* el = it()) el->storeOn(os);
}

}  // namespace

Object* Collection::add(Object&) {
    derivedClassResponsibility("add");
    return nil;
}

Object* Collection::remove(const Object&) {
    derivedClassResponsibility("remove");
    return nil;
}

Object* Collection::removeSame(const Object&) {
    derivedClassResponsibility("removeSame");
    return nil;
}

Object* Collection::replace(const Object&, Object&) {
    derivedClassResponsibility("replace");
    return nil;
}

Object* Collection::replaceSame(const Object&, Object&) {
    derivedClassResponsibility("replaceSame");
    return nil;
}

Object* Collection::find(const Object& ob) const {
    Iterator it(*this);
    while (Object* el = it())
        if (el->isEqual(ob)) return el;
    return nil;
}

Object* Collection::findSame(const Object& ob) const {
    Iterator it(*this);
    while (Object* el = it())
        if (el == &ob) return el;
    return nil;
}

// Adding a collection to itself works on a snapshot, so that the iteration
// does not see what it adds.
const Collection& Collection::addContentsOf(const Collection& c) {
    if (&c == this) {
        std::unique_ptr<OrderedCltn> copy = snapshot(c);
        return addContentsOf(*copy);
    }
    Iterator it(c);
    while (Object* el = it()) add(*el);
    return *this;
}

const Collection& Collection::removeContentsOf(const Collection& c) {
    if (&c == this) {
        std::unique_ptr<OrderedCltn> copy = snapshot(c);
        return removeContentsOf(*copy);
    }
    Iterator it(c);
    while (Object* el = it()) remove(*el);
    return *this;
}

// Removes each element of a temporary copy, which iterates safely whatever
// the removal does to this collection.
void Collection::removeAll() {
    std::unique_ptr<Collection> copy(convert(class_OrderedCltn));
    Iterator it(*copy);
    while (Object* el = it()) remove(*el);
}

// Empties this collection first; then each element is taken out of the copy
// before it is deleted, so no destructor runs while a container still holds it.
void Collection::deleteContents() {
    std::unique_ptr<OrderedCltn> copy = snapshot(*this);
    removeAll();
    while (!copy->isEmpty()) {
        Object* el = copy->removeLast();
        if (el != nil) delete el;
    }
}

Object* Collection::doNext(Iterator&) const {
    derivedClassResponsibility("doNext");
    return 0;
}

void Collection::doReset(Iterator& it) const {
    it.index = -1;
    it.current = 0;
    it.count = 0;
}

bool Collection::includes(const Object& ob) const { return occurrencesOf(ob) > 0; }

unsigned Collection::occurrencesOf(const Object& ob) const {
    unsigned n = 0;
    Iterator it(*this);
    while (Object* el = it())
        if (*el == ob) ++n;
    return n;
}

void Collection::reSize(unsigned) { derivedClassResponsibility("reSize"); }

// ArrayOb has no add: its slots are filled in iteration order.
ArrayOb Collection::asArrayOb() const {
    ArrayOb a(size());
    int i = 0;
    Iterator it(*this);
    while (Object* el = it()) a.elem(i++) = el;
    return a;
}

OrderedCltn Collection::asOrderedCltn() const {
    OrderedCltn c(size());
    c.addContentsOf(*this);
    return c;
}

Set Collection::asSet() const {
    Set s(size() > 0 ? size() : 1);
    s.addContentsOf(*this);
    return s;
}

SortedCltn Collection::asSortedCltn() const {
    SortedCltn c(size());
    c.addContentsOf(*this);
    return c;
}

Collection* Collection::convert(const Class& c) const {
    Collection* result = CAST(Collection, c.create());
    result->addContentsOf(*this);
    return result;
}

void Collection::storer(std::ostream& os) const {
    Object::storer(os);
    os << capacity() << ' ' << size();
    storeElementsOf(*this, os);
}

void Collection::storer(BinOstream& os) const {
    Object::storer(os);
    os << capacity() << size();
    storeElementsOf(*this, os);
}

unsigned Collection::capacityToReserve(unsigned capacity) {
    return capacity < READ_RESERVE ? capacity : unsigned(READ_RESERVE);
}

unsigned Collection::capacityToKeep(unsigned capacity) {
    return capacity < READ_CAPACITY_LIMIT ? capacity : unsigned(READ_CAPACITY_LIMIT);
}

// readFrom answers nil at end of file: inside a collection that is an early end.
Object* Collection::readElement(std::istream& is) {
    Object* ob = readFrom(is, "", nil);
    if (ob == nil && is.fail()) setError(RDEOF, SEV_ERROR);
    return ob;
}

Object* Collection::readElement(BinIstream& is) {
    Object* ob = readFrom(is, "", nil);
    if (ob == nil && is.stream().eof()) setError(RDEOF, SEV_ERROR);
    return ob;
}

void Collection::readElements(std::istream& is) { readElementsFrom(*this, is); }

void Collection::readElements(BinIstream& is) { readElementsFrom(*this, is); }

void Collection::printOn(std::ostream& os) const {
    os << className() << "[";
    const char* separator = "";
    Iterator it(*this);
    while (Object* el = it()) {
        os << separator;
        el->printOn(os);
        separator = ", ";
    }
    os << "]";
}

// Iterator: a cursor that asks its collection for each step. It has no
// default instance.
DEFINE_ABSTRACT_CLASS(Iterator, Object, 1, 0)

Iterator::Iterator() : cltn(0), index(-1), current(0), count(0) { shouldNotImplement("creator"); }

Iterator::Iterator(const Collection& c) : cltn(&c), index(-1), current(0), count(0) { c.doReset(*this); }

Iterator::Iterator(const Iterator& it)
    : Object(it), cltn(it.cltn), index(it.index), current(it.current), count(it.count) {}

// The collection is read whole before the iterator steps through it.
Iterator::Iterator(std::istream& is, Object* where)
    : Object(is, where), cltn(0), index(-1), current(0), count(0) {
    QASSERT_TEXT(where != 0, "&where!=0");
    index = readNumber<int>(is);
    int steps = readNumber<int>(is);
    cltn = CAST(Collection, readFrom(is, "", nil));
    advance(steps);
}

Iterator::Iterator(BinIstream& is, Object* where)
    : Object(is, where), cltn(0), index(-1), current(0), count(0) {
    QASSERT_TEXT(where != 0, "&where!=0");
    int steps;
    is >> index >> steps;
    cltn = CAST(Collection, readFrom(is, "", nil));
    advance(steps);
}

void Iterator::advance(int steps) {
    cltn->doReset(*this);
    for (int i = 0; i < steps; ++i) cltn->doNext(*this);
}

void Iterator::storer(std::ostream& os) const {
    Object::storer(os);
    os << index << ' ' << count << ' ';
    cltn->storeOn(os);
}

void Iterator::storer(BinOstream& os) const {
    Object::storer(os);
    os << index << count;
    cltn->storeOn(os);
}

void Iterator::reset() { cltn->doReset(*this); }

Object* Iterator::operator()() { return cltn->doNext(*this); }

bool Iterator::isEqual(const Object& ob) const {
    if (!ob.isSpecies(*species())) return false;
    const Iterator& other = static_cast<const Iterator&>(ob);
    return cltn == other.cltn && index == other.index && count == other.count;
}

unsigned Iterator::hash() const { return unsigned(uintptr_t(cltn)) ^ unsigned(index) ^ unsigned(count); }

void Iterator::printOn(std::ostream& os) const {
    os << className() << "(" << (cltn ? cltn->className() : "0") << ", index " << index << ", count " << count
       << ")";
}
