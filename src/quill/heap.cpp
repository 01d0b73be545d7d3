// Heap: insertion, removal, reordering and stream form of a binary heap with a stable tie-break.
#include "quill/heap.h"

#include <ostream>

#include "quill/arrayob.h"
#include "quill/intarray.h"
#include "quill/objio.h"
#include "quill/quillerr.h"

DEFINE_CLASS(Heap, SeqCltn, 1, 0)

Heap::Heap(unsigned capacity, int kind)
    : kind(kind), endIndex(1), contents(new ArrayOb(capacity + 1)), sequence(new IntArray(capacity + 1)) {}

Heap::Heap(const Heap& h)
    : SeqCltn(h),
      kind(h.kind),
      endIndex(h.endIndex),
      contents(new ArrayOb(*h.contents)),
      sequence(new IntArray(*h.sequence)) {}

template <class Stream>
void Heap::readContents(Stream& is, unsigned capacity, unsigned n) {
    unsigned reserved = capacityToReserve(capacity);
    contents = new ArrayOb(reserved + 1);
    sequence = new IntArray(reserved + 1);
    readOrUndo(
        [&] {
            for (unsigned i = 0; i < n; ++i) add(*readElement(is));
        },
        [this] {
            delete contents;
            delete sequence;
        });
    if (capacity > reserved) reSize(capacityToKeep(capacity));
}

Heap::Heap(std::istream& is, Object* where)
    : SeqCltn(is, where), kind(FIFO), endIndex(1), contents(0), sequence(0) {
    QASSERT_TEXT(where != 0, "&where!=0");
    unsigned capacity = readNumber<unsigned>(is);
    unsigned n = readNumber<unsigned>(is);
    kind = readNumber<int>(is);
    readContents(is, capacity, n);
}

Heap::Heap(BinIstream& is, Object* where)
    : SeqCltn(is, where), kind(FIFO), endIndex(1), contents(0), sequence(0) {
    QASSERT_TEXT(where != 0, "&where!=0");
    unsigned capacity, n;
    is >> capacity >> n >> kind;
    readContents(is, capacity, n);
}

Heap::~Heap() noexcept(false) {
    delete contents;
    delete sequence;
}

Heap& Heap::operator=(const Heap& h) {
    if (&h == this) return *this;
    kind = h.kind;
    endIndex = h.endIndex;
    *contents = *h.contents;
    *sequence = *h.sequence;
    return *this;
}

// Insertion numbers are compared unsigned: the counter runs over all 32 bits.
int Heap::compareSlots(int a, int b) const {
    if (kind != 0) {
        int c = contents->elem(a)->compare(*contents->elem(b));
        if (c != 0) return (c < 0) == (kind > 0) ? -1 : 1;
    }
    unsigned sa = unsigned(sequence->elem(a)), sb = unsigned(sequence->elem(b));
    return sa < sb ? -1 : sa > sb ? 1 : 0;
}

void Heap::moveSlot(int from, int to) {
    contents->elem(to) = contents->elem(from);
    sequence->elem(to) = sequence->elem(from);
}

// The moving element waits in slot 0, which is also the sentinel that stops
// the loop at the root (a slot never compares above itself). The insertion
// counter that slot 0 of sequence holds is put back afterwards. Answers the
// slot where the element ends.
int Heap::siftUp(int i) {
    int counter = sequence->elem(0);
    moveSlot(i, 0);
    try {
        while (compareSlots(i >> 1, 0) > 0) {
            moveSlot(i >> 1, i);
            i >>= 1;
        }
    } catch (...) {
        moveSlot(0, i);
        contents->elem(0) = nil;
        sequence->elem(0) = counter;
        throw;
    }
    moveSlot(0, i);
    contents->elem(0) = nil;
    sequence->elem(0) = counter;
    return i;
}

// Moves the element at i down past every child that leaves before it,
// taking the left child when both leave together.
void Heap::siftDown(int i) {
    for (;;) {
        int child = 2 * i;
        if (child >= endIndex) return;
        if (child + 1 < endIndex && compareSlots(child + 1, child) < 0) ++child;
        if (compareSlots(child, i) >= 0) return;
        Object* el = contents->elem(i);
        int number = sequence->elem(i);
        moveSlot(child, i);
        contents->elem(child) = el;
        sequence->elem(child) = number;
        i = child;
    }
}

// When the insertion counter is exhausted, the elements are added anew in
// the order in which they leave, numbered from 0, which keeps their order.
void Heap::renumber() {
    Heap copy(*this);
    contents->removeAll();
    for (unsigned i = 0; i < sequence->size(); ++i) sequence->elem(i) = 0;
    endIndex = 1;
    while (!copy.isEmpty()) add(*copy.removeFirst());
}

Object* Heap::add(Object& ob) {
    validate(&ob, "Heap::add");
    if (sequence->elem(0) == -1) renumber();
    if (size() == capacity()) reSize(capacity() + GROWTH);
    int i = endIndex++;
    int number = int(unsigned(sequence->elem(0)) + 1);
    sequence->elem(0) = number;
    sequence->elem(i) = number;
    contents->elem(i) = &ob;
    siftUp(i);
    return &ob;
}

Object* Heap::first() const {
    if (endIndex == 1) setError(CLTNEMPTY, SEV_ERROR, className(), "first");
    return contents->elem(1);
}

// The last element fills the hole and moves up or down to its place.
Object* Heap::removeSlot(int i) {
    Object* removed = contents->elem(i);
    int lastSlot = --endIndex;
    if (i != lastSlot) moveSlot(lastSlot, i);
    contents->elem(lastSlot) = nil;
    sequence->elem(lastSlot) = 0;
    if (i < endIndex && siftUp(i) == i) siftDown(i);
    return removed;
}

Object* Heap::removeFirst() {
    if (endIndex == 1) setError(CLTNEMPTY, SEV_ERROR, className(), "removeFirst");
    return removeSlot(1);
}

// Depth-first from slot i; a subtree whose root leaves after ob cannot hold
// an element equal to it. A FIFO heap has no order by value: all is searched.
int Heap::searchSlot(const Object& ob, int i) const {
    if (i >= endIndex) return 0;
    Object* el = contents->elem(i);
    if (el->isEqual(ob)) return i;
    if (kind != 0) {
        int c = el->compare(ob);
        if (kind < 0) c = -c;
        if (c > 0) return 0;
    }
    int found = searchSlot(ob, 2 * i);
    return found ? found : searchSlot(ob, 2 * i + 1);
}

// By identity the key may have changed since the element was placed, so the
// order can't prune: every slot is looked at.
int Heap::slotOfSame(const Object& ob) const {
    for (int i = 1; i < endIndex; ++i)
        if (contents->elem(i) == &ob) return i;
    return 0;
}

Object* Heap::remove(const Object& ob) {
    int i = searchSlot(ob, 1);
    if (!i) setError(REMOVEERR, SEV_ERROR, className(), "remove", ob.asCharPointer());
    return removeSlot(i);
}

Object* Heap::removeSame(const Object& ob) {
    int i = slotOfSame(ob);
    if (!i) setError(REMOVEERR, SEV_ERROR, className(), "removeSame", ob.asCharPointer());
    return removeSlot(i);
}

Object* Heap::find(const Object& ob) const {
    int i = searchSlot(ob, 1);
    return i ? contents->elem(i) : nil;
}

Object* Heap::findSame(const Object& ob) const { return slotOfSame(ob) ? const_cast<Object*>(&ob) : nil; }

int Heap::indexOf(const Object& ob) const { return searchSlot(ob, 1) - 1; }

Object* Heap::at(int i) const {
    if (i < 0 || i >= endIndex - 1) setError(INDEXRANGE, SEV_ERROR, className(), "at", i);
    return contents->elem(i + 1);
}

unsigned Heap::occurrencesOf(const Object& ob) const {
    unsigned n = 0;
    for (int i = 1; i < endIndex; ++i)
        if (*contents->elem(i) == ob) ++n;
    return n;
}

Object* Heap::touch(const Object& ob) {
    int i = slotOfSame(ob);
    if (!i) setError(OBNOTFOUND, SEV_ERROR, className(), "touch", ob.asCharPointer());
    if (siftUp(i) == i) siftDown(i);
    return const_cast<Object*>(&ob);
}

void Heap::reSort() {
    for (int i = (endIndex - 1) / 2; i >= 1; --i) siftDown(i);
}

Object* Heap::last() const {
    shouldNotImplement("last");
    return nil;
}

Object* Heap::removeLast() {
    shouldNotImplement("removeLast");
    return nil;
}

Object* Heap::before(const Object&) const {
    shouldNotImplement("before");
    return nil;
}

Object* Heap::after(const Object&) const {
    shouldNotImplement("after");
    return nil;
}

Object* Heap::addFirst(Object&) {
    shouldNotImplement("addFirst");
    return nil;
}

Object* Heap::addLast(Object&) {
    shouldNotImplement("addLast");
    return nil;
}

Object* Heap::addBefore(const Object&, Object&) {
    shouldNotImplement("addBefore");
    return nil;
}

Object* Heap::addAfter(const Object&, Object&) {
    shouldNotImplement("addAfter");
    return nil;
}

void Heap::removeAll() {
    for (int i = 1; i < endIndex; ++i) {
        contents->elem(i) = nil;
        sequence->elem(i) = 0;
    }
    endIndex = 1;
}

void Heap::deleteContents() {
    for (int i = 1; i < endIndex; ++i) {
        Object* el = contents->elem(i);
        contents->elem(i) = nil;
        if (el != nil) delete el;
    }
    removeAll();
}

void Heap::reSize(unsigned n) {
    if (n < size()) return;
    contents->reSize(n + 1);
    sequence->reSize(n + 1);
}

unsigned Heap::capacity() const { return contents->capacity() - 1; }

void Heap::storer(std::ostream& os) const {
    Object::storer(os);
    os << capacity() << ' ' << size() << ' ' << kind;
    for (int i = 1; i < endIndex; ++i) contents->elem(i)->storeOn(os);
}

void Heap::storer(BinOstream& os) const {
    Object::storer(os);
    os << capacity() << size() << kind;
    for (int i = 1; i < endIndex; ++i) contents->elem(i)->storeOn(os);
}

void Heap::printOn(std::ostream& os) const {
    os << className() << (kind == 0 ? "(FIFO)" : kind > 0 ? " (MIN)" : " (MAX)") << "[";
    for (int i = 1; i < endIndex; ++i) {
        if (i > 1) os << ", ";
        contents->elem(i)->printOn(os);
    }
    os << "]";
}

void Heap::clearCopiedState() {
    SeqCltn::clearCopiedState();
    contents = new ArrayOb(*contents);
    sequence = new IntArray(*sequence);
}

void Heap::deepenShallowCopy() {
    SeqCltn::deepenShallowCopy();
    for (int i = 1; i < endIndex; ++i) contents->elem(i) = contents->elem(i)->deepCopy();
}

void Heap::deepDeleteContents() {
    for (int i = 1; i < endIndex; ++i) deepDelete(contents->elem(i));
}
