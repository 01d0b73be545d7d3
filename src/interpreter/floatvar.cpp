// FloatVar: owned and aliased doubles, their copies and display.
#include "interpreter/floatvar.h"

namespace {

void registerFloat(Class*) { Variable::registerType(new FloatVar); }

}  // namespace

DEFINE_CLASS(FloatVar, ScalarVar, 1, registerFloat)

FloatVar::FloatVar(double x) : value(new double(x)), ownsValue(1) {}

FloatVar::FloatVar(double* alias) : value(alias), ownsValue(0) {}

FloatVar::~FloatVar() noexcept(false) {
    if (ownsValue) delete value;
}

void FloatVar::deepenShallowCopy() {
    ScalarVar::deepenShallowCopy();
    if (!ownsValue) return;
    ownsValue = 0;
    value = new double(*value);
    ownsValue = 1;
}

const String& FloatVar::getType() const {
    static const String type("float");
    return type;
}

String FloatVar::getValueString() const { return formatText("%g", *value); }
