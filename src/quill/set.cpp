// Set: probing, growth, deletion from the linear-probing table, iteration and set algebra.
#include "quill/set.h"

#include <vector>

#include "quill/arrayob.h"
#include "quill/objio.h"
#include "quill/quillerr.h"
#include "quill/quillstr.h"

DEFINE_CLASS(Set, Collection, 1, 0)

namespace {

// Above this a table of 2 * threshold slots no longer has int indices.
const unsigned MAX_CAPACITY = 1u << 29;

}  // namespace

Set::Set(unsigned capacity) : mask(0), threshold(0), count(0), table(0) { setCapacity(capacity); }

Set::Set(const Set& s) : Collection(s), mask(0), threshold(0), count(0), table(0) {
    if (s.isA() == &class_Set) {
        copyTable(s);
    } else {
        setCapacity(s.threshold);
        addElementsOf(s);
    }
}

Set::Set(const Set& s, SameLayout) : Collection(s), mask(0), threshold(0), count(0), table(0) {
    copyTable(s);
}

Set::Set(std::istream& is, Object* where, bool withElements)
    : Collection(is, where), mask(0), threshold(0), count(0), table(0) {
    QASSERT_TEXT(where != 0, "&where!=0");
    setCapacity(1);
    if (withElements) readOrUndo([&] { readElements(is); }, [this] { delete table; });
}

Set::Set(BinIstream& is, Object* where, bool withElements)
    : Collection(is, where), mask(0), threshold(0), count(0), table(0) {
    QASSERT_TEXT(where != 0, "&where!=0");
    setCapacity(1);
    if (withElements) readOrUndo([&] { readElements(is); }, [this] { delete table; });
}

Set::~Set() noexcept(false) { delete table; }

Set& Set::operator=(const Set& s) {
    if (&s == this) return *this;
    if (s.isA() == isA()) {
        ArrayOb* old = table;
        copyTable(s);
        delete old;
    } else {
        removeAll();
        addElementsOf(s);
    }
    return *this;
}

// Allocates an empty table for capacity n: threshold is the next power of
// two at or above n. n = 0 raises ALLOCSIZE.
void Set::setCapacity(unsigned n) {
    if (n == 0) setError(ALLOCSIZE, SEV_ERROR, className(), "setCapacity");
    QASSERT(n <= MAX_CAPACITY);
    unsigned t = 1;
    while (t < n) t <<= 1;
    table = new ArrayOb(2 * t);
    threshold = t;
    mask = 2 * t - 1;
    count = 0;
}

void Set::copyTable(const Set& s) {
    ArrayOb* copy = new ArrayOb(s.mask + 1);
    for (unsigned i = 0; i <= s.mask; ++i) copy->elem(int(i)) = s.slot(i);
    table = copy;
    mask = s.mask;
    threshold = s.threshold;
    count = s.count;
}

void Set::addElementsOf(const Set& s) {
    for (unsigned i = 0; i <= s.mask; ++i)
        if (s.slot(i) != nil) add(*s.slot(i));
}

Object*& Set::slot(unsigned i) const { return table->elem(int(i)); }

unsigned Set::startIndex(const Object& ob) const { return ob.hash() % mask; }

bool Set::matches(const Object& stored, const Object& candidate) const { return stored.isEqual(candidate); }

// The probe runs downward from the start and wraps from slot 0 to the last
// slot. It always ends: at least half of the slots are empty.
unsigned Set::findIndexOf(const Object& ob) const {
    unsigned i = startIndex(ob);
    for (;;) {
        Object* s = slot(i);
        if (s == nil || matches(*s, ob)) return i;
        i = (i - 1) & mask;
    }
}

void Set::insert(Object& ob) {
    unsigned i = findIndexOf(ob);
    if (slot(i) != nil) return;
    slot(i) = &ob;
    ++count;
}

Object* Set::add(Object& ob) {
    if (&ob == nil) return nil;
    unsigned i = findIndexOf(ob);
    Object* s = slot(i);
    if (s != nil) return s;
    slot(i) = &ob;
    if (++count > threshold) rehash(2 * threshold);
    return &ob;
}

Object* Set::remove(const Object& ob) {
    unsigned i = findIndexOf(ob);
    Object* s = slot(i);
    if (s == nil) setError(REMOVEERR, SEV_ERROR, className(), "remove", ob.asCharPointer());
    removeAtSlot(i);
    return s;
}

// Deletion from a linear-probing table: the emptied slot j is a hole that may
// cut a probe chain. Walking on in probe order up to the next empty slot,
// each element whose start r lies cyclically between the walk position i and
// the hole stays reachable and is left; any other moves into the hole, and
// its old slot becomes the hole.
void Set::removeAtSlot(unsigned j) {
    slot(j) = nil;
    unsigned i = j;
    for (;;) {
        i = (i - 1) & mask;
        Object* ob = slot(i);
        if (ob == nil) break;
        unsigned r = startIndex(*ob);
        if ((i <= r && r < j) || (j < i && (r < j || i <= r))) continue;
        slot(j) = ob;
        slot(i) = nil;
        j = i;
    }
    --count;
}

Object* Set::removeSame(const Object&) {
    shouldNotImplement("removeSame");
    return nil;
}

Object* Set::replace(const Object&, Object&) {
    shouldNotImplement("replace");
    return nil;
}

Object* Set::replaceSame(const Object&, Object&) {
    shouldNotImplement("replaceSame");
    return nil;
}

Object* Set::find(const Object& ob) const { return slot(findIndexOf(ob)); }

// A Set holds at most one element equal to ob: it is ob itself or nothing is.
Object* Set::findSame(const Object& ob) const {
    Object* s = find(ob);
    return s == &ob ? s : nil;
}

bool Set::includes(const Object& ob) const { return find(ob) != nil; }

unsigned Set::occurrencesOf(const Object& ob) const { return includes(ob) ? 1 : 0; }

void Set::removeAll() {
    for (unsigned i = 0; i <= mask; ++i) slot(i) = nil;
    count = 0;
}

void Set::deleteContents() {
    for (unsigned i = 0; i <= mask; ++i) {
        Object* ob = slot(i);
        if (ob == nil) continue;
        slot(i) = nil;
        --count;
        delete ob;
    }
}

Object* Set::doNext(Iterator& it) const {
    int slots = int(mask + 1);
    if (it.current && it.index >= 0 && it.index < slots && slot(unsigned(it.index)) == nil)
        setError(ITEREMOVE, SEV_ERROR, className(),
                 formatText("the iterator stood at slot %d after %d elements", it.index, it.count));
    for (int i = it.index + 1; i < slots; ++i) {
        Object* ob = slot(unsigned(i));
        if (ob == nil) continue;
        it.index = i;
        it.current = ob;
        ++it.count;
        return ob;
    }
    it.index = slots;
    it.current = 0;
    return 0;
}

void Set::reSize(unsigned n) {
    if (n > count) rehash(n);
}

// Growth from add goes here directly: a Set of capacity 1 that takes its
// second element must grow although 2 * threshold is not above its size,
// or its two slots would both be full and a probe for an absent element
// would never end.
void Set::rehash(unsigned n) {
    ArrayOb* old = table;
    unsigned oldSlots = mask + 1;
    setCapacity(n);
    for (unsigned i = oldSlots; i-- > 0;) {
        Object* ob = old->elem(int(i));
        if (ob != nil) insert(*ob);
    }
    delete old;
}

// A bitwise copy shares the table: give the copy its own.
void Set::clearCopiedState() {
    Collection::clearCopiedState();
    ArrayOb* shared = table;
    table = new ArrayOb(mask + 1);
    for (unsigned i = 0; i <= mask; ++i) slot(i) = shared->elem(int(i));
}

// The elements are replaced by deep copies, placed anew: an IdentSet places
// them by address, which the copies don't share with the originals.
void Set::deepenShallowCopy() {
    Collection::deepenShallowCopy();
    std::vector<Object*> copies;
    copies.reserve(count);
    for (unsigned i = 0; i <= mask; ++i)
        if (slot(i) != nil) copies.push_back(slot(i)->deepCopy());
    removeAll();
    for (Object* ob : copies) add(*ob);
}

void Set::deepDeleteContents() {
    Collection::deepDeleteContents();
    for (unsigned i = 0; i <= mask; ++i)
        if (slot(i) != nil) deepDelete(slot(i));
    removeAll();
}

void Set::checkContents(const char* functionName) const {
    Collection::checkContents(functionName);
    validate(table, functionName, 0);
    for (unsigned i = 0; i <= mask; ++i)
        if (slot(i) != nil) validate(slot(i), functionName, 0);
}

// Set algebra

Set Set::operator-(const Set& s) const {
    Set result(threshold);
    for (unsigned i = 0; i <= mask; ++i)
        if (slot(i) != nil && !s.includes(*slot(i))) result.add(*slot(i));
    return result;
}

Set Set::operator&(const Set& s) const {
    Set result(threshold);
    for (unsigned i = 0; i <= mask; ++i)
        if (slot(i) != nil && s.includes(*slot(i))) result.add(*slot(i));
    return result;
}

Set Set::operator|(const Set& s) const {
    Set result(threshold);
    result.addElementsOf(*this);
    result.addElementsOf(s);
    return result;
}

Set& Set::operator-=(const Set& s) {
    if (&s == this) {
        removeAll();
        return *this;
    }
    for (unsigned i = 0; i <= s.mask; ++i)
        if (s.slot(i) != nil && includes(*s.slot(i))) remove(*s.slot(i));
    return *this;
}

// Removal moves elements between slots: the leavers are picked first.
Set& Set::operator&=(const Set& s) {
    std::vector<Object*> leavers;
    for (unsigned i = 0; i <= mask; ++i)
        if (slot(i) != nil && !s.includes(*slot(i))) leavers.push_back(slot(i));
    for (Object* ob : leavers) remove(*ob);
    return *this;
}

Set& Set::operator|=(const Set& s) {
    if (&s != this) addElementsOf(s);
    return *this;
}
