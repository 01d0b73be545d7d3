// Parameter: construction, streams, type queries and the typed reads and writes of the value.
#include "control/param.h"

#include <cstdlib>
#include <cstring>
#include <ostream>

#include "control/paramcl.h"
#include "quill/integer.h"
#include "quill/objio.h"
#include "quill/quillerr.h"

DEFINE_CLASS(Parameter, Object, 1, 0)

namespace {

// The ends of a range type: first between "<" and ":", last between ":" and ">".
bool rangeOf(const String& type, double& first, double& last) {
    const char* open = std::strchr(type.asCharPointer(), '<');
    const char* colon = open ? std::strchr(open, ':') : 0;
    const char* close = colon ? std::strchr(colon, '>') : 0;
    if (!close) return false;
    char* end;
    first = std::strtod(open + 1, &end);
    if (end != colon) return false;
    last = std::strtod(colon + 1, &end);
    return end == close;
}

// Brings x into the range of type, when it has one; answers whether x was inside already.
bool clampToRange(const String& type, double& x) {
    double first, last;
    if (!rangeOf(type, first, last)) return true;
    double inside = x < first ? first : x > last ? last : x;
    bool unchanged = inside == x;
    x = inside;
    return unchanged;
}

}  // namespace

Parameter::Parameter() : subParameters_(0) {}

Parameter::Parameter(const char* name, const char* value, const char* type)
    : name_(name),
      value_(value),
      type_(type),
      subParameters_(type_ == "collection" ? new ParametersCltn : 0) {}

Parameter::Parameter(const char* name, const char* value) : Parameter(name, value, "string") {}

Parameter::Parameter(const char* name, const String& value) : Parameter(name, value.asCharPointer()) {}

Parameter::Parameter(const char* name, double value) : Parameter(name, "", "float") { setFloat(value); }

Parameter::Parameter(const char* name, bool flag) : Parameter(name, flag ? "YES" : "NO", "bool") {}

Parameter::Parameter(const char* name, int value) : Parameter(name, "", "int") { setInt(value); }

Parameter::Parameter(const char* name, const char* enumType, int index) : Parameter(name, "", enumType) {
    setEnum(index);
}

Parameter::Parameter(const char* name, int first, int last, int value)
    : Parameter(name, "", formatText("%s%d:%d>", "int<", first, last)) {
    setInt(value, true);
}

Parameter::Parameter(const char* name, double first, double last, double value)
    : Parameter(name, "", formatText("%s%g:%g>", "float<", first, last)) {
    setFloat(value, true);
}

Parameter::Parameter(const char* name, const ParametersCltn& members) : Parameter(name, "", "collection") {
    subParameters_->addAll(members);
}

Parameter::Parameter(const Parameter& p)
    : Object(p),
      name_(p.name_),
      value_(p.value_),
      type_(p.type_),
      subParameters_(p.subParameters_ ? new ParametersCltn(*p.subParameters_) : 0) {}

// The texts go first: p may be one of the members that the old collection takes with it.
Parameter& Parameter::operator=(const Parameter& p) {
    if (&p == this) return *this;
    name_ = p.name_;
    value_ = p.value_;
    type_ = p.type_;
    ParametersCltn* members = p.subParameters_ ? new ParametersCltn(*p.subParameters_) : 0;
    delete subParameters_;
    subParameters_ = members;
    return *this;
}

Parameter::Parameter(std::istream& is, Object* where) : Object(is, where), subParameters_(0) {
    readFields(is);
}

Parameter::Parameter(BinIstream& is, Object* where) : Object(is, where), subParameters_(0) { readFields(is); }

// A collection stored without its members gets an empty set, as the constructors give it.
template <class Stream>
void Parameter::readFields(Stream& is) {
    readFrom(is, class_String, &name_);
    readFrom(is, class_String, &type_);
    readFrom(is, class_String, &value_);
    Object* members = readOptional(is);
    if (members)
        subParameters_ = CAST(ParametersCltn, members);
    else if (type_ == "collection")
        subParameters_ = new ParametersCltn;
}

Parameter::~Parameter() noexcept(false) { delete subParameters_; }

void Parameter::storer(std::ostream& os) const {
    Object::storer(os);
    name_.storeOn(os);
    type_.storeOn(os);
    value_.storeOn(os);
    storeOptional(os, subParameters_);
}

void Parameter::storer(BinOstream& os) const {
    Object::storer(os);
    name_.storeOn(os);
    type_.storeOn(os);
    value_.storeOn(os);
    storeOptional(os, subParameters_);
}

void Parameter::printOn(std::ostream& os) const {
    os << name_ << " (" << type_ << ")";
    if (subParameters_)
        os << " " << *subParameters_;
    else
        os << " = " << value_;
}

void Parameter::clearCopiedState() {
    Object::clearCopiedState();
    name_.clearCopiedState();
    value_.clearCopiedState();
    type_.clearCopiedState();
}

void Parameter::deepenShallowCopy() {
    Object::deepenShallowCopy();
    if (subParameters_) subParameters_ = CAST(ParametersCltn, subParameters_->deepCopy());
}

// Type queries

bool Parameter::typeStartsWith(const char* prefix) const {
    return std::strncmp(type_.asCharPointer(), prefix, std::strlen(prefix)) == 0;
}

bool Parameter::isBool() const { return type_ == "bool"; }
bool Parameter::isInt() const { return type_ == "int"; }
bool Parameter::isFloat() const { return type_ == "float"; }
bool Parameter::isString() const { return type_ == "string"; }
bool Parameter::isIntRange() const { return typeStartsWith("int<"); }
bool Parameter::isFloatRange() const { return typeStartsWith("float<"); }

// Typed reads and writes

void Parameter::checkType(const char* kind) const {
    if (type_ == kind || typeStartsWith(formatText("%s<", kind))) return;
    setError(GENERICERR, SEV_ERROR, "PARAMETER_TYPE", "parameter ", name_.asCharPointer(),
             formatText(" of type %s read as %s", type_.asCharPointer(), kind));
}

bool Parameter::boolValue() const { return value_ == "YES"; }

int Parameter::intValue(bool check) const {
    if (check) checkType("int");
    return int(value_.asDouble());
}

double Parameter::floatValue(bool check) const {
    if (check) checkType("float");
    return value_.asDouble();
}

void Parameter::setBool(bool flag, bool keepType) {
    if (!keepType) type_ = "bool";
    value_ = flag ? "YES" : "NO";
}

bool Parameter::setInt(int n, bool keepType) {
    if (!keepType) type_ = "int";
    double x = n;
    bool inside = !isIntRange() || clampToRange(type_, x);
    value_ = formatText("%d", int(x));
    return inside;
}

bool Parameter::setFloat(double x, bool keepType) {
    if (!keepType) type_ = "float";
    bool inside = !isFloatRange() || clampToRange(type_, x);
    value_ = Float(x);
    return inside;
}

void Parameter::setString(const char* text, bool keepType) {
    if (!keepType) type_ = "string";
    value_ = text;
}
