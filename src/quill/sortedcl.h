// SortedCltn, an OrderedCltn kept in the order of a comparison function.
#ifndef QUILL_SORTEDCL_H
#define QUILL_SORTEDCL_H

#include "quill/orderedc.h"

extern Class class_SortedCltn;

class SortedCltn : public OrderedCltn {
    DECLARE_MEMBERS(SortedCltn)
public:
    // Compares the objects that two slots point to, as the C library's sort does.
    typedef int (*CompareFunction)(Object* const* a, Object* const* b);
    // The default: (*a)->compare(**b).
    static int defaultCompare(Object* const* a, Object* const* b);

    explicit SortedCltn(unsigned capacity = DEFAULT_CAPACITY);
    SortedCltn(const SortedCltn& c);
    // The elements are added anew in the default order: a function can't be stored.
    SortedCltn(std::istream& is, Object* where);
    SortedCltn(BinIstream& is, Object* where);
    SortedCltn& operator=(const SortedCltn& c);

    // Inserts after the last element that compares equal, so that equal
    // elements keep the order in which they were added.
    Object* add(Object& ob) override;
    Object* addFirst(Object& ob) override;                        // refused
    Object* addLast(Object& ob) override;                         // refused
    Object* addBefore(const Object& ob, Object& newOb) override;  // refused
    Object* addAfter(const Object& ob, Object& newOb) override;   // refused

    // Binary search to an element that compares equal, then a walk over the
    // run of equal ones for one that isEqual: forward first, then backward.
    int indexOf(const Object& ob) const override;

    // Answers the former function; a new non-null one resorts at once, a
    // null one changes nothing.
    CompareFunction setCompareFunction(CompareFunction f);
    CompareFunction compareFunctionOf() const { return compareFunction; }
    void reSort() override;

private:
    int compareWith(const Object& ob, int i) const;

    CompareFunction compareFunction;
};

#endif
