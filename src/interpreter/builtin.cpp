// Executer: the table of built-in functions, the mathematical ones and the numeric settings, and the matrix
// cores.
#include <cmath>
#include <iostream>
#include <string>
#include <vector>

#include "interpreter/codepars.h"
#include "interpreter/executer.h"
#include "interpreter/floatvar.h"
#include "interpreter/funcdecl.h"
#include "interpreter/variable.h"
#include "quill/quillerr.h"

namespace {

struct BuiltinEntry {
    std::string name;
    std::string returnType;
    std::vector<std::string> parameters;
    Executer::BuiltinFunction function;
};

double argument(OrderedCltn& arguments, int i) {
    return static_cast<FloatVar*>(Variable::dereference(Variable::argumentAt(arguments, i)))->getValue();
}

struct MathFunction {
    const char* name;
    double (*function)(double);
};

const MathFunction mathFunctions[] = {
    {"sin", [](double x) { return std::sin(x); }},     {"asin", [](double x) { return std::asin(x); }},
    {"cos", [](double x) { return std::cos(x); }},     {"acos", [](double x) { return std::acos(x); }},
    {"exp", [](double x) { return std::exp(x); }},     {"log", [](double x) { return std::log(x); }},
    {"log10", [](double x) { return std::log10(x); }}, {"sqrt", [](double x) { return std::sqrt(x); }},
    {"tan", [](double x) { return std::tan(x); }},     {"atan", [](double x) { return std::atan(x); }},
    {"abs", [](double x) { return std::fabs(x); }}};

Variable* mathBuiltin(Executer&, const String& name, OrderedCltn& arguments) {
    for (const MathFunction& entry : mathFunctions)
        if (name.isEqual(String(entry.name))) return new FloatVar(entry.function(argument(arguments, 0)));
    return 0;
}

Variable* powBuiltin(Executer&, const String&, OrderedCltn& arguments) {
    return new FloatVar(std::pow(argument(arguments, 0), argument(arguments, 1)));
}

// Stores the argument in the numeric setting of that name and answers 0.
Variable* settingBuiltin(Executer&, const String& name, OrderedCltn& arguments) {
    double value = argument(arguments, 0);
    if (name.isEqual(String("tollZeros")))
        tollZeros = value;
    else if (name.isEqual(String("tollPoles")))
        tollPoles = value;
    else
        wMin = value;
    return new FloatVar(0.0);
}

std::vector<BuiltinEntry>& builtinTable() {
    static std::vector<BuiltinEntry>* table = 0;
    if (table) return *table;
    table = new std::vector<BuiltinEntry>;
    for (const MathFunction& entry : mathFunctions)
        table->push_back({entry.name, "float", {"float"}, mathBuiltin});
    table->push_back({"pow", "float", {"float", "float"}, powBuiltin});
    for (const char* setting : {"tollZeros", "tollPoles", "wMin"})
        table->push_back({setting, "float", {"float"}, settingBuiltin});
    return *table;
}

}  // namespace

void Executer::addBuiltin(const char* name, const char* returnType,
                          std::initializer_list<const char*> parameters, BuiltinFunction function) {
    BuiltinEntry entry{name, returnType, {}, function};
    for (const char* parameter : parameters) entry.parameters.push_back(parameter);
    builtinTable().push_back(entry);
}

Executer::BuiltinFunction Executer::findBuiltin(const String& name) {
    for (const BuiltinEntry& entry : builtinTable())
        if (name.isEqual(String(entry.name.c_str()))) return entry.function;
    QASSERT_TEXT(false, "built-in function registered");
    return 0;
}

// A parser that already knows the built-ins, from an Executer made on it
// before, keeps its declarations. A built-in whose types are not all known is left out.
void Executer::registerBuiltins() {
    const OrderedCltn& known = parser->getExternalFunctions();
    for (const BuiltinEntry& entry : builtinTable()) {
        Object* declared = known.find(String(entry.name.c_str()));
        FuncDeclare* function =
            declared != nil
                ? static_cast<FuncDeclare*>(declared)
                : Variable::makeMethod(entry.name.c_str(), entry.returnType.c_str(), entry.parameters);
        if (!function) continue;
        if (declared == nil) parser->addExternalFunction(function);
        builtins.add(*function);
    }
}

// --- Numeric cores of the matrix built-ins ---

Matrix Executer::lyapunovSolution(const Matrix& A, const Matrix& B, bool discrete) {
    unsigned n = A.rowNumber();
    Matrix reduced(B);
    triangularize(reduced);
    Matrix L(n, n);
    for (unsigned i = 0; i < n && i < reduced.rowNumber(); ++i)
        for (unsigned j = 0; j < n && j < reduced.columnNumber(); ++j) L(i, j) = reduced(i, j);
    if (discrete)
        lyapd(A, L);
    else
        lyap(A, L);
    return L.transpose() * L;
}

double Executer::leastSquares(Matrix& A, Matrix& B, double tolerance) {
    unsigned rows = A.rowNumber(), ca = A.columnNumber(), cb = B.columnNumber();
    if (B.rowNumber() != rows) A.dimensionError("ls", B.rowNumber(), cb);
    Matrix joined(rows, ca + cb);
    for (unsigned i = 0; i < rows; ++i) {
        for (unsigned j = 0; j < ca; ++j) joined(i, j) = A(i, j);
        for (unsigned j = 0; j < cb; ++j) joined(i, ca + j) = B(i, j);
    }
    double global = zeroSquaredTolerance;
    if (tolerance >= 0) zeroSquaredTolerance = tolerance;
    double deviation = triangularize(joined, ca, true, false);
    zeroSquaredTolerance = global;
    for (unsigned i = 0; i < rows; ++i) {
        for (unsigned j = 0; j < ca; ++j) A(i, j) = joined(i, j);
        for (unsigned j = 0; j < cb; ++j) B(i, j) = joined(i, ca + j);
    }
    return deviation;
}

Matrix Executer::cholesky(const Matrix& A) {
    Matrix R(A);
    if (chol(R)) return R;
    std::cout << "the matrix cannot be decomposed" << std::endl;
    return A;
}
