// Integer and Float: comparison, hashing, printing and stream forms of the number objects.
#include "quill/integer.h"

#include <cstring>
#include <istream>
#include <ostream>

#include "quill/binstrm.h"
#include "quill/quillerr.h"
#include "quill/quillstr.h"

DEFINE_CLASS(Integer, Object, 1, 0)
DEFINE_CLASS(Float, Object, 1, 0)

bool Integer::isEqual(const Object& ob) const {
    return ob.isSpecies(class_Integer) && static_cast<const Integer&>(ob).val == val;
}

int Integer::compare(const Object& ob) const {
    assertArgSpecies(ob, class_Integer, "compare");
    int other = static_cast<const Integer&>(ob).val;
    return val < other ? -1 : val > other ? 1 : 0;
}

unsigned Integer::hash() const { return unsigned(val); }
void Integer::printOn(std::ostream& os) const { os << val; }
const char* Integer::asCharPointer() const { return formatText("%d", val); }

bool Float::isEqual(const Object& ob) const {
    return ob.isSpecies(class_Float) && static_cast<const Float&>(ob).val == val;
}

int Float::compare(const Object& ob) const {
    assertArgSpecies(ob, class_Float, "compare");
    double other = static_cast<const Float&>(ob).val;
    return val < other ? -1 : val > other ? 1 : 0;
}

unsigned Float::hash() const {
    unsigned words[2];
    memcpy(words, &val, sizeof words);
    return words[0] ^ words[1];
}

void Float::printOn(std::ostream& os) const { os << formatText("%1.16g", val); }
const char* Float::asCharPointer() const { return formatText("%1.16g", val); }

// Stream forms: the value, then one blank.

Integer::Integer(std::istream& is, Object* where) : Object(is, where), val(0) { is >> val; }
Integer::Integer(BinIstream& is, Object* where) : Object(is, where), val(0) { is >> val; }

void Integer::storer(std::ostream& os) const {
    Object::storer(os);
    os << val << ' ';
}

void Integer::storer(BinOstream& os) const {
    Object::storer(os);
    os << val;
}

Float::Float(std::istream& is, Object* where) : Object(is, where), val(0.0) { is >> val; }
Float::Float(BinIstream& is, Object* where) : Object(is, where), val(0.0) { is >> val; }

void Float::storer(std::ostream& os) const {
    Object::storer(os);
    os << val << ' ';
}

void Float::storer(BinOstream& os) const {
    Object::storer(os);
    os << val;
}
