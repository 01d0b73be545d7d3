// ContentsGuard and ValueGuard: what a scope made is deleted when it ends, exceptions included.
#ifndef INTERPRETER_CLEANUP_H
#define INTERPRETER_CLEANUP_H

#include "interpreter/variable.h"
#include "quill/orderedc.h"

// Deletes what the collection holds.
class ContentsGuard {
public:
    explicit ContentsGuard(OrderedCltn& collection) : collection(collection) {}
    ~ContentsGuard() { collection.deleteContents(); }
    ContentsGuard(const ContentsGuard&) = delete;
    ContentsGuard& operator=(const ContentsGuard&) = delete;

private:
    OrderedCltn& collection;
};

// Holds a value unless released; the void prototype, which stands for "no value"
// and belongs to nobody, is never destroyed.
class ValueGuard {
public:
    explicit ValueGuard(Variable* value = 0) : value(value) {}
    ~ValueGuard() { destroy(value); }
    ValueGuard(const ValueGuard&) = delete;
    ValueGuard& operator=(const ValueGuard&) = delete;

    Variable* get() const { return value; }
    Variable* release() {
        Variable* v = value;
        value = 0;
        return v;
    }
    void reset(Variable* v) {
        if (v != value) destroy(value);
        value = v;
    }
    static void destroy(Variable* v) {
        if (v && v != Variable::voidType()) delete v;
    }

private:
    Variable* value;
};

// Deletes the values of a list from the last to the first and empties it: a
// variable made later dies first, which keeps the removal from the liveness list
// short, and a reference goes before what it refers to.
inline void deleteValuesFromLast(OrderedCltn& values) {
    while (values.size() > 0) ValueGuard::destroy(static_cast<Variable*>(values.removeLast()));
}

#endif
