// SeqCltn, the abstract root of the collections whose elements have positions.
#ifndef QUILL_SEQCLTN_H
#define QUILL_SEQCLTN_H

#include "quill/collectn.h"

extern Class class_SeqCltn;

// Positions run from 0 to size()-1. Every operation below is left to the
// derived classes; SeqCltn itself gives the iteration, which survives the
// removal of the current element, and equality by position.
class SeqCltn : public Collection {
    DECLARE_MEMBERS(SeqCltn)
public:
    enum { DEFAULT_CAPACITY = 16 };

    virtual int indexOf(const Object& ob) const;  // -1 when absent
    virtual Object* at(int i) const;
    virtual Object* first() const;
    virtual Object* addFirst(Object& ob);
    virtual Object* removeFirst();
    virtual Object* last() const;
    virtual Object* addLast(Object& ob);
    virtual Object* removeLast();
    virtual Object* before(const Object& ob) const;
    virtual Object* addBefore(const Object& ob, Object& newOb);
    virtual Object* after(const Object& ob) const;
    virtual Object* addAfter(const Object& ob, Object& newOb);
    virtual void reSort();

    Object* doNext(Iterator& it) const override;
    bool includes(const Object& ob) const override;  // by indexOf

    // Same species, same size, elements equal position by position.
    bool isEqual(const Object& ob) const override;
    unsigned hash() const override;

protected:
    SeqCltn() {}
    SeqCltn(const SeqCltn& s) : Collection(s) {}
    SeqCltn(std::istream& is, Object* where) : Collection(is, where) {}
    SeqCltn(BinIstream& is, Object* where) : Collection(is, where) {}
};

#endif
