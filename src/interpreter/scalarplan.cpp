// ScalarPlan: the checks that settle each operation for the static ranks, and the plan of a loop.
#include "interpreter/scalarplan.h"

#include <algorithm>

#include "interpreter/arrayvar.h"
#include "interpreter/funcdecl.h"
#include "interpreter/genvar.h"
#include "interpreter/mtrxvar.h"
#include "interpreter/operator.h"
#include "interpreter/scalar.h"
#include "interpreter/vardecl.h"

// Follows the steps on a stack of static entries: the rank of each, whether it
// is a variable or an element, and how many stores the plan had made when it was read.
// A(i, j) comes as the matrix, its method with the indices' expressions, and the call; a method of a
// numeric value that answers a number as the value, the method and the call.
class ScalarPlan::Compiler {
public:
    Compiler(ScalarPlan& plan, StepsOf stepsOf) : plan(plan), stepsOf(stepsOf) {}

    // The operation of a step; false when there is none.
    bool add(const EvalStep& step);
    bool finish();

private:
    struct Entry {
        int level;
        bool variable;
        int stores;
        const String* name;       // an untouched literal's
        bool element = false;     // an element of a matrix
        Variable* aggregate = 0;  // an array's or a struct's prototype, for an entry of no scalar
    };
    bool addReceiver(const EvalStep& step);
    bool addMethod(const EvalStep& step);
    bool addCall(const EvalStep& step);
    bool addFunction(const EvalStep& step);
    bool addAggregate(const EvalStep& step);
    bool addElement();
    bool addMember(const EvalStep& step);
    bool addUnary(const EvalStep& step);
    bool addBinary(const EvalStep& step);
    bool addAssign(const EvalStep& step);
    int indexOf(const EvalStep& step);
    void push(Operation operation, Entry entry);
    // The last operation when it pushed the variable or the literal now on top, which its
    // operator may take in; null otherwise.
    const Operation* lastPush() const;
    // Reads again the variable depth entries below the top when something was stored since it was read.
    void fresh(int depth);

    ScalarPlan& plan;
    StepsOf stepsOf;
    std::vector<Entry> entries;
    int stores = 0;
    // The numeric value whose method is under way, waiting for its method or its call; -1 for none.
    int receiver = -1;
    const AlgebraVar* receiverType = 0;
    FuncDeclare* method = 0;  // the method waiting for its call
    bool indexed = false;     // an element's indices are on top
    VarDeclare* member = 0;   // the member waiting for its selection
};

std::unique_ptr<ScalarPlan> ScalarPlan::compile(const std::vector<EvalStep>& steps, StepsOf stepsOf) {
    std::unique_ptr<ScalarPlan> plan(new ScalarPlan);
    Compiler compiler(*plan, stepsOf);
    for (const EvalStep& step : steps)
        if (!compiler.add(step)) return 0;
    if (!compiler.finish()) return 0;
    return plan;
}

int ScalarPlan::Compiler::indexOf(const EvalStep& step) {
    return plan.indexOf(Used{static_cast<VarDeclare*>(step.node), step.type});
}

int ScalarPlan::indexOf(const Used& used) {
    for (std::size_t i = 0; i < variables.size(); ++i)
        if (variables[i].declaration == used.declaration) return int(i);
    variables.push_back(used);
    locals = locals && used.declaration->holdsDeclaredClass() && used.type != &class_MatrixVar;
    outermost = (variables.size() == 1 || outermost) && locals && used.declaration->getLevel() == 0;
    return int(variables.size()) - 1;
}

std::unique_ptr<ScalarPlan> ScalarPlan::compileLoop(const ScalarPlan& test,
                                                    const std::vector<LoopStatement>& body,
                                                    const ScalarPlan& increment) {
    bool calls = test.calls || increment.calls;
    for (const LoopStatement& statement : body)
        calls = calls || (statement.expression && statement.expression->calls) ||
                (statement.test && statement.test->calls) ||
                (statement.otherwise && statement.otherwise->calls);
    if (calls) return 0;
    std::unique_ptr<ScalarPlan> plan(new ScalarPlan);
    std::vector<Operation>& operations = plan->operations;
    plan->mark(Operation::STOP, 0);
    if (!plan->append(test)) return 0;
    int part = 1;
    plan->mark(Operation::TEST, part);
    std::vector<std::size_t> continues;  // the jumps to the end of the pass
    for (const LoopStatement& statement : body) {
        std::size_t skip = 0;
        if (statement.test) {
            if (!plan->append(*statement.test)) return 0;
            skip = operations.size();
            plan->mark(Operation::SKIP, 0, ++part);
        }
        if (statement.exit == BREAK_LOOP) {
            plan->mark(Operation::BREAK, 0);
        } else if (statement.exit == CONTINUE_LOOP) {
            continues.push_back(operations.size());
            plan->mark(Operation::JUMP, 0);
        } else if (!plan->append(*statement.expression)) {
            return 0;
        }
        std::size_t jump = operations.size();
        if (statement.otherwise) {
            plan->mark(Operation::JUMP, 0);
            operations[skip].index = int(operations.size());
            plan->mark(Operation::DROP, ++part);
            if (!plan->append(*statement.otherwise)) return 0;
            operations[jump].index = int(operations.size());
        } else if (statement.test) {
            operations[skip].index = int(operations.size());
        }
        plan->mark(Operation::DROP, ++part);
    }
    // A pass that continues goes to the last drop, which names the increment as running.
    for (std::size_t jump : continues) operations[jump].index = int(operations.size()) - 1;
    if (!plan->append(increment)) return 0;
    plan->mark(Operation::AGAIN, 0);
    return plan;
}

std::unique_ptr<ScalarPlan> ScalarPlan::compileBody(int level, const std::vector<Return>& body) {
    std::unique_ptr<ScalarPlan> plan(new ScalarPlan);
    std::vector<Operation>& operations = plan->operations;
    int part = 0;
    for (const Return& statement : body) {
        std::size_t skip = 0;
        if (statement.test) {
            if (!plan->append(*statement.test)) return 0;
            skip = operations.size();
            plan->mark(Operation::SKIP, 0, ++part);
        }
        if (!plan->append(*statement.value)) return 0;
        plan->mark(Operation::RETURN, 0, statement.value->resultRank());
        operations.back().level = level;
        if (!statement.test) break;
        operations[skip].index = int(operations.size());
        plan->mark(Operation::DROP, ++part);
    }
    plan->calls = plan->calls || std::any_of(body.begin(), body.end(), [](const Return& r) {
                      return r.value->calls || (r.test && r.test->calls);
                  });
    return plan;
}

void ScalarPlan::mark(Operation::Kind kind, int index, int code) {
    operations.push_back(Operation{kind, false, 0, code, index, 0.0, 0});
}

bool ScalarPlan::append(const ScalarPlan& part) {
    depth = std::max(depth, part.depth);
    for (const Operation& operation : part.operations) {
        if (operation.kind == Operation::END) break;
        Operation copy = operation;
        bool numbered = copy.kind == Operation::LOAD || copy.kind == Operation::STEP_VARIABLE ||
                        copy.kind == Operation::BINARY_VARIABLE || copy.kind == Operation::ELEMENT ||
                        copy.kind == Operation::METHOD || copy.kind == Operation::LOAD_AGGREGATE;
        if (numbered) copy.index = indexOf(part.variables[std::size_t(operation.index)]);
        operations.push_back(copy);
    }
    return variables.size() <= MAX_VARIABLES;
}

void ScalarPlan::Compiler::push(Operation operation, Entry entry) {
    plan.operations.push_back(operation);
    entries.push_back(entry);
    plan.depth = std::max(plan.depth, int(entries.size()));
}

const ScalarPlan::Operation* ScalarPlan::Compiler::lastPush() const {
    if (plan.operations.empty()) return 0;
    const Operation& last = plan.operations.back();
    return last.kind == Operation::LOAD || last.kind == Operation::NUMBER ? &last : 0;
}

void ScalarPlan::Compiler::fresh(int depth) {
    Entry& entry = entries[entries.size() - 1 - size_t(depth)];
    if ((!entry.variable && !entry.element) || entry.stores == stores) return;
    Operation::Kind kind = entry.element ? Operation::RELOAD_ELEMENT : Operation::RELOAD;
    plan.operations.push_back(Operation{kind, false, entry.level, 0, depth, 0.0, 0});
    entry.stores = stores;
}

bool ScalarPlan::Compiler::add(const EvalStep& step) {
    if (receiver >= 0) return method ? addCall(step) : addMethod(step);
    if (member) return addMember(step);
    Operation operation{Operation::LOAD, false, step.level, 0, 0, step.value, 0};
    if (step.kind == EvalStep::VARIABLE && (step.type == &class_ArrayVar || step.type == &class_GenericVar)) {
        return addAggregate(step);
    } else if (step.kind == EvalStep::VARIABLE && step.level == 0) {
        return addReceiver(step);
    } else if (step.kind == EvalStep::MEMBER && !entries.empty() && entries.back().aggregate) {
        member = static_cast<VarDeclare*>(step.node);
        return true;
    } else if (step.kind == EvalStep::BINARY && step.code == OP_ELEMENT && entries.size() >= 2) {
        return addElement();
    } else if (step.kind == EvalStep::VARIABLE) {
        operation.index = indexOf(step);
        push(operation, Entry{step.level, true, stores, 0});
    } else if (step.kind == EvalStep::NUMBER) {
        operation.kind = Operation::NUMBER;
        push(operation, Entry{step.level, false, stores, &static_cast<Variable*>(step.node)->getName()});
    } else if (step.kind == EvalStep::CALL) {
        return addFunction(step);
    } else if (step.kind == EvalStep::UNARY && !entries.empty()) {
        return addUnary(step);
    } else if (step.kind == EvalStep::BINARY && entries.size() >= 2) {
        return Operator::isAssign(step.code) ? addAssign(step) : addBinary(step);
    } else {
        return false;
    }
    return entries.size() <= MAX_DEPTH && plan.variables.size() <= MAX_VARIABLES;
}

bool ScalarPlan::Compiler::addReceiver(const EvalStep& step) {
    Variable* type = static_cast<VarDeclare*>(step.node)->getType();
    if (!type->isKindOf(class_AlgebraVar)) return false;
    receiver = indexOf(step);
    receiverType = static_cast<const AlgebraVar*>(type);
    return plan.variables.size() <= MAX_VARIABLES;
}

// An array or a struct, of the class of its declaration, waits for its element or its member.
bool ScalarPlan::Compiler::addAggregate(const EvalStep& step) {
    Operation operation{Operation::LOAD_AGGREGATE, false, 0, 0, indexOf(step), 0.0, 0};
    Entry entry{0, false, stores, 0};
    entry.aggregate = static_cast<VarDeclare*>(step.node)->getType();
    push(operation, entry);
    return entries.size() <= MAX_DEPTH && plan.variables.size() <= MAX_VARIABLES;
}

// An element of an array by a scalar index, read as the binding of an int parameter reads it: a scalar
// element is read as a variable is, an array or a struct waits for its own element or member.
bool ScalarPlan::Compiler::addElement() {
    const Entry& array = entries[entries.size() - 2];
    const Entry& index = entries.back();
    if (!array.aggregate || array.aggregate->isA() != &class_ArrayVar || index.level == 0) return false;
    fresh(0);
    Variable* type = static_cast<ArrayVar*>(array.aggregate)->getElementType();
    int level = ScalarVar::rankOf(type);
    plan.operations.push_back(Operation{Operation::ELEMENT_OF, false, level, 0, 0, 0.0, 0});
    entries.pop_back();
    Entry element{level, level != 0, stores, 0};
    if (level == 0) element.aggregate = type;
    entries.back() = element;
    return true;
}

// A member of a struct, taken by its selection.
bool ScalarPlan::Compiler::addMember(const EvalStep& step) {
    if (step.kind != EvalStep::SELECT || step.code != OP_MEMBER ||
        entries.back().aggregate->isA() != &class_GenericVar)
        return false;
    Variable* type = member->getType();
    int level = ScalarVar::rankOf(type);
    int index = static_cast<GenericVar*>(entries.back().aggregate)->memberIndex(member);
    Operation operation{Operation::MEMBER_OF, false, level, 0, index, 0.0, 0};
    operation.field = member;
    plan.operations.push_back(operation);
    Entry value{level, level != 0, stores, 0};
    if (level == 0) value.aggregate = type;
    entries.back() = value;
    member = 0;
    return true;
}

// The element method of a matrix, whose indices are expressions of scalars that go on the stack, or a
// method without arguments that answers a number.
bool ScalarPlan::Compiler::addMethod(const EvalStep& step) {
    if (step.kind != EvalStep::METHOD) return false;
    const MethodCall* call = static_cast<const MethodCall*>(step.node);
    FuncDeclare* called = call->getFunction();
    bool element = receiverType->isA() == &class_MatrixVar &&
                   static_cast<const MatrixVar*>(receiverType)->isElementMethod(called);
    if (!element) {
        method = called;
        return call->argumentCount() == 0 && receiverType->numberLevel(called) != 0;
    }
    if (call->argumentCount() != 2) return false;
    int matrix = receiver;
    const AlgebraVar* matrixType = receiverType;
    receiver = -1;
    for (int k = 0; k < 2; ++k) {
        std::size_t depth = entries.size();
        for (const EvalStep& index : stepsOf(call->getExpression(k)))
            if (!add(index)) return false;
        if (receiver >= 0 || entries.size() != depth + 1) return false;
    }
    receiver = matrix;
    receiverType = matrixType;
    method = called;
    indexed = true;
    return true;
}

// An element's indices are read as the binding of int parameters reads them.
bool ScalarPlan::Compiler::addCall(const EvalStep& step) {
    if (step.kind != EvalStep::SELECT) return false;
    if (indexed) {
        fresh(1);
        fresh(0);
        plan.operations.push_back(
            Operation{Operation::ELEMENT, false, ScalarVar::FLOAT_LEVEL, 0, receiver, 0.0, 0});
        entries.pop_back();
        Entry element{ScalarVar::FLOAT_LEVEL, false, stores, 0};
        element.element = true;
        entries.back() = element;
    } else {
        int level = receiverType->numberLevel(method);
        Operation operation{Operation::METHOD, false, level, 0, receiver, 0.0, 0};
        operation.method = method;
        push(operation, Entry{level, false, stores, 0});
    }
    receiver = -1;
    method = 0;
    indexed = false;
    return entries.size() <= MAX_DEPTH;
}

// A function of the program (a built-in has no line) that answers a scalar. What it stores, the variables
// read before the call are read again before an operator takes them.
bool ScalarPlan::Compiler::addFunction(const EvalStep& step) {
    FuncCall* call = static_cast<FuncCall*>(step.node);
    FuncDeclare* function = call->getFunction();
    int level = function->returnLevel();
    if (function->getLine() == 0 || level == 0) return false;
    Operation operation{Operation::CALL, false, level, 0, 0, 0.0, 0};
    operation.call = call;
    ++stores;
    push(operation, Entry{level, false, stores, 0});
    plan.calls = true;
    return entries.size() <= MAX_DEPTH;
}

// The scalars' own rules, tried on a sample value, tell whether the class answers and the rank that
// comes out; an increment or a decrement is computed by the function of + or -.
bool ScalarPlan::Compiler::addUnary(const EvalStep& step) {
    int level = entries.back().level;
    if (level == 0) return false;
    ScalarValue result;
    bool storing;
    double stored;
    if (!ScalarVar::unaryOperation(step.code, {level, 1.0}, result, storing, stored)) return false;
    if (storing && entries.back().element) return false;
    fresh(0);
    Operation operation{Operation::UNARY, false, level, step.code, 0, 0.0, 0};
    if (storing) {
        bool up = step.code == OP_PRE_INC || step.code == OP_POST_INC;
        operation.kind = Operation::STEP;
        operation.before = step.code == OP_PRE_INC || step.code == OP_PRE_DEC;
        operation.apply = scalarops::applyOf(up ? OP_ADD : OP_SUB, level, level != ScalarVar::FLOAT_LEVEL);
        if (!operation.apply) return false;
        const Operation* operand = lastPush();
        if (operand && operand->kind == Operation::LOAD) {
            operation.kind = Operation::STEP_VARIABLE;
            operation.index = operand->index;
            plan.operations.pop_back();
        }
        ++stores;
    }
    plan.operations.push_back(operation);
    entries.back() = Entry{result.level, false, stores, 0};
    return true;
}

bool ScalarPlan::Compiler::addBinary(const EvalStep& step) {
    int right = entries.back().level;
    int left = entries[entries.size() - 2].level;
    if (left == 0 || right == 0) return false;
    int own = (right > left ? right : left) - ScalarVar::CHAR_LEVEL;
    scalarops::Apply apply = step.scalars.apply[own];
    int level = step.scalars.level[own];
    if (!apply) return false;
    Operation operation{Operation::BINARY, false, level, step.code, 0, 0.0, apply};
    const Operation* operand = lastPush();
    if (operand) {
        operation.kind =
            operand->kind == Operation::LOAD ? Operation::BINARY_VARIABLE : Operation::BINARY_NUMBER;
        operation.level = operand->level;
        operation.index = operand->index;
        operation.value = operand->value;
        plan.operations.pop_back();
        entries.pop_back();
        fresh(0);
    } else {
        fresh(1);
        fresh(0);
        entries.pop_back();
    }
    plan.operations.push_back(operation);
    entries.back() = Entry{level, false, stores, 0};
    return true;
}

// The target takes a value of a rank not above its own; a compound assignment reads the target
// when it stores.
bool ScalarPlan::Compiler::addAssign(const EvalStep& step) {
    int right = entries.back().level;
    Entry& target = entries[entries.size() - 2];
    if (right == 0 || target.level == 0) return false;
    scalarops::Apply apply = step.scalars.apply[target.level - ScalarVar::CHAR_LEVEL];
    if (right > target.level || !apply) return false;
    Operation operation{Operation::ASSIGN, false, target.level, step.code, 0, 0.0, 0};
    if (step.code != OP_ASSIGN) {
        operation.kind = Operation::COMPOUND;
        operation.apply = apply;
    }
    if (target.element)
        operation.kind = step.code != OP_ASSIGN ? Operation::COMPOUND_ELEMENT : Operation::ASSIGN_ELEMENT;
    fresh(0);
    plan.operations.push_back(operation);
    ++stores;
    target.stores = stores;
    target.name = 0;
    entries.pop_back();
    return true;
}

// A call alone is left to the evaluator, which names its value; a matrix's element may move during a call.
bool ScalarPlan::Compiler::finish() {
    if (entries.empty() || receiver >= 0 || member || entries.back().level == 0) return false;
    if (plan.calls) {
        if (plan.operations.size() == 1) return false;
        for (const Operation& operation : plan.operations)
            if (operation.kind == Operation::ELEMENT || operation.kind == Operation::METHOD ||
                operation.kind == Operation::LOAD_AGGREGATE)
                return false;
    }
    plan.resultElement = entries.back().element;
    const std::vector<Operation>& operations = plan.operations;
    if (operations.size() <= 2 && operations[0].kind == Operation::LOAD)
        plan.shape = operations.size() == 1                           ? NAMED
                     : operations[1].kind == Operation::BINARY_NUMBER ? WITH_LITERAL
                                                                      : ANY;
    plan.operations.push_back(Operation{Operation::END, false, 0, 0, 0, 0.0, 0});
    plan.resultLevel = entries.back().level;
    plan.resultName = entries.back().name;
    return true;
}
