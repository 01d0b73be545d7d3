// The stream forms of the expression classes: each class writes its base's fields, then its own
// in their order; text and binary readers share one template per class.
#include <iomanip>
#include <ostream>

#include "algebra/ematrix.h"
#include "algebra/exprs.h"
#include "quill/binstrm.h"
#include "quill/objio.h"
#include "quill/quillerr.h"

namespace {

// Floats in the text form keep every digit of their 32 bits.
void writeFloats(std::ostream& os, std::initializer_list<float> values) {
    std::streamsize before = os.precision(9);
    for (float v : values) os << v << ' ';
    os.precision(before);
}

}  // namespace

// Element: no fields of its own.
Element::Element(std::istream& is, Object* where) : Object(is, where) {}
Element::Element(BinIstream& is, Object* where) : Object(is, where) {}

// Constant: value, then the matrix text that names it.
Constant::Constant(std::istream& is, Object* where) : Element(is, where) { readFields(is); }
Constant::Constant(BinIstream& is, Object* where) : Element(is, where) { readFields(is); }

template <class Stream>
void Constant::readFields(Stream& is) {
    readFrom(is, class_CMatrix, &value);
    readFrom(is, class_String, &text);
}

void Constant::storer(std::ostream& os) const {
    Element::storer(os);
    value.storeOn(os);
    text.storeOn(os);
}

void Constant::storer(BinOstream& os) const {
    Element::storer(os);
    value.storeOn(os);
    text.storeOn(os);
}

// VariableS: name, bounds, nominal and current values, weights (3 x 3 when read empty), index.
VariableS::VariableS(std::istream& is, Object* where) : Element(is, where) { readFields(is); }
VariableS::VariableS(BinIstream& is, Object* where) : Element(is, where) { readFields(is); }

template <class Stream>
void VariableS::readFields(Stream& is) {
    readFrom(is, class_String, &name);
    low = readNumber<float>(is);
    high = readNumber<float>(is);
    nominal = readNumber<float>(is);
    current = readNumber<float>(is);
    readFrom(is, class_RFMatrix, &weights);
    if (weights.rowNumber() == 0 && weights.columnNumber() == 0) weights = RFMatrix(3, 3);
    index = readNumber<int>(is);
}

void VariableS::storer(std::ostream& os) const {
    Element::storer(os);
    name.storeOn(os);
    writeFloats(os, {low, high, nominal, current});
    weights.storeOn(os);
    os << index << ' ';
}

void VariableS::storer(BinOstream& os) const {
    Element::storer(os);
    name.storeOn(os);
    os << low << high << nominal << current;
    weights.storeOn(os);
    os << index;
}

Variable01::Variable01(std::istream& is, Object* where) : VariableS(is, where) {}
Variable01::Variable01(BinIstream& is, Object* where) : VariableS(is, where) {}

// OperatorS: text and the unary flag.
OperatorS::OperatorS(std::istream& is, Object* where) : Object(is, where) { readFields(is); }
OperatorS::OperatorS(BinIstream& is, Object* where) : Object(is, where) { readFields(is); }

template <class Stream>
void OperatorS::readFields(Stream& is) {
    readFrom(is, class_String, &text);
    unary = readNumber<int>(is);
}

void OperatorS::storer(std::ostream& os) const {
    Object::storer(os);
    text.storeOn(os);
    os << unary << ' ';
}

void OperatorS::storer(BinOstream& os) const {
    Object::storer(os);
    text.storeOn(os);
    os << unary;
}

// Node: element, left and right, each nil when absent.
Node::Node(std::istream& is, Object* where) : Object(is, where), element(0), left(0), right(0) {
    readFields(is);
}
Node::Node(BinIstream& is, Object* where) : Object(is, where), element(0), left(0), right(0) {
    readFields(is);
}

template <class Stream>
void Node::readFields(Stream& is) {
    readOrUndo(
        [&] {
            element = readOptional(is);
            left = static_cast<Node*>(readOptional(is));
            right = static_cast<Node*>(readOptional(is));
        },
        [&] {
            delete element;
            delete left;
        });
}

void Node::storer(std::ostream& os) const {
    Object::storer(os);
    for (const Object* ob : {static_cast<const Object*>(element), static_cast<const Object*>(left),
                             static_cast<const Object*>(right)})
        storeOptional(os, ob);
}

void Node::storer(BinOstream& os) const {
    Object::storer(os);
    for (const Object* ob : {static_cast<const Object*>(element), static_cast<const Object*>(left),
                             static_cast<const Object*>(right)})
        storeOptional(os, ob);
}

// ExpressionS: name, the postfix items, the variables among them (the same objects).
ExpressionS::ExpressionS(std::istream& is, Object* where) : Object(is, where) { readFields(is); }
ExpressionS::ExpressionS(BinIstream& is, Object* where) : Object(is, where) { readFields(is); }

template <class Stream>
void ExpressionS::readFields(Stream& is) {
    readFrom(is, class_String, &name);
    readOrUndo(
        [&] {
            readFrom(is, class_OrderedCltn, &items);
            readFrom(is, class_OrderedCltn, &variables);
        },
        [&] { items.deleteContents(); });
}

void ExpressionS::storer(std::ostream& os) const {
    Object::storer(os);
    name.storeOn(os);
    items.storeOn(os);
    variables.storeOn(os);
}

void ExpressionS::storer(BinOstream& os) const {
    Object::storer(os);
    name.storeOn(os);
    items.storeOn(os);
    variables.storeOn(os);
}

// EMatrix: the entry count and the entries row by row, then rows and cols.
EMatrix::EMatrix(std::istream& is, Object* where) : Object(is, where), rows(0), cols(0) { readFields(is); }
EMatrix::EMatrix(BinIstream& is, Object* where) : Object(is, where), rows(0), cols(0) { readFields(is); }

template <class Stream>
void EMatrix::readFields(Stream& is) {
    unsigned count = readNumber<unsigned>(is);
    for (unsigned i = 0; i < count; ++i) {
        Object* entry = readFrom(is, class_ExpressionS);
        entries.push_back(*static_cast<ExpressionS*>(entry));
        delete entry;
    }
    rows = readNumber<int>(is);
    cols = readNumber<int>(is);
    if (size_t(rows) * size_t(cols) != entries.size())
        setError(RDSYNERR, SEV_ERROR, "the size of an EMatrix", "not its entry count");
}

void EMatrix::storer(std::ostream& os) const {
    Object::storer(os);
    os << entries.size() << ' ';
    for (const ExpressionS& e : entries) e.storeOn(os);
    os << rows << ' ' << cols << ' ';
}

void EMatrix::storer(BinOstream& os) const {
    Object::storer(os);
    os << unsigned(entries.size());
    for (const ExpressionS& e : entries) e.storeOn(os);
    os << rows << cols;
}
