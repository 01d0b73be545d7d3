// IntVar: its type, its conversion to char and its display.
#include "interpreter/intvar.h"

#include "interpreter/charvar.h"
#include "interpreter/floatvar.h"

namespace {

void registerInt(Class*) { Variable::registerType(new IntVar); }

}  // namespace

DEFINE_CLASS(IntVar, ScalarVar, 1, registerInt)

const String& IntVar::getType() const {
    static const String type("int");
    return type;
}

int IntVar::canConvertTo(const Variable* target) const {
    return target->isKindOf(class_CharVar) && value >= 0 && value <= 255;
}

Variable* IntVar::convertTo(const Variable* target) const {
    if (canConvertTo(target)) return new CharVar(std::int8_t(value));
    return Variable::convertTo(target);
}

bool IntVar::acceptsInConstructor(const Variable* argument) const {
    return argument->isKindOf(class_FloatVar) || ScalarVar::acceptsInConstructor(argument);
}

String IntVar::getValueString() const { return formatText("%d", int(value)); }
