// ParametersCltn: the owned members, their stream form, the look-ups by name and the print form.
#include "control/paramcl.h"

#include <cstring>
#include <ostream>

#include "quill/indent.h"
#include "quill/objio.h"

DEFINE_CLASS(ParametersCltn, Object, 1, 0)

Symbol VariableChanged("VariableChanged");

ParametersCltn::ParametersCltn() {}

ParametersCltn::ParametersCltn(const ParametersCltn& c) : Object(c) { addAll(c); }

ParametersCltn::ParametersCltn(std::istream& is, Object* where) : Object(is, where) {
    readFrom(is, class_OrderedCltn, &params);
}

ParametersCltn::ParametersCltn(BinIstream& is, Object* where) : Object(is, where) {
    readFrom(is, class_OrderedCltn, &params);
}

ParametersCltn::~ParametersCltn() noexcept(false) {
    params.deleteContents();
    misses.deleteContents();
}

void ParametersCltn::storer(std::ostream& os) const {
    Object::storer(os);
    params.storeOn(os);
}

void ParametersCltn::storer(BinOstream& os) const {
    Object::storer(os);
    params.storeOn(os);
}

void ParametersCltn::printOn(std::ostream& os) const {
    os << className() << " [\n";
    {
        IndentScope inner(os);
        for (unsigned i = 0; i < size(); ++i) {
            writeIndentation(os);
            os << at(int(i)) << "\n";
        }
    }
    writeIndentation(os);
    os << "]";
}

// A copy starts without the misses of the original, which stay the original's.
void ParametersCltn::clearCopiedState() {
    Object::clearCopiedState();
    params.clearCopiedState();
    misses.clearCopiedState();
    misses.removeAll();
}

void ParametersCltn::deepenShallowCopy() {
    Object::deepenShallowCopy();
    params.deepenShallowCopy();
}

Parameter& ParametersCltn::add(const Parameter& p) {
    Parameter* copy = new Parameter(p);
    params.add(*copy);
    return *copy;
}

void ParametersCltn::addAll(const ParametersCltn& other) {
    unsigned total = size() + other.size();
    if (params.capacity() < total) params.reSize(total);
    for (unsigned i = 0; i < other.size(); ++i) add(other.at(int(i)));
}

Parameter& ParametersCltn::at(int index) const { return *CAST(Parameter, params.at(index)); }

OrderedCltn& ParametersCltn::names(OrderedCltn& result) const {
    for (unsigned i = 0; i < size(); ++i) result.add(*new String(at(int(i)).name()));
    return result;
}

Parameter* ParametersCltn::member(const char* name) const {
    for (unsigned i = 0; i < size(); ++i)
        if (std::strcmp(at(int(i)).name().asCharPointer(), name) == 0) return &at(int(i));
    return 0;
}

Parameter& ParametersCltn::find(const char* name) {
    if (Parameter* found = member(name)) return *found;
    Parameter* fresh = new Parameter;
    misses.add(*fresh);
    return *fresh;
}

Parameter& ParametersCltn::get(Parameter& result, const char* name) const {
    const Parameter* found = member(name);
    result = found ? *found : Parameter();
    return result;
}
