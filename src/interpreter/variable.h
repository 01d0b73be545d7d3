// Variable, the root of the values of the interpreted language, and the registries of types and predefined
// globals.
#ifndef INTERPRETER_VARIABLE_H
#define INTERPRETER_VARIABLE_H

#include <cstdint>
#include <string>
#include <vector>

#include "interpreter/expressn.h"
#include "quill/orderedc.h"
#include "quill/quillstr.h"

class Dictionary;
class FuncDeclare;
class VarDeclare;
struct ScalarValue;

extern Class class_Variable;

// One class both makes the run-time values and, through one prototype of each
// type, tells the parser about the type: its operators, constructors, members
// and methods. Values are made by clone, the Object shallow copy followed by
// deepenShallowCopy; a deepenShallowCopy gives up the parts shared with the
// original before anything that may fail, so that a failed copy can be deleted.
//
// Double dispatch: a op b calls a's operation with b. A class that does not
// understand b passes the call, when swapped is 0, to b with a and swapped 1;
// it accepts a right operand directly only when that operand's rank
// (getLevel) is not above its own. So a class added later, of a higher rank,
// extends every class below it without their knowing.
//
// Operations answer this or a new value owned by the caller; an assignment
// answers this, so that a left value stays one.
// Failures go through typeError: a PARSE ERROR at parse time and at run time.
class Variable : public BaseExpression {
    DECLARE_MEMBERS(Variable)
public:
    Variable();
    explicit Variable(const String& name);
    // The name followed by one character.
    Variable(const String& name, char suffix);
    ~Variable() noexcept(false) override;

    const String& getName() const { return name; }
    void setName(const String& newName) { name = newName; }
    void addReference() { ++reference; }
    void removeReference() { --reference; }
    int references() const { return reference; }

    // --- The slots every type answers (ORDER SLOT) ---
    virtual const String& getType() const;  // the type name
    virtual int getLevel() const;           // the conversion rank
    virtual OrderedCltn* newArgumentList() const;
    // The prototype or new value of the result of this op other; other is never a reference.
    virtual Variable* getOperationType(Variable* other, int op, int swapped);
    virtual Variable* doOperation(Variable* other, int op, int swapped);
    virtual Variable* getUnaryOperationType(int op);
    virtual Variable* doUnaryOperation(int op);
    virtual int canConvertTo(const Variable* target) const;
    // A new value of the target's type.
    virtual Variable* convertTo(const Variable* target) const;
    // The number of the constructor for a list of argument types, or -1.
    virtual int constructorIndex(const OrderedCltn& types) const;
    // Number 0 is the default constructor, which every type has; the others are the class's.
    virtual void execConstructor(int index, const OrderedCltn& arguments, std::int32_t& errorFlag);
    virtual VarDeclare* getMember(const String& memberName) const;
    virtual Variable* getMemberVar(const VarDeclare* member);
    virtual FuncDeclare* getMethod(const String& methodName, const OrderedCltn& types) const;
    virtual Variable* execMethodCall(FuncDeclare* method, OrderedCltn& arguments, std::int32_t& errorFlag);
    // The result of a method whose result is a char, int or float, as a number without a value made for
    // it; false, with nothing done, when the class answers the method only through execMethodCall.
    virtual bool execScalarMethod(FuncDeclare* method, OrderedCltn& arguments, ScalarValue& result);
    virtual String getTemplateName(const OrderedCltn& values) const;
    virtual Variable* makeTemplate(const OrderedCltn& values) const;
    virtual String getValueString() const;  // the value for display
    // Bytes a value of this type takes when constructed, roughly: what a
    // declaration checks against the allocation limit before it builds one.
    virtual double storageEstimate() const;

    Variable* clone() const;
    // Against a String, the name; otherwise identity.
    bool isEqual(const Object& ob) const override;
    unsigned hash() const override { return name.hash(); }
    // The type, the name when it has one, then what the class adds.
    void printOn(std::ostream& os) const override;
    // The copy has no references and is live; its name is its own.
    void deepenShallowCopy() override;

    static Variable* dereference(Variable* v);
    static Variable* argumentAt(const OrderedCltn& list, int i) {
        return static_cast<Variable*>(list.atInline(i));
    }
    // "(int, float)": the type names of a list of values.
    static String typeList(const OrderedCltn& types);
    // Raises error 18 with "PARSE ERROR" and the message.
    [[noreturn]] static void typeError(const String& message);
    // "Cannot do operation op between left and right", the sides exchanged when swapped.
    [[noreturn]] void operationError(const Variable* other, int op, int swapped) const;
    [[noreturn]] void unaryOperationError(int op) const;
    // The value as an int, by int's one-argument constructor.
    static std::int32_t intValue(Variable* v);

    // --- Helpers of the classes of values ---
    // The first method of that name and argument count in table whose parameters
    // accept the types, or null.
    static FuncDeclare* findMethod(const OrderedCltn& table, const String& methodName,
                                   const OrderedCltn& types);
    // A method or built-in entry: types by their registered names, a trailing '&'
    // for a reference parameter. Null when one of the types is not registered.
    static FuncDeclare* makeMethod(const char* methodName, const char* returnType,
                                   const std::vector<std::string>& parameters);
    [[noreturn]] void unknownMethod(const String& methodName, const OrderedCltn& types) const;
    // The display of a value with parts: head, " = [", each part's value on a line
    // one level further in (after its name and " = " when named), then "]".
    static String partsString(const String& head, const OrderedCltn& parts, bool named);

    // --- Registries of the whole program ---
    // Type name to prototype; each class enters its prototype at start-up.
    static Dictionary& typeRegistry();
    static void registerType(Variable* prototype);
    static Variable* findType(const String& typeName);  // null when absent
    // The globals that every program has (cout, endl), in order.
    static OrderedCltn& predefinedVariables();
    static void addPredefined(Variable* variable);
    // Every live Variable: construction appends, destruction removes.
    static OrderedCltn& liveVariables();
    // The void prototype: the identity test for "no value".
    static Variable* voidType();

private:
    void enterLive();
    static bool isLive(const Variable* v);

    String name;  // empty for a temporary
    std::int32_t reference;
};

#endif
