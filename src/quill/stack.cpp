// Stack: construction, stream form and the growth step of a stack.
#include "quill/stack.h"

#include <ostream>

#include "quill/binstrm.h"
#include "quill/objio.h"

DEFINE_CLASS(Stack, OrderedCltn, 1, 0)

Stack::Stack(unsigned capacity, int extendBy) : OrderedCltn(capacity), extendBy(extendBy) {}

Stack::Stack(const Stack& s) : OrderedCltn(s), extendBy(s.extendBy) {}

// The elements come first on the stream: until extendBy is read, the stack
// has the default step (the capacity read leaves no need to grow).
Stack::Stack(std::istream& is, Object* where) : OrderedCltn(is, where, false), extendBy(DEFAULT_CAPACITY) {
    readElements(is);
    extendBy = readNumber<int>(is);
}

Stack::Stack(BinIstream& is, Object* where) : OrderedCltn(is, where, false), extendBy(DEFAULT_CAPACITY) {
    readElements(is);
    is >> extendBy;
}

// A blank on each side: an empty stack's size must not run into the step.
void Stack::storer(std::ostream& os) const {
    OrderedCltn::storer(os);
    os << ' ' << extendBy << ' ';
}

void Stack::storer(BinOstream& os) const {
    OrderedCltn::storer(os);
    os << extendBy;
}

Stack& Stack::operator=(const Stack& s) {
    OrderedCltn::operator=(s);
    extendBy = s.extendBy;
    return *this;
}

unsigned Stack::growthStep() const { return extendBy > 0 ? unsigned(extendBy) : OrderedCltn::growthStep(); }
