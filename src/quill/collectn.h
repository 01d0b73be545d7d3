// Collection, the abstract root of the containers, and Iterator, their cursor.
#ifndef QUILL_COLLECTN_H
#define QUILL_COLLECTN_H

#include "quill/object.h"
#include "quill/qclass.h"

class ArrayOb;
class OrderedCltn;
class Set;
class SortedCltn;
class Iterator;

extern Class class_Collection;
extern Class class_Iterator;

// Error codes added to the table by the class initors of Collection and Dictionary.
extern int CLTNEMPTY, OBNOTFOUND, REMOVEERR, ITEREMOVE, DUPKEY, KEYNOTFOUND;

class Collection : public Object {
    DECLARE_MEMBERS(Collection)
public:
    virtual Object* add(Object& ob);
    virtual Object* remove(const Object& ob);
    virtual Object* removeSame(const Object& ob);
    virtual Object* replace(const Object& oldOb, Object& newOb);
    virtual Object* replaceSame(const Object& oldOb, Object& newOb);
    virtual Object* find(const Object& ob) const;
    virtual Object* findSame(const Object& ob) const;
    virtual const Collection& addContentsOf(const Collection& c);
    virtual const Collection& removeContentsOf(const Collection& c);
    virtual void removeAll();
    virtual void deleteContents();
    virtual Object* doNext(Iterator& it) const;
    virtual void doReset(Iterator& it) const;
    virtual bool includes(const Object& ob) const;
    virtual unsigned occurrencesOf(const Object& ob) const;
    virtual void reSize(unsigned n);

    ArrayOb asArrayOb() const;
    OrderedCltn asOrderedCltn() const;
    Set asSet() const;
    SortedCltn asSortedCltn() const;
    // A new, empty collection of class c (made by its creator) holding these elements.
    Collection* convert(const Class& c) const;

    bool isEmpty() const { return size() == 0; }
    void printOn(std::ostream& os) const override;  // Class[a, b, c]

    // Capacity, size, then every element in the order of iteration.
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;

protected:
    Collection() {}
    Collection(const Collection& c) : Object(c) {}
    Collection(std::istream& is, Object* where) : Object(is, where) {}
    Collection(BinIstream& is, Object* where) : Object(is, where) {}

    // The fields of Collection's storer: reSize to the capacity read, then
    // add each element read. Only the most-derived class's stream constructor
    // calls it, at the end of its body, so that reSize and add are its own:
    // the derived classes chain to a base constructor that reads no elements.
    void readElements(std::istream& is);
    void readElements(BinIstream& is);

public:
    // One element of any class; the end of the stream raises RDEOF here,
    // where readFrom would answer nil.
    static Object* readElement(std::istream& is);
    static Object* readElement(BinIstream& is);
    // A damaged number on a stream must not ask for gigabytes: a reader
    // reserves at most READ_RESERVE slots before its elements are read, and
    // grows as they come; a larger capacity is taken once they are all
    // there, up to READ_CAPACITY_LIMIT.
    enum { READ_RESERVE = 1 << 12, READ_CAPACITY_LIMIT = 1 << 20 };
    static unsigned capacityToReserve(unsigned capacity);  // at most READ_RESERVE
    static unsigned capacityToKeep(unsigned capacity);     // at most READ_CAPACITY_LIMIT
};

class Iterator : public Object {
    DECLARE_MEMBERS(Iterator)
public:
    explicit Iterator(const Collection& c);
    Iterator(const Iterator& it);
    // Index, count, then the collection; reading resets the iterator and
    // steps it count times.
    Iterator(std::istream& is, Object* where);
    Iterator(BinIstream& is, Object* where);
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;

    void reset();
    Object* operator()();  // next element, or null at the end
    Object* operator++() { return (*this)(); }
    const Collection* collection() const { return cltn; }

    bool isEqual(const Object& ob) const override;
    unsigned hash() const override;
    void printOn(std::ostream& os) const override;

    const Collection* cltn;
    int index;
    Object* current;  // null before the first element and after the last
    int count;        // calls of doNext since the reset

private:
    Iterator();               // refused: "creator"
    void advance(int steps);  // reset, then steps calls of doNext
};

#endif
