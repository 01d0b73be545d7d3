// The infix text of an expression to its postfix list, by the shunting-yard method: operands go
// straight to the list, operators wait on a stack until one of lower priority (or a closing
// bracket) comes.
#include "algebra/exprtext.h"

#include <cctype>
#include <cstdlib>

namespace {

struct Reader {
    const std::string& text;
    const std::vector<VariableS>& variables;
    ExpressionS& out;
    std::string& error;
    size_t at = 0;
    std::vector<OperatorS> waiting;  // a "(" entry is an OperatorS with that text
    bool expectOperand = true;

    Reader(const std::string& t, const std::vector<VariableS>& v, ExpressionS& o, std::string& e)
        : text(t), variables(v), out(o), error(e) {}

    bool fail(const std::string& message) {
        error = message + " in \"" + text + "\"";
        return false;
    }

    bool operand() {
        const char* start = text.c_str() + at;
        if (std::isdigit((unsigned char)*start) || *start == '.') {
            char* end = 0;
            double value = std::strtod(start, &end);
            if (end == start) return fail("bad number");
            at += size_t(end - start);
            CMatrix c(1, 1);
            c(0, 0) = value;
            out.push(Constant(c));
            return true;
        }
        size_t end = at;
        while (end < text.size() && (std::isalnum((unsigned char)text[end]) || text[end] == '_')) ++end;
        if (end == at) return fail(std::string("operand expected at '") + text[at] + "'");
        std::string name = text.substr(at, end - at);
        at = end;
        for (const VariableS& v : variables)
            if (name == v.getName().asCharPointer()) {
                out.push(v);
                return true;
            }
        return fail("unknown name '" + name + "'");
    }

    // Moves the waiting operators of at least this priority to the list.
    void release(int priority) {
        while (!waiting.empty() && !(waiting.back().textOf() == "(") &&
               waiting.back().priority() >= priority) {
            out.push(waiting.back());
            waiting.pop_back();
        }
    }

    bool step() {
        char c = text[at];
        if (std::isspace((unsigned char)c)) return ++at, true;
        if (expectOperand) {
            if (c == '(') return waiting.push_back(OperatorS("(")), ++at, true;
            if (c == '-') return waiting.push_back(OperatorS("-", true)), ++at, true;
            expectOperand = false;
            return operand();
        }
        if (c == ')') {
            release(0);
            if (waiting.empty()) return fail("')' without '('");
            waiting.pop_back();
            return ++at, true;
        }
        if (c != '+' && c != '-' && c != '*') return fail(std::string("unknown operator '") + c + "'");
        OperatorS op(std::string(1, c).c_str());
        release(op.priority());
        waiting.push_back(op);
        expectOperand = true;
        return ++at, true;
    }

    bool run() {
        while (at < text.size())
            if (!step()) return false;
        if (expectOperand) return fail("operand expected at the end");
        release(0);
        if (!waiting.empty()) return fail("'(' without ')'");
        return true;
    }
};

}  // namespace

bool parseExpression(const std::string& text, const std::vector<VariableS>& variables, ExpressionS& result,
                     std::string& error) {
    ExpressionS built;
    Reader reader(text, variables, built, error);
    if (!reader.run()) return false;
    result = built;
    return true;
}
