// CharVar: the literal's escapes, the display and the printed form.
#include "interpreter/charvar.h"

#include <cctype>
#include <cstdio>
#include <ostream>

namespace {

void registerChar(Class*) { Variable::registerType(new CharVar); }

const char* const escapes = "\"\\bfnrt";
const char codes[] = {'"', '\\', 8, 12, 10, 13, 9};

}  // namespace

DEFINE_CLASS(CharVar, ScalarVar, 1, registerChar)

int CharVar::escapedCharacter(char c) {
    for (int i = 0; escapes[i]; ++i)
        if (escapes[i] == c) return codes[i];
    return -1;
}

CharVar* CharVar::fromLiteral(const String& text) {
    String body = text.stripBoth("'");
    if (body.size() == 1) return new CharVar(std::int8_t(body[0u]));
    if (body.size() >= 2 && body[0u] == '\\') {
        int code = escapedCharacter(body[1u]);
        if (code >= 0) return new CharVar(std::int8_t(code));
        double number = 0;
        std::sscanf(body.asCharPointer() + 1, "%lf", &number);
        return new CharVar(std::int8_t(truncate(number)));
    }
    return new CharVar(std::int8_t(body.size() > 0 ? body[0u] : 0));
}

const String& CharVar::getType() const {
    static const String type("char");
    return type;
}

String CharVar::getValueString() const { return String(1, char(value)); }

void CharVar::printOn(std::ostream& os) const {
    Variable::printOn(os);
    os << " Value '";
    unsigned char c = static_cast<unsigned char>(value);
    const char* const escapeForms[] = {"\\b", "\\t", "\\n", 0, "\\f", "\\r"};
    if (std::isalnum(c))
        os << char(c);
    else if (c >= 8 && c <= 13 && escapeForms[c - 8])
        os << escapeForms[c - 8];
    else if (c == '"')
        os << "\\\"";
    else if (c == '\\')
        os << "\\\\";
    else
        os << int(c);
    os << "'";
}
