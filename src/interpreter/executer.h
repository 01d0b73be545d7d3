// Executer, the machine that runs a parsed program: frames, statements, expressions, calls and built-ins.
#ifndef INTERPRETER_EXECUTER_H
#define INTERPRETER_EXECUTER_H

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <vector>

#include "algebra/algebra.h"
#include "interpreter/scalarplan.h"
#include "interpreter/scalarpool.h"
#include "quill/orderedc.h"
#include "quill/symbol.h"

class CodeParser;
class EvalValue;
class ScalarPlan;
struct ScalarValue;
struct EvalStep;
class Expression;
class FuncCall;
class KeptPlan;
class FuncDeclare;
class ListOfElement;
class MatrixVar;
class MethodCall;
class ForStatement;
class IfStatement;
class BlockOfCode;
class ReturnStatement;
class Statement;
class VarDeclare;
class Variable;

extern Class class_Executer;

// The aspect of the notification sent on every statement reached: the debugger's hook.
extern Symbol TRACE_EXEC;

// Frames mirror the parser's scopes: a frame for each active call, holding a
// scope (a list of values) for each open block of that call; a variable is
// found by its declaration's level and index. Once stopped, every operation
// returns at once. Errors of code 18 unwind to run, callFunction or evaluate,
// which answer their message; the globals stay for inspection.
class Executer : public Algebra {
    DECLARE_MEMBERS(Executer)
public:
    Executer();
    // Registers the built-in functions with the parser, once per parser.
    explicit Executer(CodeParser* parser);
    ~Executer() noexcept(false) override;

    // Runs the global initialisers in source order and then main. Answers the
    // message, also put in message, empty on success; stoppedResult tells
    // whether exit (or stop) ended the run.
    String run(String& message, int& stoppedResult);
    // Calls a function of a program already run, with values for its parameters;
    // answers its result, owned by the caller, or null.
    Variable* callFunction(FuncDeclare* function, OrderedCltn& arguments, String& message,
                           int& stoppedResult);
    // The resident mode: source (recompiled when it changes) gives the
    // functions and globals, text is one line run as the body of a main; the
    // variables it declares become globals for the next line. Answers the
    // message, empty on success.
    String evaluate(const String& source, const String& text);
    // Empties the globals and the resident source, and resets the parser.
    void clear();
    // The innermost variable of that name: frames from the last, scopes from
    // the last, then the globals; null when absent.
    Variable* getVariable(const String& name, int silent);
    // name = "value", or name: unknown variable name.
    String printVariable(const String& name);
    const OrderedCltn& getGlobals() const { return globals; }
    OrderedCltn getBuiltins() const { return builtins; }
    void stop() { stopped = 1; }
    // The calls under way, the outermost first: the function of each, and its
    // scopes (lists of values), the innermost block last. Read-only views for
    // the debugger.
    int frameCount() const { return int(frames.size()); }
    FuncDeclare* frameFunction(int frame) const;
    const OrderedCltn& frameScopes(int frame) const;
    bool isStopped() const { return stopped != 0; }
    // The value of a call of a function of the program that answers a scalar, in the form of the class
    // of that rank, for a plan; any number when the call stopped the executer or made no value.
    double scalarCall(FuncCall* call, int level);

    // --- Built-in functions ---
    // A built-in receives its arguments bound to its parameters (values
    // converted, references as they stand) and answers a new value or null.
    typedef Variable* (*BuiltinFunction)(Executer& executer, const String& name, OrderedCltn& arguments);
    // Adds a built-in for every Executer made later whose parser knows its types;
    // a parameter type ending in '&' is a reference. A class of values of another
    // library registers its built-ins so, from its class initor.
    static void addBuiltin(const char* name, const char* returnType,
                           std::initializer_list<const char*> parameters, BuiltinFunction function);
    // The numeric cores of the matrix built-ins.
    // lyap and lyapd: the factored solver on L, the second argument triangularised
    // and cut or padded to n rows; answers R'R.
    Matrix lyapunovSolution(const Matrix& A, const Matrix& B, bool discrete);
    // ls and ls1: [A | B] triangularised on A's columns with B solved by back
    // substitution, written back into A and B; answers the rms of the residual.
    // A tolerance below 0 keeps the global one.
    double leastSquares(Matrix& A, Matrix& B, double tolerance);
    // chol: the factor R with A = R'R; when there is none, the console line
    // "the matrix cannot be decomposed" and A as it stands.
    Matrix cholesky(const Matrix& A);

private:
    // --- Statements (execstmt.cpp) ---
    Variable* execStatement(Statement* statement, Variable* returnType);
    Variable* dispatchStatement(Statement* statement, Variable* returnType);
    Variable* execList(ListOfElement* list);
    Variable* execBlock(BlockOfCode* block, Variable* returnType);
    Variable* execFor(ForStatement* loop, Variable* returnType);
    Variable* execIf(IfStatement* test, Variable* returnType);
    static bool needsScope(Statement* statement);
    template <typename Make>
    const ScalarPlan* keptPlan(KeptPlan& kept, Make make);
    bool runPlannedLoop(ForStatement* loop);
    // A body of returns of scalars runs as one plan while nothing listens; false, with nothing done, for
    // any other body.
    bool runBodyPlan(FuncDeclare* function, Variable*& result);
    std::unique_ptr<ScalarPlan> bodyPlanOf(FuncDeclare* function, std::vector<Statement*>& parts);
    // Adds the return that the statement makes to the body's plan; false for a statement of another
    // kind. A return without a test ends the body: done tells.
    bool addReturn(Statement* statement, int level, std::vector<ScalarPlan::Return>& body,
                   std::vector<Statement*>& parts, bool& done);
    // The plan of the loop, and the statement that each part of it runs; null when the loop is of another
    // kind.
    std::unique_ptr<ScalarPlan> loopPlanOf(ForStatement* loop, std::vector<Statement*>& parts);
    // Adds what the statement of a loop's body runs as a plan; false when it cannot run as one.
    bool addLoopStatements(Statement* statement, std::vector<ScalarPlan::LoopStatement>& body,
                           std::vector<Statement*>& parts);
    // The plan of an expression statement that has one, made now if it was never run; else null.
    const ScalarPlan* statementPlan(Statement* statement);
    // The expression's plan, made now if the expression was never evaluated; null when it has none.
    const ScalarPlan* planOf(Expression* expression);
    // The same for a test, whose plan must answer a char; null otherwise.
    const ScalarPlan* truthPlan(Expression* test);
    Variable* execReturn(ReturnStatement* statement, Variable* returnType);
    // The scalar left behind RETURNED_SCALAR, with the name of the function's type.
    Variable* returnScalar(ScalarValue scalar, Variable* returnType);
    void execVarDeclare(VarDeclare* declaration);
    Variable* createVariable(VarDeclare* declaration);
    void assign(Variable* target, Variable* value);
    // The statement is announced to the listeners of TRACE_EXEC, when there are any.
    void notify(Statement* statement) {
        if (cbackData) announce(statement);
    }
    void announce(Statement* statement);
    // A failure of a value's operation, raised as a PARSE ERROR without a place, goes on with the statement
    // that was running; any other goes on as it is. Called by the handler of e.
    [[noreturn]] void locate(class TarnException* e, Statement* statement);
    [[noreturn]] void runtimeError(const String& message, Statement* where,
                                   const char* word = "RUN-TIME ERROR");

    // --- Expressions and calls (evalexpr.cpp) ---
    struct EvalState;
    // The value of the postfix expression, owned by the caller; null without one.
    Variable* evalExpression(Expression* expression);
    // The same in a register: scalars stay out of the heap. result is empty on entry.
    void evalValue(Expression* expression, EvalValue& result);
    // The same when the expression has no plan, or one that does not fit its variables.
    void evalSteps(const std::vector<EvalStep>& steps, const ScalarPlan* plan, EvalValue& result);
    bool runPlan(const ScalarPlan& plan, EvalValue& result);
    // The expression's plan, with the places of its variables, when it has one that fits them and the
    // run goes on; null otherwise.
    const ScalarPlan* readyPlan(Expression* expression, Variable* const*& found);
    // The result of the expression's plan converted for the scalar class of rank level, when the plan
    // is ready and that class takes its result as it stands; false, with nothing run, otherwise.
    bool planConverted(Expression* expression, int level, ScalarValue& converted);
    // The plan's variables, kept with it under the present mark; null when one is not of its class.
    Variable* const* placesOf(const ScalarPlan& plan);
    Variable* const* outermostPlaces(const ScalarPlan& plan);
    Variable* const* findPlaces(const ScalarPlan& plan);
    void evalElement(EvalState& state, const EvalStep& step);
    // Finds the variable of a VARIABLE step and keeps it in the step under the present mark.
    void findPlace(const EvalStep& step);
    void evalUnary(EvalState& state, int code);
    void evalBinary(EvalState& state, const EvalStep& step);
    void evalSelect(EvalState& state);
    bool elementInPlace(EvalState& state);
    bool selectScalarMember(EvalState& state);
    bool selectScalar(EvalState& state, Variable* receiver);
    void evalMethod(EvalState& state, MethodCall* call);
    void bindIndices(EvalState& state, MatrixVar* matrix, MethodCall* call);
    bool unaryOnScalar(EvalValue& value, int code);
    void unaryOnValue(EvalValue& value, int code);
    bool binaryOnScalars(EvalState& state, const EvalStep& step);
    void finishOperation(EvalState& state, Variable* result);
    // The truth of the value through a char; without a value, 1 when stopped or emptyAllowed, else 0.
    int evalBool(Expression* expression, int emptyAllowed);
    // What the declaration's place holds: a reference parameter's reference as it stands.
    Variable* slotOf(VarDeclare* declaration);
    void callFunction(FuncCall* call, EvalValue& result);
    // The call's value, owned, or RETURNED_SCALAR; null when the executer stopped or an argument made
    // no value.
    Variable* invoke(FuncCall* call);
    Variable* callBuiltin(FuncCall* call);
    static BuiltinFunction findBuiltin(const String& name);
    // Evaluates the call's arguments from the one numbered from in the present frame into values: a
    // reference as it stands, renamed after its parameter; a value assigned to a
    // new variable of the parameter's type. False when a value was missing.
    bool bindArguments(FuncDeclare* function, FuncCall* call, OrderedCltn& values, int from = 0);
    void bindArgument(VarDeclare* parameter, EvalValue& held, OrderedCltn& values);
    // The same into a scope that holds the parameters of the function's last call, which keepParameters
    // accepted.
    // inPlace is cleared when an argument sent the parameters back.
    bool rebindArguments(FuncDeclare* function, FuncCall* call, OrderedCltn& scope, bool& inPlace);
    // Runs the statements in a new frame whose first scope is scope; the frame goes
    // with its values, except scope itself when keepScope is set. Answers the result.
    Variable* runFunction(FuncDeclare* function, OrderedCltn* scope, bool keepScope);
    // Runs the statements in frame, pushed for the time of the run; a scalar returned is left
    // behind RETURNED_SCALAR.
    Variable* runStatements(FuncDeclare* function, OrderedCltn* frame);
    void keepResidentVariables(OrderedCltn* scope);

    // --- Frames (executer.cpp; those of calls in evalcall.cpp) ---
    // The places of variables that plans and steps keep go stale: a frame came
    // or went, a variable was made or destroyed, or a listener ran.
    void movePlaces() { placeMark = ++lastPlaceMark; }
    OrderedCltn* newList();
    void releaseList(OrderedCltn* list);
    // A frame for a call of function: its first scope is empty, or holds the parameters of the
    // function's last call.
    OrderedCltn* newFrame(FuncDeclare* function);
    // The frame's values go, but for the parameters of function (null for none) when keepParameters
    // accepts them; the frame is kept with its first scope for the next call.
    // rebound tells that the parameters are those kept at the function's last call, bound again in place.
    void releaseFrame(OrderedCltn* frame, FuncDeclare* function, bool rebound = false);
    // Whether scope holds plain scalars for the function's parameters, all of scalar classes, few enough
    // to be bound again in place; the scope is left with the parameters only when it does. Parameters
    // rebound in place are still of their classes: only what refers to them is looked at.
    bool keepParameters(FuncDeclare* function, OrderedCltn& scope, bool rebound);
    // The parameters kept in spare frames go: the functions may be parsed anew.
    void forgetParameters();
    // The flags of a run cleared, before a run, a call from outside or a resident line.
    void startRun();
    void emptyScope(OrderedCltn* scope);
    // A value of a scope that goes: a plain scalar to the pool, any other destroyed.
    void dropValue(Variable* value);
    void destroyScope(OrderedCltn* scope);
    void destroyFrame(OrderedCltn* frame);
    OrderedCltn& currentFrame() const { return *lastFrame; }
    OrderedCltn* pushScope();
    void popScope();
    void destroyFrames();
    void destroyGlobals();
    void makeGlobals();
    void registerBuiltins();
    // Destroys the frames and answers the message of an error of code 18, the
    // error deleted; an error of any other code goes on.
    String caughtMessage(class TarnException* e);

    std::int32_t stopped;
    std::uint64_t placeMark;  // the places kept under this mark are good; no two executers share one
    static std::uint64_t lastPlaceMark;  // the last mark given
    CodeParser* parser;                  // not owned
    std::int32_t errorFlag;
    String sourceText;                     // the source of the resident mode
    OrderedCltn globals;                   // values in the order of their index; owned
    std::vector<OrderedCltn*> frames;      // of scopes, of values; owned
    std::vector<FuncDeclare*> callees;     // of each frame, not owned
    OrderedCltn builtins;                  // FuncDeclare, owned by the parser
    std::int32_t errorLocated;             // the error on its way out already names its statement
    std::vector<OrderedCltn*> spareLists;  // emptied scopes and frames, for reuse; owned
    // Frames of finished calls, each with its first scope, and the function whose parameters that scope
    // holds, or null; owned.
    struct SpareFrame {
        OrderedCltn* frame;
        FuncDeclare* function;
    };
    std::vector<SpareFrame> spareFrames;
    ScalarPool scalars;       // scalars of emptied scopes, for the next arguments
    OrderedCltn noArguments;  // what a method called without arguments receives; always empty
    OrderedCltn* lastFrame;   // the last of frames, null without one
    // What the last return statement left behind RETURNED_SCALAR: the scalar, converted, and
    // the name of the function's type, which the value takes should it be made.
    int returnedLevel;
    double returnedValue;
    const String* returnedName;
    static Variable* const RETURNED_SCALAR;
    enum { SPARE_LISTS = 64, MAX_KEPT_PARAMETERS = 8 };
};

#endif
