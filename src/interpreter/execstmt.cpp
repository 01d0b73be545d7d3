// Executer: statement dispatch, blocks, for, if, return, declarations, and the run-time error.
#include <memory>
#include <sstream>

#include "interpreter/charvar.h"
#include "interpreter/cleanup.h"
#include "interpreter/codeelem.h"
#include "interpreter/evalval.h"
#include "interpreter/executer.h"
#include "interpreter/funcdecl.h"
#include "interpreter/scalar.h"
#include "interpreter/scalarplan.h"
#include "interpreter/statemnt.h"
#include "interpreter/vardecl.h"
#include "interpreter/variable.h"
#include "interpreter/varref.h"
#include "quill/cback.h"
#include "quill/quillerr.h"
#include "quill/stackgrd.h"

namespace {

// The break and continue markers: addresses that no value has.
char breakTag, continueTag, returnedTag;
Variable* const BREAK = reinterpret_cast<Variable*>(&breakTag);
Variable* const CONTINUE = reinterpret_cast<Variable*>(&continueTag);

}  // namespace

Variable* const Executer::RETURNED_SCALAR = reinterpret_cast<Variable*>(&returnedTag);

namespace {

String printed(const Object* ob) {
    std::ostringstream os;
    os << *ob;
    return String(os.str().c_str());
}

// Raised directly rather than by setError, whose buffer a statement's printed form may outgrow.
[[noreturn]] void raise(const char* word, const String& message, int severity) {
    String text = String("[") + word + "] " + message;
    errorInProgress = 1;
    throw new TarnException(GENERICERR, text.asCharPointer(), severity);
}

}  // namespace

void Executer::runtimeError(const String& message, Statement* where, const char* word) {
    String text(message);
    if (where) {
        text += formatText(" At line %d", where->getLine());
        text += String(" on statement ") + printed(where);
        errorLocated = 1;
    }
    raise(word, text, SEV_ERROR);
}

// A failure of a value's operation, raised as a PARSE ERROR without a place,
// gets the innermost statement that was running when it happened.
Variable* Executer::execStatement(Statement* statement, Variable* returnType) {
    if (stopped) return 0;
    try {
        return dispatchStatement(statement, returnType);
    } catch (TarnException* e) {
        locate(e, statement);
    }
}

void Executer::locate(TarnException* e, Statement* statement) {
    if (e->code() != GENERICERR || errorLocated) throw;
    String message = e->message() + formatText(" At line %d", statement->getLine()) + " on statement " +
                     printed(statement);
    int severity = e->severity();
    delete e;
    errorLocated = 1;
    errorInProgress = 1;
    throw new TarnException(GENERICERR, message.asCharPointer(), severity);
}

// Returns 0 to go on, or what unwinds: a returned value or a marker.
// The classes are tried in the order of how often a program runs them.
inline Variable* Executer::dispatchStatement(Statement* statement, Variable* returnType) {
    Class* kind = statement->isA();
    if (kind == &class_ExprElement) {
        notify(statement);
        EvalValue value;
        EvalValueGuard guard(value);
        evalValue(static_cast<ExprElement*>(statement)->getExpression(), value);
        return 0;
    }
    if (kind == &class_IfStatement) return execIf(static_cast<IfStatement*>(statement), returnType);
    if (kind == &class_ReturnStatement)
        return execReturn(static_cast<ReturnStatement*>(statement), returnType);
    if (kind == &class_BlockOfCode) return execBlock(static_cast<BlockOfCode*>(statement), returnType);
    if (kind == &class_ForStatement) return execFor(static_cast<ForStatement*>(statement), returnType);
    if (kind == &class_VarDeclare) {
        execVarDeclare(static_cast<VarDeclare*>(statement));
        return 0;
    }
    if (kind == &class_ListOfElement) return execList(static_cast<ListOfElement*>(statement));
    if (kind == &class_FuncDeclare) return 0;
    if (statement->isEmpty()) return 0;
    if (statement->isBreak()) return BREAK;
    if (statement->isContinue()) return CONTINUE;
    if (statement->isExit()) {
        stopped = 1;
        return 0;
    }
    runtimeError("Unexpected statement", statement);
}

void Executer::announce(Statement* statement) {
    CallData data(statement, true);
    data.setNotOwn();
    cbackOn(TRACE_EXEC, &data);
    movePlaces();
}

Variable* Executer::execList(ListOfElement* list) {
    notify(list);
    const OrderedCltn& code = list->getCode();
    for (unsigned i = 0; i < code.size(); ++i) {
        Statement* element = static_cast<Statement*>(code.at(int(i)));
        if (element->isA() == &class_VarDeclare)
            execVarDeclare(static_cast<VarDeclare*>(element));
        else if (element->isA() != &class_FuncDeclare)
            runtimeError("Unexpected statement in a list of element", list);
    }
    return 0;
}

// The guard leaves a recursion to the call's own check, which names the function.
Variable* Executer::execBlock(BlockOfCode* block, Variable* returnType) {
    notify(block);
    if (stackRemaining() < STACK_RESERVE / 2)
        runtimeError("Blocks nested too deep, the stack is exhausted", block);
    pushScope();
    Variable* result = 0;
    const OrderedCltn& code = block->getCode();
    for (unsigned i = 0; i < code.size() && !result && !stopped; ++i)
        result = execStatement(static_cast<Statement*>(code.atInline(int(i))), returnType);
    popScope();
    return result;
}

// Each pass runs the body in a scope of its own. break and continue stop here;
// a returned value goes on up. The scope is emptied after each pass rather
// than made anew; a body that could put nothing in it has none. After the
// first pass the loop may go on as plans.
Variable* Executer::execFor(ForStatement* loop, Variable* returnType) {
    notify(loop);
    execStatement(loop->getAssign(), returnType);
    Statement* body = loop->getBody();
    bool scoped = needsScope(body);
    OrderedCltn* scope = 0;
    Variable* result = 0;
    bool planned = false;
    while (evalBool(loop->getTest(), 1)) {
        if (scoped && !scope) scope = pushScope();
        result = execStatement(body, returnType);
        if (scope && scope->size() > 0) {
            emptyScope(scope);
            movePlaces();
        }
        if (stopped || result == BREAK) {
            result = 0;
            break;
        }
        if (result && result != CONTINUE) break;
        result = 0;
        execStatement(loop->getIncrement(), returnType);
        if (!planned) {
            planned = true;
            if (runPlannedLoop(loop)) break;
        }
    }
    if (scope) popScope();
    return result;
}

// The plan kept, which make makes on the first look with the statement of each part.
template <typename Make>
const ScalarPlan* Executer::keptPlan(KeptPlan& kept, Make make) {
    bool tried;
    const ScalarPlan* plan = kept.get(tried);
    if (tried) return plan;
    std::vector<Statement*> parts;
    std::unique_ptr<ScalarPlan> made = make(parts);
    kept.set(std::move(made), std::move(parts));
    return kept.get(tried);
}

// After a first pass: a loop whose test (of a char result), increment and statements of the body are
// expressions of scalars, or ifs of such a test and such expressions (or a break or a continue), runs the
// rest of its passes as one plan while nothing listens to the statements, whose announcements nobody would
// hear; nothing a plan does can add a listener or move the places of its variables. A block of the body
// declares nothing, so that its scope would stay empty. False, with nothing done, for any other loop.
bool Executer::runPlannedLoop(ForStatement* loop) {
    if (cbackData) return false;
    KeptPlan& kept = loop->loopPlan();
    const ScalarPlan* plan =
        keptPlan(kept, [&](std::vector<Statement*>& parts) { return loopPlanOf(loop, parts); });
    Variable* const* found = plan ? placesOf(*plan) : 0;
    if (!found) return false;
    int part = 0;
    try {
        plan->runLoop(found, stopped, part);
    } catch (TarnException* e) {
        // A failure of the test is the loop's own, as it is when the statements run.
        if (part == 0) throw;
        locate(e, kept.part(part));
    }
    return true;
}

std::unique_ptr<ScalarPlan> Executer::loopPlanOf(ForStatement* loop, std::vector<Statement*>& parts) {
    const ScalarPlan* test = truthPlan(loop->getTest());
    const ScalarPlan* increment = statementPlan(loop->getIncrement());
    if (!test || !increment) return 0;
    std::vector<ScalarPlan::LoopStatement> body;
    parts.assign(1, loop);
    if (!addLoopStatements(loop->getBody(), body, parts)) return 0;
    parts.push_back(loop->getIncrement());
    return ScalarPlan::compileLoop(*test, body, *increment);
}

bool Executer::addLoopStatements(Statement* statement, std::vector<ScalarPlan::LoopStatement>& body,
                                 std::vector<Statement*>& parts) {
    Class* kind = statement ? statement->isA() : 0;
    if (kind == &class_BlockOfCode) {
        const OrderedCltn& code = static_cast<BlockOfCode*>(statement)->getCode();
        for (unsigned i = 0; i < code.size(); ++i)
            if (!addLoopStatements(static_cast<Statement*>(code.atInline(int(i))), body, parts)) return false;
        return true;
    }
    if (kind == &class_Statement) return statement->isEmpty();
    if (kind == &class_ExprElement) {
        const ScalarPlan* expression = statementPlan(statement);
        if (!expression) return false;
        body.push_back({0, expression, 0, ScalarPlan::NO_EXIT});
        parts.push_back(statement);
        return true;
    }
    if (kind != &class_IfStatement) return false;
    IfStatement* choice = static_cast<IfStatement*>(statement);
    const ScalarPlan* test = truthPlan(choice->getTest());
    Statement* then = choice->getThen();
    const ScalarPlan* expression = statementPlan(then);
    Statement* otherwise = choice->getElse();
    bool none = !otherwise || otherwise->isEmpty();
    const ScalarPlan* other = none ? 0 : statementPlan(otherwise);
    ScalarPlan::LoopExit exit = ScalarPlan::NO_EXIT;
    if (then && none)
        exit = then->isBreak()      ? ScalarPlan::BREAK_LOOP
               : then->isContinue() ? ScalarPlan::CONTINUE_LOOP
                                    : exit;
    if (!test || (!expression && exit == ScalarPlan::NO_EXIT) || (!none && !other)) return false;
    body.push_back({test, expression, other, exit});
    parts.push_back(choice);
    parts.push_back(choice->getThen());
    if (other) parts.push_back(otherwise);
    return true;
}

// A function whose statements are ifs that return a scalar expression when their test holds (their else,
// if any, another such if or a return), up to a return, every value of a rank the result takes as it
// stands, runs as one plan while nothing listens to its statements; each part names its statement when it
// fails, as the statements would.
bool Executer::runBodyPlan(FuncDeclare* function, Variable*& result) {
    if (cbackData || stopped) return false;
    KeptPlan& kept = function->bodyPlan();
    const ScalarPlan* plan =
        keptPlan(kept, [&](std::vector<Statement*>& parts) { return bodyPlanOf(function, parts); });
    Variable* const* found = plan ? placesOf(*plan) : 0;
    if (!found) return false;
    int part = 0;
    double value = 0.0;
    try {
        value = plan->runBody(*this, found, part);
    } catch (TarnException* e) {
        locate(e, kept.part(part));
    }
    if (stopped) return true;
    result = returnScalar(ScalarValue{function->returnLevel(), value}, function->getType());
    return true;
}

std::unique_ptr<ScalarPlan> Executer::bodyPlanOf(FuncDeclare* function, std::vector<Statement*>& parts) {
    int level = function->returnLevel();
    if (level == 0) return 0;
    std::vector<ScalarPlan::Return> body;
    const OrderedCltn& code = function->getCode();
    bool done = false;
    for (unsigned i = 0; i < code.size() && !done; ++i)
        if (!addReturn(static_cast<Statement*>(code.atInline(int(i))), level, body, parts, done)) return 0;
    return done ? ScalarPlan::compileBody(level, body) : 0;
}

bool Executer::addReturn(Statement* statement, int level, std::vector<ScalarPlan::Return>& body,
                         std::vector<Statement*>& parts, bool& done) {
    Class* kind = statement ? statement->isA() : 0;
    if (kind == &class_Statement) return statement->isEmpty();
    if (kind == &class_ReturnStatement) {
        Expression* expression = static_cast<ReturnStatement*>(statement)->getValue(0);
        const ScalarPlan* value = expression ? planOf(expression) : 0;
        if (!value || !EvalValue::takes(level, value->resultRank())) return false;
        body.push_back({0, value});
        parts.push_back(statement);
        done = true;
        return true;
    }
    if (kind != &class_IfStatement) return false;
    IfStatement* choice = static_cast<IfStatement*>(statement);
    const ScalarPlan* test = truthPlan(choice->getTest());
    Statement* then = choice->getThen();
    if (!test || !then || then->isA() != &class_ReturnStatement) return false;
    parts.push_back(choice);
    std::size_t before = body.size();
    bool returned = false;
    if (!addReturn(then, level, body, parts, returned)) return false;
    body[before].test = test;
    // What the else does when the test fails is what the statements after the if would do.
    Statement* otherwise = choice->getElse();
    if (!otherwise || otherwise->isEmpty()) return true;
    return addReturn(otherwise, level, body, parts, done);
}

const ScalarPlan* Executer::truthPlan(Expression* test) {
    const ScalarPlan* plan = test ? planOf(test) : 0;
    return plan && plan->resultRank() == ScalarVar::CHAR_LEVEL ? plan : 0;
}

const ScalarPlan* Executer::statementPlan(Statement* statement) {
    if (!statement || statement->isA() != &class_ExprElement) return 0;
    return planOf(static_cast<ExprElement*>(statement)->getExpression());
}

// The test is evaluated outside the scope that the chosen branch gets.
inline Variable* Executer::execIf(IfStatement* test, Variable* returnType) {
    notify(test);
    int truth = evalBool(test->getTest(), 0);
    if (stopped) return 0;
    Statement* branch = truth ? test->getThen() : test->getElse();
    if (!needsScope(branch)) return execStatement(branch, returnType);
    pushScope();
    Variable* result = execStatement(branch, returnType);
    popScope();
    return result;
}

// An expression, a return, or a plain statement (empty, break, continue, exit)
// declares nothing and opens no block: a scope made for it would stay empty.
bool Executer::needsScope(Statement* statement) {
    Class* kind = statement ? statement->isA() : 0;
    return kind != &class_ExprElement && kind != &class_ReturnStatement && kind != &class_Statement;
}

// A value of the declared type goes back as it stands, a reference as a copy
// of what it refers to, which dies with the frame; another type is converted.
// A scalar is always copied: it may alias an element of a matrix of the frame;
// it is left in the executer, converted, behind the marker RETURNED_SCALAR. The return type is that of
// the function of the innermost frame.
inline Variable* Executer::execReturn(ReturnStatement* statement, Variable* returnType) {
    notify(statement);
    Variable* voidType = Variable::voidType();
    Expression* expression = statement->getValue(0);
    if (!expression) {
        if (returnType != voidType)
            runtimeError(String("Expected a return argument of type ") + returnType->getType() + ", was",
                         statement);
        return voidType;
    }
    int level = callees.back()->returnLevel();
    ScalarValue scalar;
    if (planConverted(expression, level, scalar)) return returnScalar(scalar, returnType);
    EvalValue held;
    EvalValueGuard guard(held);
    evalValue(expression, held);
    if (held.empty()) return 0;
    if (returnType == voidType) runtimeError(String("Expected void, was") + held.box()->getType(), statement);
    if (held.convertedTo(level, scalar)) return returnScalar(scalar, returnType);
    ValueGuard owned(held.release());
    Variable* value = owned.get();
    if (value->getType().isEqual(returnType->getType()) && !value->isKindOf(class_ScalarVar)) {
        if (!value->isKindOf(class_VarReference)) return owned.release();
        return Variable::dereference(value)->clone();
    }
    std::unique_ptr<Variable> converted(returnType->clone());
    assign(converted.get(), value);
    return converted.release();
}

Variable* Executer::returnScalar(ScalarValue scalar, Variable* returnType) {
    returnedLevel = scalar.level;
    returnedValue = scalar.value;
    returnedName = &returnType->getName();
    return RETURNED_SCALAR;
}

void Executer::execVarDeclare(VarDeclare* declaration) {
    notify(declaration);
    Variable* variable = createVariable(declaration);
    if (!variable) return;
    if (declaration->getLevel() >= 0)
        static_cast<OrderedCltn*>(currentFrame().last())->add(*variable);
    else
        globals.add(*variable);
    movePlaces();
    if (errorFlag) stopped = 1;
}

// A clone of the declared prototype, built by its constructor call: the
// arguments are evaluated from the last to the first.
Variable* Executer::createVariable(VarDeclare* declaration) {
    std::unique_ptr<Variable> variable(declaration->getType()->clone());
    variable->setName(declaration->getName());
    ConstructorCall* call = declaration->getConstructorCall();
    OrderedCltn values;
    ContentsGuard guard(values);
    if (call) {
        for (int i = int(call->size()) - 1; i >= 0; --i) {
            Variable* value = evalExpression(call->getExpression(i));
            if (!value) break;
            values.addFirst(*call->convertArgument(i, value, errorFlag));
        }
    }
    if (!stopped && values.size() == (call ? call->size() : 0))
        variable->execConstructor(call ? call->getIndex() : 0, values, errorFlag);
    return variable.release();
}

void Executer::assign(Variable* target, Variable* value) {
    OrderedCltn source(1);
    source.add(*value);
    target->execConstructor(1, source, errorFlag);
    if (errorFlag) stopped = 1;
}
