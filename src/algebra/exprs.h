// Expressions over matrices whose entries may hang on named uncertain variables: operands,
// operators, and ExpressionS, a postfix list of them that evaluates to a CMatrix and prints infix.
#ifndef ALGEBRA_EXPRS_H
#define ALGEBRA_EXPRS_H

#include <iosfwd>
#include <string>

#include "algebra/cmatrix.h"
#include "algebra/rfmatrix.h"
#include "quill/orderedc.h"
#include "quill/quillstr.h"
#include "quill/random.h"

extern Class class_Element;
extern Class class_Constant;
extern Class class_VariableS;
extern Class class_Variable01;
extern Class class_OperatorS;
extern Class class_Node;
extern Class class_ExpressionS;

// An operand. The defaults report a derived class responsibility.
class Element : public Object {
    DECLARE_MEMBERS(Element)
public:
    Element() {}
    Element(std::istream& is, Object* where);
    Element(BinIstream& is, Object* where);
    virtual String getName() const;
    virtual CMatrix getValue() const;
    virtual void setValue(const CMatrix& value);
    virtual Element* clone() const;
};

class Constant : public Element {
    DECLARE_MEMBERS(Constant)
public:
    Constant(std::istream& is, Object* where);
    Constant(BinIstream& is, Object* where);
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;
    Constant() {}
    // A matrix text names the constant in the expression's text; without one its value does.
    explicit Constant(const CMatrix& value, const char* matrixText = "");
    String getName() const override;
    CMatrix getValue() const override { return value; }
    void setValue(const CMatrix& value) override;  // refused
    Element* clone() const override { return new Constant(*this); }
    void printOn(std::ostream& os) const override;
    void clearCopiedState() override;

private:
    template <class Stream>
    void readFields(Stream& is);

    CMatrix value;
    String text;
};

class VariableS : public Element {
    DECLARE_MEMBERS(VariableS)
public:
    VariableS(std::istream& is, Object* where);
    VariableS(BinIstream& is, Object* where);
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;
    VariableS();
    // Bounds given the wrong way round are swapped; nominal and current start at the mean.
    // An empty name becomes "X" and the index.
    VariableS(const RFMatrix& weights, int index, const char* name, float low, float high);

    String getName() const override { return name; }
    CMatrix getValue() const override;             // 1x1, the current value
    void setValue(const CMatrix& value) override;  // refused
    void setValue(double value) { current = float(value); }
    Element* clone() const override { return new VariableS(*this); }

    float lowBound() const { return low; }
    float highBound() const { return high; }
    float nominalValue() const { return nominal; }
    float currentValue() const { return current; }
    int indexOf() const { return index; }
    const RFMatrix& weightsOf() const { return weights; }

    // Keeps the lower (upper) bound at most (least) x; true when the bounds have met or crossed.
    bool clampLow(float x);
    bool clampHigh(float x);
    // 1 when x stays within the bounds (and becomes the current value), else 0.
    int stepVariable(float x);
    // A uniform sample within the bounds from the layer's generator.
    void sample(RandomLinear& source);

    bool isEqual(const Object& ob) const override;
    int compare(const Object& ob) const override;
    void printOn(std::ostream& os) const override;
    void clearCopiedState() override;

protected:
    template <class Stream>
    void readFields(Stream& is);

    String name;
    float low;
    float high;
    float nominal;
    float current;
    RFMatrix weights;
    int index;
};

// A variable normalised to the range 0 to 1.
class Variable01 : public VariableS {
    DECLARE_MEMBERS(Variable01)
public:
    Variable01(std::istream& is, Object* where);
    Variable01(BinIstream& is, Object* where);
    Variable01() {}
    Variable01(const RFMatrix& weights, int index, const char* name);
    Element* clone() const override { return new Variable01(*this); }
};

class OperatorS : public Object {
    DECLARE_MEMBERS(OperatorS)
public:
    OperatorS(std::istream& is, Object* where);
    OperatorS(BinIstream& is, Object* where);
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;
    OperatorS() : unary(0) {}
    explicit OperatorS(const char* text, bool unary = false);
    const String& textOf() const { return text; }
    bool isUnary() const { return unary != 0; }
    // Unary 100, "*" "/" 90, "+" "-" 80, relations 20; an unknown text reports and answers 0.
    int priority() const;
    CMatrix apply(const CMatrix& left, const CMatrix& right) const;
    CMatrix applyUnary(const CMatrix& value) const { return -value; }
    void printOn(std::ostream& os) const override;
    void clearCopiedState() override;

private:
    template <class Stream>
    void readFields(Stream& is);

    String text;
    int unary;
};

// A tree node for building an expression; it owns its element and both sub-trees.
class Node : public Object {
    DECLARE_MEMBERS(Node)
public:
    Node(std::istream& is, Object* where);
    Node(BinIstream& is, Object* where);
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;
    Node() : element(0), left(0), right(0) {}
    Node(Object* element, Node* left = 0, Node* right = 0) : element(element), left(left), right(right) {}
    Node(const Node&) = delete;
    Node& operator=(const Node&) = delete;
    ~Node() noexcept(false) override;
    Object* elementOf() const { return element; }
    Node* leftOf() const { return left; }
    Node* rightOf() const { return right; }
    void printOn(std::ostream& os) const override;
    void clearCopiedState() override;

private:
    template <class Stream>
    void readFields(Stream& is);

    Object* element;
    Node* left;
    Node* right;
};

class ExpressionS : public Object {
    DECLARE_MEMBERS(ExpressionS)
public:
    ExpressionS(std::istream& is, Object* where);
    ExpressionS(BinIstream& is, Object* where);
    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;
    ExpressionS() {}
    explicit ExpressionS(const Element& element);
    ExpressionS(const Element& left, const OperatorS& op, const Element& right);
    ExpressionS(const ExpressionS& left, const OperatorS& op, const ExpressionS& right);
    ExpressionS(const ExpressionS& operand, const OperatorS& unaryOp);
    ExpressionS(const ExpressionS& e);
    ~ExpressionS() noexcept(false) override;
    ExpressionS& operator=(const ExpressionS& e);

    // Appends an operand or an operator to the postfix list; a copy is kept.
    void push(const Element& element);
    void push(const OperatorS& op);
    // Post-order flattening: left, right, node.
    void fromTree(const Node& root);

    ExpressionS operator+(const ExpressionS& e) const;
    ExpressionS operator-(const ExpressionS& e) const;
    ExpressionS operator*(const ExpressionS& e) const;
    ExpressionS operator-() const;
    ExpressionS operator<=(const ExpressionS& e) const;
    ExpressionS operator>=(const ExpressionS& e) const;
    ExpressionS equation(const ExpressionS& e) const;  // the relation "="

    CMatrix evaluate() const;
    std::string text() const;
    bool isEmpty() const { return items.size() == 0; }
    unsigned variableCount() const { return variables.size(); }
    bool isEquality() const;
    void print() const;

    // Sets the current value of every variable of that name; false when there is none.
    bool setVariable(const char* name, double value);
    // Draws each variable's current value within its bounds.
    void sampleVariables(RandomLinear& source);
    // The layer's uniform generator, freshly seeded.
    static RandomLinear sampleSource() { return RandomLinear(0, 20000, 9231); }

    void printOn(std::ostream& os) const override;
    void clearCopiedState() override;

private:
    template <class Stream>
    void readFields(Stream& is);
    void add(Object* item);
    void addVariable(Object* item);
    void copyItems(const ExpressionS& e);
    void combine(const ExpressionS& left, const ExpressionS& right, const OperatorS& op);
    bool stripConstant(const ExpressionS& left, const ExpressionS& right, const OperatorS& op);
    void flatten(const Node* node);
    CMatrix evalTop() const;
    void evalItem(CMatrix& result, int& position) const;
    std::string textItem(int& position, const OperatorS*& top) const;

    String name;
    OrderedCltn items;      // postfix; owned
    OrderedCltn variables;  // the VariableS among items, one per name; not owned
};

#endif
