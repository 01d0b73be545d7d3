// Parameter, a typed named value whose type text may carry a range or name an enumeration.
#ifndef CONTROL_PARAM_H
#define CONTROL_PARAM_H

#include "quill/object.h"
#include "quill/qclass.h"
#include "quill/quillstr.h"

class Dictionary;
class ParametersCltn;

extern Class class_Parameter;

// The type text is one of "string", "int", "float", "bool", "collection", a range "int<a:b>" or
// "float<a:b>", or the name of an enumeration of the process-wide table below. A "collection" owns
// its subParameters; every other type has none.
class Parameter : public Object {
    DECLARE_MEMBERS(Parameter)
public:
    Parameter();  // empty name, value and type
    Parameter(const char* name, const char* value, const char* type);
    Parameter(const char* name, const char* value);                        // "string"
    Parameter(const char* name, const String& value);                      // "string"
    Parameter(const char* name, double value);                             // "float", printed as Float prints
    Parameter(const char* name, bool flag);                                // "bool"
    Parameter(const char* name, int value);                                // "int"
    Parameter(const char* name, const char* enumType, int index);          // the enumeration's entry
    Parameter(const char* name, int first, int last, int value);           // "int<first:last>"
    Parameter(const char* name, double first, double last, double value);  // "float<first:last>"
    Parameter(const char* name, const ParametersCltn& members);            // "collection", a deep copy
    Parameter(const Parameter& p);                                         // subParameters deep-copied
    Parameter& operator=(const Parameter& p);
    // Stream form: the strings name, type and value, then the subParameters or nil.
    Parameter(std::istream& is, Object* where);
    Parameter(BinIstream& is, Object* where);
    ~Parameter() noexcept(false) override;

    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;
    void printOn(std::ostream& os) const override;  // name (type) = value, or name (type) and the members
    void clearCopiedState() override;
    void deepenShallowCopy() override;

    const String& name() const { return name_; }
    const String& value() const { return value_; }
    const String& type() const { return type_; }
    void setValue(const char* text) { value_ = text; }
    ParametersCltn* subParameters() const { return subParameters_; }  // 0 unless a collection
    bool hasSubParameters() const { return subParameters_ != 0; }

    bool isBool() const;
    bool isInt() const;
    bool isFloat() const;
    bool isString() const;
    bool isIntRange() const;
    bool isFloatRange() const;

    bool boolValue() const;  // the value is "YES"
    // The number of the text, truncated toward zero. With check, a type that is neither "int" nor
    // an "int<" range raises the error PARAMETER_TYPE, naming the parameter.
    int intValue(bool check = false) const;
    double floatValue(bool check = false) const;  // the same with "float" and "float<"
    int enumIndex() const;                        // of the value in the type's enumeration, or -1

    // Without keepType the type becomes that of the setter. A range type (kept) bounds the value:
    // a number outside is clamped to the nearer end, as a slider would, and the answer is false.
    void setBool(bool flag, bool keepType = false);  // "YES" or "NO"
    bool setInt(int n, bool keepType = false);
    bool setFloat(double x, bool keepType = false);
    void setString(const char* text, bool keepType = false);
    // An index or a text not in the enumeration leaves the value as it was.
    void setEnum(int index);
    void setEnumName(const char* text);
    String enumName(int index) const;  // the entry, empty when index is outside the enumeration

    // The enumerations: one list of value texts per type name, shared by all parameters of the
    // type. The table owns its keys, lists and texts.
    static OrderedCltn& enumValues(const char* typeName, OrderedCltn& result);  // adds copies, owned
    static void addEnum(const char* typeName, const OrderedCltn& values);       // a copy, replacing any
    static void copyEnum(const char* newName, const char* oldName);             // unknown old: empty list
    static void addEnumValue(const char* typeName, const char* value);          // appended when absent
    static Dictionary& enumTable();
    static void removeEnums(const char* typeName);

private:
    template <class Stream>
    void readFields(Stream& is);
    bool typeStartsWith(const char* prefix) const;
    void checkType(const char* kind) const;
    const String* enumEntry(int index) const;  // 0 outside the type's enumeration

    String name_;
    String value_;
    String type_;
    ParametersCltn* subParameters_;
};

#endif
