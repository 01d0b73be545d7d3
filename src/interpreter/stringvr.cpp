// StringVar: escapes, concatenation, comparison and assignment.
#include "interpreter/stringvr.h"

#include <cctype>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <ostream>

#include "interpreter/charvar.h"
#include "interpreter/operator.h"

namespace {

void registerString(Class*) { Variable::registerType(new StringVar); }

String unescaped(const String& text) {
    String result;
    const char* p = text.asCharPointer();
    for (unsigned i = 0; i < text.size(); ++i) {
        int code = p[i] == '\\' && i + 1 < text.size() ? CharVar::escapedCharacter(p[i + 1]) : -1;
        if (code >= 0) {
            result += char(code);
            ++i;
        } else if (p[i] == '\\' && i + 1 < text.size() &&
                   std::isdigit(static_cast<unsigned char>(p[i + 1]))) {
            char* end = 0;
            long number = std::strtol(p + i + 1, &end, 10);
            result += char(number);
            i = unsigned(end - p) - 1;
        } else {
            result += p[i];
        }
    }
    return result;
}

bool isString(const Variable* v) { return v->isKindOf(class_StringVar); }

}  // namespace

DEFINE_CLASS(StringVar, Variable, 1, registerString)

StringVar::StringVar() {}

StringVar::StringVar(const String& text) : value(unescaped(text)) {}

void StringVar::deepenShallowCopy() {
    Variable::deepenShallowCopy();
    value.clearCopiedState();
}

const String& StringVar::getType() const {
    static const String type("string");
    return type;
}

Variable* StringVar::getOperationType(Variable* other, int op, int swapped) {
    if (!isString(other)) {
        if (!Operator::isAssign(op) && !swapped) return other->getOperationType(this, op, 1);
        operationError(other, op, swapped);
    }
    if (Operator::isComparison(op)) return new CharVar;
    if (op == OP_ADD || Operator::isArithmeticAssign(op)) return new StringVar;
    operationError(other, op, swapped);
}

Variable* StringVar::doOperation(Variable* other, int op, int swapped) {
    if (!isString(other)) {
        if (!Operator::isAssign(op) && !swapped) return other->doOperation(this, op, 1);
        operationError(other, op, swapped);
    }
    const String& right = static_cast<StringVar*>(other)->value;
    if (op == OP_ASSIGN) {
        value = right;
        return this;
    }
    const String& a = swapped ? right : value;
    const String& b = swapped ? value : right;
    if (op == OP_ADD) {
        StringVar* sum = new StringVar;
        sum->value = a + b;
        return sum;
    }
    if (!Operator::isComparison(op)) operationError(other, op, swapped);
    int order = std::strcmp(a.asCharPointer(), b.asCharPointer());
    bool truth = op == OP_EQ   ? order == 0
                 : op == OP_NE ? order != 0
                 : op == OP_GT ? order > 0
                 : op == OP_LT ? order < 0
                 : op == OP_GE ? order >= 0
                               : order <= 0;
    return new CharVar(std::int8_t(truth ? 1 : 0));
}

int StringVar::constructorIndex(const OrderedCltn& types) const {
    if (types.size() == 0) return 0;
    return types.size() == 1 && isString(dereference(argumentAt(types, 0))) ? 1 : -1;
}

void StringVar::execConstructor(int index, const OrderedCltn& arguments, std::int32_t& errorFlag) {
    if (index == 1) {
        Variable* argument = dereference(argumentAt(arguments, 0));
        if (isString(argument)) {
            value = static_cast<StringVar*>(argument)->value;
            return;
        }
        std::unique_ptr<Variable> converted(argument->convertTo(this));
        if (!isString(converted.get())) argument->Variable::convertTo(this);
        value = static_cast<StringVar*>(converted.get())->value;
    } else if (index == 0) {
        value = "";
    } else {
        Variable::execConstructor(index, arguments, errorFlag);
    }
}

void StringVar::printOn(std::ostream& os) const {
    Variable::printOn(os);
    os << " Value \"" << value.asCharPointer() << "\"";
}
