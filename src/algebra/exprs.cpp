// Operands, operators and postfix expressions over CMatrix values.
#include "algebra/exprs.h"

#include <cstring>
#include <iostream>
#include <sstream>

#include "quill/quillerr.h"

DEFINE_CLASS(Element, Object, 1, 0)
DEFINE_CLASS(Constant, Element, 1, 0)
DEFINE_CLASS(VariableS, Element, 1, 0)
DEFINE_CLASS(Variable01, VariableS, 1, 0)
DEFINE_CLASS(OperatorS, Object, 1, 0)
DEFINE_CLASS(Node, Object, 1, 0)
DEFINE_CLASS(ExpressionS, Object, 1, 0)

namespace {
// An own copy of an operand or an operator.
Object* copyOf(const Object* item) {
    if (item->isKindOf(class_Element)) return static_cast<const Element*>(item)->clone();
    return new OperatorS(*static_cast<const OperatorS*>(item));
}
}  // namespace

String Element::getName() const {
    derivedClassResponsibility("getName");
    return String();
}

CMatrix Element::getValue() const {
    derivedClassResponsibility("getValue");
    return CMatrix();
}

void Element::setValue(const CMatrix&) { derivedClassResponsibility("setValue"); }

Element* Element::clone() const {
    derivedClassResponsibility("clone");
    return 0;
}

Constant::Constant(const CMatrix& value, const char* matrixText) : value(value), text(matrixText) {}

String Constant::getName() const {
    if (text.size() != 0) return text;
    std::ostringstream os;
    os << value;
    return String(os.str().c_str());
}

void Constant::setValue(const CMatrix&) { shouldNotImplement("setValue"); }

// A bytewise copy takes its own copies of what it shared.
void Constant::clearCopiedState() {
    Element::clearCopiedState();
    value.clearCopiedState();
    text.clearCopiedState();
}

void Constant::printOn(std::ostream& os) const {
    if (text.size() != 0)
        os << "Matrix " << text;
    else
        os << "costante = " << value;
}

VariableS::VariableS() : low(0), high(0), nominal(0), current(0), weights(3, 3), index(0) {}

VariableS::VariableS(const RFMatrix& weights, int index, const char* name, float low, float high)
    : name(name), low(low), high(high), weights(weights), index(index) {
    if (this->name.size() == 0) this->name = String("X") + std::to_string(index).c_str();
    if (low > high) std::swap(this->low, this->high);
    nominal = current = (this->low + this->high) / 2;
}

CMatrix VariableS::getValue() const {
    CMatrix m(1, 1);
    m(0, 0) = current;
    return m;
}

void VariableS::setValue(const CMatrix&) { shouldNotImplement("setValue"); }

bool VariableS::clampLow(float x) {
    if (low > x) low = x;
    return low >= high;
}

bool VariableS::clampHigh(float x) {
    if (high < x) high = x;
    return low >= high;
}

int VariableS::stepVariable(float x) {
    if (x < low || x > high) return 0;
    current = x;
    return 1;
}

void VariableS::sample(RandomLinear& source) {
    current = float(low + (high - low) * (source.next() - source.min()) / (source.max() - source.min()));
}

bool VariableS::isEqual(const Object& ob) const {
    if (ob.isKindOf(class_VariableS)) {
        std::ostringstream mine, theirs;
        mine << weights;
        theirs << static_cast<const VariableS&>(ob).weights;
        return mine.str() == theirs.str();
    }
    if (ob.isKindOf(class_String)) return name.isEqual(ob);
    return false;
}

int VariableS::compare(const Object& ob) const {
    assertArgKindOf(ob, class_VariableS, "compare");
    return name.compare(static_cast<const VariableS&>(ob).name);
}

void VariableS::printOn(std::ostream& os) const {
    os << name << " [" << low << ", " << high << "] = " << current;
}

void VariableS::clearCopiedState() {
    Element::clearCopiedState();
    name.clearCopiedState();
    weights.clearCopiedState();
}

Variable01::Variable01(const RFMatrix& weights, int index, const char* name)
    : VariableS(weights, index, name, 0.0f, 1.0f) {}

OperatorS::OperatorS(const char* text, bool unary) : text(text), unary(unary) {}

int OperatorS::priority() const {
    static const struct {
        const char* text;
        int priority;
    } table[] = {{"*", 90}, {"/", 90},  {"+", 80},  {"-", 80},  {"<", 20}, {"=", 20},
                 {">", 20}, {"<=", 20}, {">=", 20}, {"==", 20}, {"!=", 20}};
    if (unary) return 100;
    for (const auto& entry : table)
        if (std::strcmp(text.asCharPointer(), entry.text) == 0) return entry.priority;
    std::cerr << "Unknown operator " << text << std::endl;
    return 0;
}

namespace {
// A 1x1 factor scales the other one: a scalar variable weighs a whole matrix.
CMatrix product(const CMatrix& left, const CMatrix& right) {
    bool leftScalar = left.rowNumber() == 1 && left.columnNumber() == 1;
    bool rightScalar = right.rowNumber() == 1 && right.columnNumber() == 1;
    if (leftScalar && !rightScalar) return right * left.get(0, 0);
    if (rightScalar && !leftScalar) return left * right.get(0, 0);
    return left * right;
}
}  // namespace

CMatrix OperatorS::apply(const CMatrix& left, const CMatrix& right) const {
    switch (text.size() ? text.asCharPointer()[0] : 0) {
        case '*':
            return product(left, right);
        case '+':
            return left + right;
        case '-':
            return left - right;
        default:
            std::cerr << "ERROR" << std::endl;
            return CMatrix(0, 3);
    }
}

void OperatorS::printOn(std::ostream& os) const { os << "operatore " << text; }

void OperatorS::clearCopiedState() {
    Object::clearCopiedState();
    text.clearCopiedState();
}

Node::~Node() noexcept(false) {
    delete element;
    delete left;
    delete right;
}

void Node::printOn(std::ostream& os) const {
    if (element)
        os << "Element: " << *element;
    else
        os << "NULL";
}

void Node::clearCopiedState() {
    Object::clearCopiedState();
    element = element ? copyOf(element) : 0;
    left = left ? static_cast<Node*>(left->shallowCopy()) : 0;
    right = right ? static_cast<Node*>(right->shallowCopy()) : 0;
}

ExpressionS::ExpressionS(const Element& element) { push(element); }

ExpressionS::ExpressionS(const Element& left, const OperatorS& op, const Element& right) {
    combine(ExpressionS(left), ExpressionS(right), op);
}

ExpressionS::ExpressionS(const ExpressionS& left, const OperatorS& op, const ExpressionS& right) {
    combine(left, right, op);
}

ExpressionS::ExpressionS(const ExpressionS& operand, const OperatorS& unaryOp) {
    copyItems(operand);
    push(unaryOp);
}

ExpressionS::ExpressionS(const ExpressionS& e) : Object(e), name(e.name) { copyItems(e); }

ExpressionS::~ExpressionS() noexcept(false) { items.deleteContents(); }

ExpressionS& ExpressionS::operator=(const ExpressionS& e) {
    if (this == &e) return *this;
    items.deleteContents();
    variables.removeAll();
    name = e.name;
    copyItems(e);
    return *this;
}

void ExpressionS::add(Object* item) {
    items.add(*item);
    addVariable(item);
}

void ExpressionS::addVariable(Object* item) {
    if (!item->isKindOf(class_VariableS)) return;
    for (unsigned i = 0; i < variables.size(); ++i)
        if (static_cast<VariableS*>(variables[int(i)])
                ->getName()
                .isEqual(static_cast<VariableS*>(item)->getName()))
            return;
    variables.add(*item);
}

void ExpressionS::push(const Element& element) { add(element.clone()); }

void ExpressionS::push(const OperatorS& op) { add(new OperatorS(op)); }

void ExpressionS::copyItems(const ExpressionS& e) {
    for (unsigned i = 0; i < e.items.size(); ++i) add(copyOf(e.items[int(i)]));
}

void ExpressionS::clearCopiedState() {
    Object::clearCopiedState();
    name.clearCopiedState();
    items.clearCopiedState();
    variables.clearCopiedState();
    variables.removeAll();
    for (unsigned i = 0; i < items.size(); ++i) {
        items[int(i)] = copyOf(items[int(i)]);
        addVariable(items[int(i)]);
    }
}

void ExpressionS::fromTree(const Node& root) { flatten(&root); }

void ExpressionS::flatten(const Node* node) {
    if (!node) return;
    flatten(node->leftOf());
    flatten(node->rightOf());
    if (node->elementOf()) add(copyOf(node->elementOf()));
}

void ExpressionS::combine(const ExpressionS& left, const ExpressionS& right, const OperatorS& op) {
    if (stripConstant(left, right, op)) return;
    copyItems(left);
    copyItems(right);
    push(op);
}

// Two constant operands of an arithmetic operator fold into one constant, which keeps sums of
// constants short; a relation keeps its operands.
bool ExpressionS::stripConstant(const ExpressionS& left, const ExpressionS& right, const OperatorS& op) {
    const String& text = op.textOf();
    bool arithmetic = text == "+" || text == "-" || text == "*";
    if (left.items.size() != 1 || right.items.size() != 1 || op.isUnary() || !arithmetic) return false;
    Object* a = left.items[0];
    Object* b = right.items[0];
    if (!a->isMemberOf(class_Constant) || !b->isMemberOf(class_Constant)) return false;
    push(Constant(op.apply(static_cast<Constant*>(a)->getValue(), static_cast<Constant*>(b)->getValue())));
    return true;
}

ExpressionS ExpressionS::operator+(const ExpressionS& e) const {
    return ExpressionS(*this, OperatorS("+"), e);
}
ExpressionS ExpressionS::operator-(const ExpressionS& e) const {
    return ExpressionS(*this, OperatorS("-"), e);
}
ExpressionS ExpressionS::operator*(const ExpressionS& e) const {
    return ExpressionS(*this, OperatorS("*"), e);
}
ExpressionS ExpressionS::operator-() const { return ExpressionS(*this, OperatorS("-", true)); }
ExpressionS ExpressionS::operator<=(const ExpressionS& e) const {
    return ExpressionS(*this, OperatorS("<="), e);
}
ExpressionS ExpressionS::operator>=(const ExpressionS& e) const {
    return ExpressionS(*this, OperatorS(">="), e);
}
ExpressionS ExpressionS::equation(const ExpressionS& e) const {
    return ExpressionS(*this, OperatorS("="), e);
}

CMatrix ExpressionS::evaluate() const {
    if (isEmpty()) {
        std::cerr << "Empty stack" << std::endl;
        return CMatrix(0, 0);
    }
    if (items.size() == 1 && items[0]->isKindOf(class_Element))
        return static_cast<Element*>(items[0])->getValue();
    return evalTop();
}

CMatrix ExpressionS::evalTop() const {
    CMatrix result;
    int position = int(items.size());
    evalItem(result, position);
    return result;
}

// Reads the list backwards: a binary operator's right operand comes off first.
void ExpressionS::evalItem(CMatrix& result, int& position) const {
    if (position <= 0) {
        std::cerr << "expression STACK " << items << std::endl;
        result = CMatrix(0, 0);
        return;
    }
    Object* item = items[--position];
    if (item->isKindOf(class_Element)) {
        result = static_cast<Element*>(item)->getValue();
        return;
    }
    const OperatorS& op = *static_cast<OperatorS*>(item);
    CMatrix right;
    evalItem(right, position);
    if (op.isUnary()) {
        result = op.applyUnary(right);
        return;
    }
    CMatrix left;
    evalItem(left, position);
    result = op.apply(left, right);
}

namespace {
bool isAdditive(const OperatorS& op) {
    return std::strcmp(op.textOf().asCharPointer(), "+") == 0 ||
           std::strcmp(op.textOf().asCharPointer(), "-") == 0;
}

bool needsBrackets(const OperatorS* child, const OperatorS& parent, bool rightSide) {
    if (!child || child->isUnary()) return false;
    if (child->priority() < parent.priority()) return true;
    return rightSide && std::strcmp(parent.textOf().asCharPointer(), "-") == 0 && isAdditive(*child);
}

std::string bracketed(const std::string& text, bool brackets) { return brackets ? "(" + text + ")" : text; }
}  // namespace

std::string ExpressionS::text() const {
    if (isEmpty()) return std::string();
    int position = int(items.size());
    const OperatorS* top = 0;
    return textItem(position, top);
}

std::string ExpressionS::textItem(int& position, const OperatorS*& top) const {
    top = 0;
    if (position <= 0) return std::string();
    Object* item = items[--position];
    if (item->isKindOf(class_Element)) return static_cast<Element*>(item)->getName().asCharPointer();
    const OperatorS& op = *static_cast<OperatorS*>(item);
    const OperatorS* rightTop = 0;
    std::string right = textItem(position, rightTop);
    std::string opText = op.textOf().asCharPointer();
    top = &op;
    if (op.isUnary()) return opText + bracketed(right, rightTop && !rightTop->isUnary());
    const OperatorS* leftTop = 0;
    std::string left = textItem(position, leftTop);
    return bracketed(left, needsBrackets(leftTop, op, false)) + " " + opText + " " +
           bracketed(right, needsBrackets(rightTop, op, true));
}

bool ExpressionS::isEquality() const {
    for (unsigned i = 0; i < items.size(); ++i)
        if (items[int(i)]->isMemberOf(class_OperatorS) &&
            std::strcmp(static_cast<OperatorS*>(items[int(i)])->textOf().asCharPointer(), "=") == 0)
            return true;
    return false;
}

void ExpressionS::print() const { std::cout << *this << std::endl; }

bool ExpressionS::setVariable(const char* variableName, double value) {
    bool found = false;
    for (unsigned i = 0; i < items.size(); ++i) {
        Object* item = items[int(i)];
        if (!item->isKindOf(class_VariableS)) continue;
        VariableS& v = *static_cast<VariableS*>(item);
        if (std::strcmp(v.getName().asCharPointer(), variableName) != 0) continue;
        v.setValue(value);
        found = true;
    }
    return found;
}

void ExpressionS::sampleVariables(RandomLinear& source) {
    for (unsigned i = 0; i < variables.size(); ++i) {
        VariableS& v = *static_cast<VariableS*>(variables[int(i)]);
        v.sample(source);
        setVariable(v.getName().asCharPointer(), v.currentValue());
    }
}

void ExpressionS::printOn(std::ostream& os) const { os << "Espressione = " << text(); }
