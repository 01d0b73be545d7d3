// ScalarPlan: the checks that settle each operation for the static ranks, and the run on plain numbers.
#include "interpreter/scalarplan.h"

#include "interpreter/evalval.h"
#include "interpreter/operator.h"
#include "interpreter/scalar.h"
#include "interpreter/vardecl.h"

std::unique_ptr<ScalarPlan> ScalarPlan::compile(const std::vector<EvalStep>& steps) {
    std::unique_ptr<ScalarPlan> plan(new ScalarPlan);
    std::vector<int> levels;
    for (const EvalStep& step : steps)
        if (!plan->add(step, levels) || levels.size() > MAX_DEPTH || plan->variables.size() > MAX_VARIABLES)
            return 0;
    if (levels.empty()) return 0;
    return plan;
}

int ScalarPlan::indexOf(const EvalStep& step) {
    for (std::size_t i = 0; i < variables.size(); ++i)
        if (variables[i].declaration == step.node) return int(i);
    variables.push_back(Used{static_cast<VarDeclare*>(step.node), step.type});
    return int(variables.size()) - 1;
}

// The operators are tried on sample values of the ranks: the scalars' own
// rules tell whether the classes answer and what rank comes out.
bool ScalarPlan::add(const EvalStep& step, std::vector<int>& levels) {
    Operation operation{Operation::LOAD, false, step.level, step.code, 0, step.value, 0};
    if (step.kind == EvalStep::VARIABLE && step.level != 0) {
        operation.index = indexOf(step);
        levels.push_back(step.level);
    } else if (step.kind == EvalStep::NUMBER) {
        operation.kind = Operation::NUMBER;
        operation.name = &static_cast<Variable*>(step.node)->getName();
        levels.push_back(step.level);
    } else if (step.kind == EvalStep::UNARY && !levels.empty()) {
        ScalarValue result;
        bool stores;
        double stored;
        operation.kind = Operation::UNARY;
        operation.level = levels.back();
        if (!ScalarVar::unaryOperation(step.code, {operation.level, 1.0}, result, stores, stored))
            return false;
        levels.back() = result.level;
    } else if (step.kind == EvalStep::BINARY && levels.size() >= 2) {
        int right = levels.back();
        levels.pop_back();
        int left = levels.back();
        if (Operator::isAssign(step.code)) {
            double stored;
            operation.kind = Operation::ASSIGN;
            operation.level = left;
            operation.integer = left != ScalarVar::FLOAT_LEVEL;
            if (right > left || !ScalarVar::assigned(step.code, left, 1.0, 1.0, stored)) return false;
        } else {
            ScalarValue result;
            int own = right > left ? right : left;
            operation.kind = Operation::BINARY;
            operation.integer = own != ScalarVar::FLOAT_LEVEL;
            if (!ScalarVar::operate(step.code, own, 1.0, 1.0, result)) return false;
            operation.level = result.level;
            levels.back() = result.level;
        }
    } else {
        return false;
    }
    operations.push_back(operation);
    return true;
}

namespace {

// An entry of the stack: a variable, read when it is used, or a number.
struct Entry {
    double value;
    Variable* variable;
    int level;
    const String* name;

    double read() const { return variable ? EvalValue::valueOf(variable, level) : value; }
    void store(double x) {
        if (variable)
            EvalValue::setValueOf(variable, level, x);
        else
            value = x;
    }
};

}  // namespace

void ScalarPlan::run(Variable* const* found, EvalValue& result) const {
    Entry stack[MAX_DEPTH];
    int top = -1;
    for (const Operation& operation : operations) {
        switch (operation.kind) {
            case Operation::LOAD:
                stack[++top] = Entry{0.0, found[operation.index], operation.level, 0};
                break;
            case Operation::NUMBER:
                stack[++top] = Entry{operation.value, 0, operation.level, operation.name};
                break;
            case Operation::UNARY: {
                Entry& operand = stack[top];
                ScalarValue value;
                bool stores;
                double stored;
                ScalarVar::unaryOperation(operation.code, {operand.level, operand.read()}, value, stores,
                                          stored);
                if (stores) operand.store(stored);
                operand = Entry{value.value, 0, value.level, 0};
                break;
            }
            case Operation::BINARY: {
                Entry& left = stack[top - 1];
                double x =
                    ScalarVar::compute(operation.code, left.read(), stack[top].read(), operation.integer);
                left = Entry{ScalarVar::fitTo(operation.level, x), 0, operation.level, 0};
                --top;
                break;
            }
            case Operation::ASSIGN: {
                Entry& target = stack[top - 1];
                double r = stack[top].read();
                if (operation.code != OP_ASSIGN)
                    r = ScalarVar::compute(Operator::assignedOperation(operation.code), target.read(), r,
                                           operation.integer);
                target.store(ScalarVar::fitTo(operation.level, r));
                --top;
                break;
            }
        }
    }
    const Entry& last = stack[top];
    result = last.variable ? EvalValue::ofScalar(last.variable, last.level)
                           : EvalValue::of(ScalarValue{last.level, last.value}, last.name);
}
