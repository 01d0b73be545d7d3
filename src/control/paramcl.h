// ParametersCltn, the ordered set of parameters of a model block or of a dialogue.
#ifndef CONTROL_PARAMCL_H
#define CONTROL_PARAMCL_H

#include "control/param.h"
#include "quill/orderedc.h"
#include "quill/symbol.h"

extern Class class_ParametersCltn;

extern Symbol VariableChanged;  // "VariableChanged": a member's value was changed by its editor

// Owns its members, which are copies of the parameters added.
class ParametersCltn : public Object {
    DECLARE_MEMBERS(ParametersCltn)
public:
    ParametersCltn();
    ParametersCltn(const ParametersCltn& c);  // copies of the members
    ParametersCltn& operator=(const ParametersCltn&) = delete;
    // Stream form: the embedded OrderedCltn of the members.
    ParametersCltn(std::istream& is, Object* where);
    ParametersCltn(BinIstream& is, Object* where);
    ~ParametersCltn() noexcept(false) override;

    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;
    // The class name, " [", a line per member one level further in, then "]".
    void printOn(std::ostream& os) const override;
    void clearCopiedState() override;
    void deepenShallowCopy() override;

    Parameter& add(const Parameter& p);  // answers the copy
    void addAll(const ParametersCltn& other);
    unsigned size() const override { return params.size(); }
    Parameter& at(int index) const;                 // INDEXRANGE outside
    OrderedCltn& names(OrderedCltn& result) const;  // adds a String per member, owned by result
    // The first member of that name; when there is none, a fresh empty Parameter that is no member
    // and that this collection deletes with itself.
    Parameter& find(const char* name);
    Parameter& get(Parameter& result, const char* name) const;  // a copy, or an empty one

private:
    Parameter* member(const char* name) const;  // the first of that name, or 0

    OrderedCltn params;
    OrderedCltn misses;  // the fresh parameters that find gave out; not stored
};

#endif
