// OrderedCltn, the growable sequence that most of the system keeps its lists in.
#ifndef QUILL_ORDEREDC_H
#define QUILL_ORDEREDC_H

#include "quill/arrayob.h"
#include "quill/seqcltn.h"

extern Class class_OrderedCltn;

// Elements sit in slots 0..endIndex-1 of an owned ArrayOb; the slots above
// are always nil. A full collection grows by a fixed step (32), whatever its size.
class OrderedCltn : public SeqCltn {
    DECLARE_MEMBERS(OrderedCltn)
public:
    explicit OrderedCltn(unsigned capacity = DEFAULT_CAPACITY);
    OrderedCltn(const OrderedCltn& c);
    OrderedCltn(std::istream& is, Object* where) : OrderedCltn(is, where, true) {}
    OrderedCltn(BinIstream& is, Object* where) : OrderedCltn(is, where, true) {}
    ~OrderedCltn() noexcept(false) override;
    OrderedCltn& operator=(const OrderedCltn& c);

    // Checked access: INDEXRANGE outside 0..size()-1.
    Object*& operator[](int i);
    Object* operator[](int i) const;

    Object* add(Object& ob) override;
    // i above size() is taken as size(); a negative i raises INDEXRANGE.
    Object* addAtIndex(int i, Object& ob);
    Object* removeAtIndex(int i);

    Object* addFirst(Object& ob) override;
    Object* addLast(Object& ob) override;
    Object* addBefore(const Object& ob, Object& newOb) override;  // OBNOTFOUND
    Object* addAfter(const Object& ob, Object& newOb) override;   // OBNOTFOUND
    Object* first() const override;                               // CLTNEMPTY when empty, as the three below
    Object* last() const override;
    Object* removeFirst() override;
    Object* removeLast() override;
    // The neighbours of ob: nil at the ends, OBNOTFOUND when ob is absent.
    Object* before(const Object& ob) const override;
    Object* after(const Object& ob) const override;
    Object* at(int i) const override;
    // The same without a call when i is in range, for the interpreter's look-ups of variables.
    Object* atInline(int i) const { return unsigned(i) < unsigned(endIndex) ? contents->elem(i) : at(i); }

    int indexOf(const Object& ob) const override;  // first isEqual from the front
    int indexOfSame(const Object& ob) const;       // first by identity
    // The remove family answers the element taken out; REMOVEERR when absent.
    Object* remove(const Object& ob) override;
    Object* removeSame(const Object& ob) override;
    Object* replace(const Object& oldOb, Object& newOb) override;
    Object* replaceSame(const Object& oldOb, Object& newOb) override;
    Object* find(const Object& ob) const override;
    Object* findSame(const Object& ob) const override;
    unsigned occurrencesOf(const Object& ob) const override;  // by operator==
    void removeAll() override;
    void deleteContents() override;

    // Never below size().
    void reSize(unsigned n) override;
    // By compare, through the C library's quick sort (not stable).
    void sort();
    void reSort() override;

    unsigned capacity() const override;
    // Final, so that a size asked of an OrderedCltn is read without a call.
    unsigned size() const final { return unsigned(endIndex); }

    void clearCopiedState() override;
    void deepenShallowCopy() override;
    void deepDeleteContents() override;

protected:
    // Stream constructors that leave the elements to the derived class's
    // (readElements), unless withElements is set.
    OrderedCltn(std::istream& is, Object* where, bool withElements);
    OrderedCltn(BinIstream& is, Object* where, bool withElements);

    // The step by which a full collection grows.
    virtual unsigned growthStep() const { return 32; }
    void checkIndex(int i, const char* method) const;
    // Sorts the elements with a qsort-style comparison of two Object* slots.
    void sortWith(int (*compare)(const void*, const void*));

    ArrayOb* contents;  // owned
    int endIndex;       // number of elements
};

#endif
