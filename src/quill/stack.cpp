// Stack: construction and the growth step of a stack.
#include "quill/stack.h"

DEFINE_CLASS(Stack, OrderedCltn, 1, 0)

Stack::Stack(unsigned capacity, int extendBy) : OrderedCltn(capacity), extendBy(extendBy) {}

Stack::Stack(const Stack& s) : OrderedCltn(s), extendBy(s.extendBy) {}

Stack& Stack::operator=(const Stack& s) {
    OrderedCltn::operator=(s);
    extendBy = s.extendBy;
    return *this;
}

unsigned Stack::growthStep() const { return extendBy > 0 ? unsigned(extendBy) : OrderedCltn::growthStep(); }
