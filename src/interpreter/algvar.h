// AlgebraVar, the value of the language that wraps a numeric object, and the tables of methods and
// constructors that the numeric values share.
#ifndef INTERPRETER_ALGVAR_H
#define INTERPRETER_ALGVAR_H

#include <string>
#include <unordered_map>
#include <vector>

#include "algebra/vector.h"
#include "interpreter/variable.h"

class DynOp;
class Matrix;
class TarnException;

extern Class class_AlgebraVar;

// What an operand or an argument is, as far as the numeric values care: one bit each, so that a
// parameter can accept several.
enum AlgebraKind {
    KIND_OTHER = 0,
    KIND_INT = 1,
    KIND_FLOAT = 2,
    KIND_VECTOR = 4,  // Vector or SubVector
    KIND_MATRIX = 8,  // Matrix or SubMatrix
    KIND_POLYNOMIAL = 16,
    KIND_RATIONAL = 32,
    KIND_SYSTEM = 64,    // a continuous DynOp
    KIND_DISCRETE = 128  // a DiscDynOp
};
const unsigned KIND_SCALAR = KIND_INT | KIND_FLOAT;

// The kind of a value or of a static type; a reference counts as what it refers to.
unsigned kindOf(const Variable* v);
double scalarValue(const Variable* v);  // of a KIND_SCALAR value

// The methods of one class of values: each a FuncDeclare made once and the code that runs it,
// with the table of the base class searched after this one.
class MethodTable {
public:
    typedef Variable* (*Code)(Variable& receiver, OrderedCltn& arguments);
    // The code of a method whose result is a char, int or float: the number, which becomes a value of the
    // result type only when the caller needs one.
    typedef double (*ScalarCode)(Variable& receiver, OrderedCltn& arguments);
    // What runs a method: one of the codes, and the rank of the result's class for a scalar code.
    struct Entry {
        Code code;
        ScalarCode scalar;
        int level;
    };
    explicit MethodTable(const MethodTable* base = 0) : base(base) {}
    // Parameter and result types by their registered names.
    void add(const char* name, const char* result, const std::vector<std::string>& parameters, Code code);
    void add(const char* name, const char* result, const std::vector<std::string>& parameters,
             ScalarCode code);
    // The first method of the name whose parameters accept the types, here or in the base's table.
    FuncDeclare* find(const String& name, const OrderedCltn& types) const;
    // What runs the method, null when neither this table nor the base's holds it.
    const Entry* entryOf(const FuncDeclare* method) const;
    // The code of the method, null when neither table holds it or its code is a scalar one.
    Code codeOf(const FuncDeclare* method) const {
        const Entry* entry = entryOf(method);
        return entry ? entry->code : 0;
    }
    // The method of from with this name and these parameters, here with another result type.
    void addRetyped(const char* name, const char* result, const std::vector<std::string>& parameters,
                    const MethodTable& from);

private:
    void add(const char* name, const char* result, const std::vector<std::string>& parameters, Entry entry);

    const MethodTable* base;
    OrderedCltn methods;  // FuncDeclare, kept for the whole program
    std::vector<Entry> entries;
    // The entries found so far by their methods: a call in a loop does not search the tables again.
    mutable std::unordered_map<const FuncDeclare*, const Entry*> found;
};

// The constructors of one class beyond the default (number 0) and the conversion (number 1):
// number 2 onwards in the order of addition, each a list of parameter kinds.
class ConstructorTable {
public:
    typedef void (*Code)(Variable& target, const OrderedCltn& arguments);
    void add(const std::vector<unsigned>& parameters, Code code);
    int indexOf(const OrderedCltn& types) const;  // -1 when no list matches
    void run(int index, Variable& target, const OrderedCltn& arguments) const;

private:
    struct Entry {
        std::vector<unsigned> parameters;
        Code code;
    };
    std::vector<Entry> entries;
};

// Opens the plot window of a system for the value named title: makes the plot object when plot is
// null, shows the system with the initial condition, gives back the initial condition the window
// ends with, and answers the plot object, which the value owns from then on. The window library
// installs it at start-up; the language's core has no windows.
typedef Object* (*PlotOpener)(Object* plot, const DynOp& system, Vector& initialCondition, const char* title);
// Answers the former opener; null leaves plot refused.
PlotOpener setPlotOpener(PlotOpener opener);

// A numeric value: an object of the numeric library held by value, stored on files and in the
// workspace, with operators by double dispatch. A fault that the numeric library raises (a
// dimension, an index) ends the run as the interpreter's error, with the library's text.
class AlgebraVar : public Variable {
    DECLARE_MEMBERS(AlgebraVar)
public:
    ~AlgebraVar() noexcept(false) override;

    // --- The slots of the numeric values (ORDER SLOT) ---
    // Opens the plot of the value's system; refused for a value without one.
    virtual int plotOn();
    // Loads from the file named after the variable with the class's extension; 1, or 0 after the warning.
    virtual int buildFromDefaultFile();
    virtual int buildAlgebraObject(const String& fileName);
    virtual Object* storeObject() const;  // a new object, what the files and the workspace hold
    virtual Matrix computeEigenvalues();
    // Takes the value of the name (the own name when empty) from the workspace; fails otherwise.
    virtual void recoverFromWorkspace(const String& workspaceName);
    virtual int isPlottable() const { return 0; }

    Variable* getOperationType(Variable* other, int op, int swapped) override;
    Variable* doOperation(Variable* other, int op, int swapped) override;
    // +u and -u.
    Variable* getUnaryOperationType(int op) override;
    Variable* doUnaryOperation(int op) override;
    // 0 the empty value, 1 the conversion from any one value, then the class's own.
    int constructorIndex(const OrderedCltn& types) const override;
    void execConstructor(int index, const OrderedCltn& arguments, std::int32_t& errorFlag) override;
    FuncDeclare* getMethod(const String& methodName, const OrderedCltn& types) const override;
    Variable* execMethodCall(FuncDeclare* method, OrderedCltn& arguments, std::int32_t& errorFlag) override;
    bool execScalarMethod(FuncDeclare* method, OrderedCltn& arguments, ScalarValue& result) override;
    // The rank of the result of method when it answers a number (a char, int or float), 0 otherwise.
    int numberLevel(const FuncDeclare* method) const;
    String getValueString() const override;  // the printed form of the numeric object
    // A copy plots in a window of its own.
    void deepenShallowCopy() override;

    // The line "Var <name> of level <rank> cannot be converted in a <type>" on the standard output.
    static void conversionFailure(const Variable* v, const char* typeName);
    // A numeric fault rethrown as the interpreter's error; an interpreter error goes on as it is.
    [[noreturn]] static void numericFault(TarnException* e);
    // A new value of the registered type, unnamed: the static result of an operation.
    static Variable* resultOf(const char* typeName);
    // Whether the value is a temporary, which an alias into it would outlive.
    bool isTemporary() const { return getName().size() == 0; }

protected:
    AlgebraVar() : plot(0), initialCondition(0u) {}

    // Opens the plot of s through the installed opener, with the initial condition sized to its order.
    int plotSystem(const DynOp& s);

    // --- What each class adds ---
    virtual const Object& numericObject() const = 0;
    virtual const MethodTable& methods() const;
    virtual const ConstructorTable& constructors() const;
    virtual const char* fileExtension() const = 0;
    // The text after "is not a " in the refusal of a workspace object.
    virtual const char* workspaceKind() const = 0;
    // Takes the value from an object of a file or of the workspace; false when it does not fit.
    virtual bool adopt(const Object& ob) = 0;
    virtual void clear() = 0;                         // the empty value
    virtual void convertFrom(const Variable* v) = 0;  // the conversion, with its line on failure
    // The registered type name of the result of this op other, or null when the class does not
    // handle it; an assignment answers the own type.
    virtual const char* resultType(const Variable* other, int op, int swapped) const = 0;
    virtual Variable* operate(Variable* other, int op, int swapped) = 0;
    virtual Variable* negated() const = 0;

    // A comparison result: == and != by equality, the others by the library's byte order.
    static Variable* comparison(const Object& left, const Object& right, int op, int swapped);

    // The state of the plot: its object, made on first use, and the initial state of the free
    // response, kept over repeated plots of the same order. The plot keeps the system and its
    // sampling time.
    Object* plot;
    Vector initialCondition;

private:
    Variable* passOn(Variable* other, int op, int swapped, bool execute);
};

#endif
