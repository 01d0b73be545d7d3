// SeqCltn: the iteration of sequences and the operations left to derived classes.
#include "quill/seqcltn.h"

DEFINE_ABSTRACT_CLASS(SeqCltn, Collection, 1, 0)

int SeqCltn::indexOf(const Object&) const {
    derivedClassResponsibility("indexOf");
    return -1;
}

Object* SeqCltn::at(int) const {
    derivedClassResponsibility("at");
    return nil;
}

Object* SeqCltn::first() const {
    derivedClassResponsibility("first");
    return nil;
}

Object* SeqCltn::addFirst(Object&) {
    derivedClassResponsibility("addFirst");
    return nil;
}

Object* SeqCltn::removeFirst() {
    derivedClassResponsibility("removeFirst");
    return nil;
}

Object* SeqCltn::last() const {
    derivedClassResponsibility("last");
    return nil;
}

Object* SeqCltn::addLast(Object&) {
    derivedClassResponsibility("addLast");
    return nil;
}

Object* SeqCltn::removeLast() {
    derivedClassResponsibility("removeLast");
    return nil;
}

Object* SeqCltn::before(const Object&) const {
    derivedClassResponsibility("before");
    return nil;
}

Object* SeqCltn::addBefore(const Object&, Object&) {
    derivedClassResponsibility("addBefore");
    return nil;
}

Object* SeqCltn::after(const Object&) const {
    derivedClassResponsibility("after");
    return nil;
}

Object* SeqCltn::addAfter(const Object&, Object&) {
    derivedClassResponsibility("addAfter");
    return nil;
}

void SeqCltn::reSort() { derivedClassResponsibility("reSort"); }

// When the current element is no longer at the iterator's index, it was
// removed (or replaced) since the last step, and its successor has moved
// into that slot: answer it without advancing, so that nothing is skipped.
Object* SeqCltn::doNext(Iterator& it) const {
    int n = int(size());
    int idx = it.index;
    if (idx >= 0 && idx < n && it.current && it.current != at(idx)) {
        ++it.count;
        it.current = at(idx);
        return it.current;
    }
    if (idx + 1 < n) {
        it.index = idx + 1;
        ++it.count;
        it.current = at(it.index);
        return it.current;
    }
    it.index = n;
    it.current = 0;
    return 0;
}

bool SeqCltn::includes(const Object& ob) const { return indexOf(ob) >= 0; }

bool SeqCltn::isEqual(const Object& ob) const {
    if (this == &ob) return true;
    if (!ob.isSpecies(*species())) return false;
    const SeqCltn& s = static_cast<const SeqCltn&>(ob);
    int n = int(size());
    if (int(s.size()) != n) return false;
    for (int i = 0; i < n; ++i)
        if (*at(i) != *s.at(i)) return false;
    return true;
}

unsigned SeqCltn::hash() const {
    unsigned h = size();
    int n = int(size());
    for (int i = 0; i < n; ++i) h ^= at(i)->hash();
    return h;
}
