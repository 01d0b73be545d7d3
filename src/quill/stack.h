// Stack, an OrderedCltn used from its end, with its own growth step.
#ifndef QUILL_STACK_H
#define QUILL_STACK_H

#include "quill/orderedc.h"

extern Class class_Stack;

class Stack : public OrderedCltn {
    DECLARE_MEMBERS(Stack)
public:
    // A full stack grows by extendBy slots; a step below 1 grows by 32.
    explicit Stack(unsigned capacity = DEFAULT_CAPACITY, int extendBy = DEFAULT_CAPACITY);
    Stack(const Stack& s);
    // The elements as in OrderedCltn, then extendBy.
    Stack(std::istream& is, Object* where);
    Stack(BinIstream& is, Object* where);
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;
    Stack& operator=(const Stack& s);

    Object* push(Object& ob) { return addLast(ob); }
    Object* pop() { return removeLast(); }  // CLTNEMPTY when empty
    Object* top() const { return last(); }  // CLTNEMPTY when empty

    int growth() const { return extendBy; }

protected:
    unsigned growthStep() const override;

private:
    int extendBy;
};

#endif
