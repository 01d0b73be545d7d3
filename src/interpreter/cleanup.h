// Guards, owned lists and hand-over helpers: what a scope made is deleted when it ends, exceptions included.
#ifndef INTERPRETER_CLEANUP_H
#define INTERPRETER_CLEANUP_H

#include <memory>
#include <utility>

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

// Adds ob to list, which owns it from then on; when the list cannot grow, ob
// goes at once, so that running out of memory leaves nothing behind.
inline void addOwned(OrderedCltn& list, Object* ob) {
    try {
        list.add(*ob);
    } catch (...) {
        delete ob;
        throw;
    }
}

// Deletes a list and what it holds, as a node given such a list does; null is no list.
struct ListDeleter {
    void operator()(OrderedCltn* list) const {
        if (!list) return;
        list->deleteContents();
        delete list;
    }
};
using OwnedList = std::unique_ptr<OrderedCltn, ListDeleter>;

namespace cleanup_detail {
template <class T>
T&& passed(T&& argument) {
    return std::forward<T>(argument);
}
template <class U, class D>
U* passed(std::unique_ptr<U, D>& owner) {
    return owner.get();
}
template <class T>
void givenUp(T&) {}
template <class U, class D>
void givenUp(std::unique_ptr<U, D>& owner) {
    owner.release();
}
}  // namespace cleanup_detail

// A new T made from arguments, of which each owner passes its pointer: the owners
// give their pointers up only once T, which takes them, is made, so that a
// failure on the way leaves each with its owner.
template <class T, class... Args>
std::unique_ptr<T> makeTaking(Args&&... arguments) {
    std::unique_ptr<T> made(new T(cleanup_detail::passed(std::forward<Args>(arguments))...));
    (cleanup_detail::givenUp(arguments), ...);
    return made;
}

// Hands the elements of from one by one to take, which owns each once it
// returns, and empties from; when take raises, from keeps what was not taken.
template <class Take>
void handOver(OrderedCltn& from, Take take) {
    for (unsigned i = 0; i < from.size(); ++i) {
        take(from.at(int(i)));
        from[int(i)] = nil;
    }
    from.removeAll();
}

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
