// Heap, a priority queue: first in first out, smallest first or largest first.
#ifndef QUILL_HEAP_H
#define QUILL_HEAP_H

#include "quill/seqcltn.h"

class ArrayOb;
class IntArray;

extern Class class_Heap;

// A binary heap in slots 1..endIndex-1 of contents; slot 0 is scratch for the
// sifting. Every element carries the number of its insertion in the parallel
// sequence array, whose slot 0 counts all insertions: elements that compare
// equal leave in the order in which they came, and a FIFO heap orders by the
// numbers alone. Positions (at, indexOf, iteration) follow the slots, not the
// priority order.
class Heap : public SeqCltn {
    DECLARE_MEMBERS(Heap)
public:
    enum { FIFO = 0, MIN = 1, MAX = -1 };
    enum { GROWTH = 32 };

    // kind 0: first in first out; above 0: smallest first; below 0: largest first.
    explicit Heap(unsigned capacity = DEFAULT_CAPACITY, int kind = FIFO);
    Heap(const Heap& h);
    // Capacity, size and kind, then the elements in slot order, which are
    // added anew on reading.
    Heap(std::istream& is, Object* where);
    Heap(BinIstream& is, Object* where);
    ~Heap() noexcept(false) override;
    Heap& operator=(const Heap& h);

    Object* add(Object& ob) override;
    Object* first() const override;  // the next to leave; CLTNEMPTY when empty
    Object* removeFirst() override;  // CLTNEMPTY when empty
    // Finds by a search of the tree pruned by the heap order; REMOVEERR when absent.
    Object* remove(const Object& ob) override;
    Object* removeSame(const Object& ob) override;  // by identity; REMOVEERR
    Object* find(const Object& ob) const override;
    Object* findSame(const Object& ob) const override;
    int indexOf(const Object& ob) const override;
    Object* at(int i) const override;  // slot i + 1; INDEXRANGE
    unsigned occurrencesOf(const Object& ob) const override;
    // Restores the order around ob after its key changed; OBNOTFOUND when absent.
    Object* touch(const Object& ob);
    // Restores the order of the whole heap, after the keys of many elements changed.
    void reSort() override;

    // Refused: a heap has no last element and no neighbours.
    Object* last() const override;
    Object* removeLast() override;
    Object* before(const Object& ob) const override;
    Object* after(const Object& ob) const override;
    Object* addFirst(Object& ob) override;
    Object* addLast(Object& ob) override;
    Object* addBefore(const Object& ob, Object& newOb) override;
    Object* addAfter(const Object& ob, Object& newOb) override;

    void removeAll() override;
    void deleteContents() override;    // in slot order
    void reSize(unsigned n) override;  // never below size()

    int heapKind() const { return kind; }
    unsigned capacity() const override;
    unsigned size() const override { return unsigned(endIndex - 1); }

    void printOn(std::ostream& os) const override;  // Heap(FIFO)[...], Heap (MIN)[...]
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;
    void clearCopiedState() override;
    void deepenShallowCopy() override;
    void deepDeleteContents() override;

protected:
    // Below 0 when slot a leaves before slot b.
    int compareSlots(int a, int b) const;

    int kind;
    int endIndex;        // first free slot; 1 when empty
    ArrayOb* contents;   // owned, capacity + 1 slots
    IntArray* sequence;  // owned, parallel to contents; [0] counts insertions

private:
    template <class Stream>
    void readContents(Stream& is, unsigned capacity, unsigned n);
    int searchSlot(const Object& ob, int i) const;
    int slotOfSame(const Object& ob) const;
    int siftUp(int i);
    void siftDown(int i);
    void moveSlot(int from, int to);
    Object* removeSlot(int i);
    void renumber();
};

#endif
