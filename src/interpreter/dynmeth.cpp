// DynOpVar: the methods of systems, their channels, structure, gramians, norms and reductions.
#include <iostream>

#include "algebra/rfmatrix.h"
#include "control/sweep.h"
#include "interpreter/dynvar.h"
#include "interpreter/floatvar.h"
#include "interpreter/intvar.h"
#include "interpreter/mtrxvar.h"
#include "interpreter/stringvr.h"
#include "interpreter/vectvar.h"
#include "interpreter/zpkout.h"

namespace {

DynOpVar& var(Variable& v) { return static_cast<DynOpVar&>(v); }

DynOp& sys(Variable& v) { return var(v).getValue(); }

// A system result in the receiver's time domain.
Variable* result(Variable& v, const DynOp& s) { return var(v).newValue(var(v).sameTime(s)); }

int intAt(OrderedCltn& a, int i) { return Variable::intValue(Variable::argumentAt(a, i)); }

double floatAt(OrderedCltn& a, int i) { return scalarValue(Variable::argumentAt(a, i)); }

Variable* channel(Variable& v, OrderedCltn& a) {
    int output = intAt(a, 0), input = intAt(a, 1);
    MatrixVar::checkIndex(output, "row index");
    MatrixVar::checkIndex(input, "column index");
    return result(v, sys(v).subSystem(unsigned(output), unsigned(input), 1, 1));
}

Variable* channels(Variable& v, OrderedCltn& a) {
    int output = intAt(a, 0), input = intAt(a, 1), outputs = intAt(a, 2), inputs = intAt(a, 3);
    MatrixVar::checkIndex(output, "row index");
    MatrixVar::checkIndex(input, "column index");
    MatrixVar::checkIndex(outputs, "row dimension");
    MatrixVar::checkIndex(inputs, "column dimension");
    return result(v,
                  sys(v).subSystem(unsigned(output), unsigned(input), unsigned(outputs), unsigned(inputs)));
}

// The structure routines take the library's tolerance for zero when none is given.
double toleranceOf(OrderedCltn& a) { return a.size() > 0 ? floatAt(a, 0) : zeroTolerance; }

Variable* observablePart(Variable& v, OrderedCltn& a) {
    Matrix T;
    return result(v, sys(v).obsSubSystem(0, T, toleranceOf(a)));
}

Variable* controllablePart(Variable& v, OrderedCltn& a) {
    Matrix T;
    return result(v, sys(v).contrSubSystem(0, T, toleranceOf(a)));
}

Variable* outputFeedback(Variable& v, OrderedCltn& a) {
    return result(v,
                  sys(v).outputFeedback(var(*Variable::dereference(Variable::argumentAt(a, 0))).getValue()));
}

Variable* reduceOrder(Variable& v, OrderedCltn& a) {
    int n = intAt(a, 0);
    checkCount(n, sys(v).order(), "order");
    return result(v, sys(v).reduceOrder(unsigned(n)));
}

// One line for a single channel, else one per channel after its output and input.
Variable* zpk(Variable& v, OrderedCltn&) {
    RFMatrix transfer = sys(v).transferMatrix();
    bool single = transfer.rowNumber() * transfer.columnNumber() == 1;
    for (unsigned i = 0; i < transfer.rowNumber(); ++i)
        for (unsigned j = 0; j < transfer.columnNumber(); ++j)
            writeZpk(transfer(i, j), single ? "" : formatText("(%u, %u) ", i, j));
    return new IntVar(1);
}

// schurForm(Q) sorts the Schur form; Q only asks for it.
Variable* schurForm(Variable& v, OrderedCltn& a) {
    sys(v).schurForm(a.size() > 0);
    return new IntVar(1);
}

// The certified norm as the vector [norm, omega, lower bound, upper bound].
Variable* certifiedNorm(Variable& v, OrderedCltn&) {
    HinfNorm h = sys(v).certifiedNormHinf();
    Vector r(4);
    r[0] = h.norm, r[1] = h.omega, r[2] = h.lower, r[3] = h.upper;
    return new VectorVar(r);
}

// P.sweep(K, "params.txt"[, grid, samples]): the report on cout, and the vector [worst norm, its
// omega, unstable samples, then the worst sample's parameter values].
Variable* sweep(Variable& v, OrderedCltn& a) {
    const DynOp& compensator = var(*Variable::dereference(Variable::argumentAt(a, 0))).getValue();
    const String& file =
        static_cast<StringVar*>(Variable::dereference(Variable::argumentAt(a, 1)))->getValue();
    SweepOptions options;
    if (a.size() > 2) {
        int grid = intAt(a, 2), samples = intAt(a, 3);
        if (grid < 1 || samples < 0)
            Variable::typeError("Run time error, sweep: the grid needs a point, the samples none or more");
        options = SweepOptions{unsigned(grid), unsigned(samples)};
    }
    UncertainModel model;
    SweepReport r;
    std::string error;
    if (!UncertainModel::read(file.asCharPointer(), sys(v), model, error) ||
        !sweepModel(model, compensator, options, r, error))
        Variable::typeError(String(("Run time error, sweep: " + error).c_str()));
    printSweep(std::cout, r);
    Vector result(unsigned(3 + r.worst.values.size()));
    result[0] = r.worst.norm.norm, result[1] = r.worst.norm.omega, result[2] = r.unstable;
    for (unsigned i = 0; i < r.worst.values.size(); ++i) result[3 + i] = r.worst.values[i];
    return new VectorVar(result);
}

}  // namespace

const MethodTable& DynOpVar::methods() const {
    static MethodTable* table = 0;
    if (table) return *table;
    table = new MethodTable(&AlgebraVar::methods());
    table->add("(", "DynOp", {"int", "int"}, channel);
    table->add("(", "DynOp", {"int", "int", "int", "int"}, channels);
    table->add("transpose", "DynOp", {},
               [](Variable& v, OrderedCltn&) { return result(v, sys(v).transpose()); });
    table->add("obsGramian", "Matrix", {},
               [](Variable& v, OrderedCltn&) -> Variable* { return new MatrixVar(sys(v).obsGramian()); });
    table->add("contrGramian", "Matrix", {},
               [](Variable& v, OrderedCltn&) -> Variable* { return new MatrixVar(sys(v).contrGramian()); });
    table->add("obsSubSystem", "DynOp", {"float"}, observablePart);
    table->add("obsSubSystem", "DynOp", {}, observablePart);
    table->add("contrSubSystem", "DynOp", {"float"}, controllablePart);
    table->add("contrSubSystem", "DynOp", {}, controllablePart);
    table->add("getA", "Matrix", {},
               [](Variable& v, OrderedCltn&) -> Variable* { return new MatrixVar(sys(v).stateA()); });
    table->add("getB", "Matrix", {},
               [](Variable& v, OrderedCltn&) -> Variable* { return new MatrixVar(sys(v).stateB()); });
    table->add("getC", "Matrix", {},
               [](Variable& v, OrderedCltn&) -> Variable* { return new MatrixVar(sys(v).stateC()); });
    table->add("getD", "Matrix", {},
               [](Variable& v, OrderedCltn&) -> Variable* { return new MatrixVar(sys(v).getD()); });
    table->add("order", "int", {}, [](Variable& v, OrderedCltn&) -> double { return int(sys(v).order()); });
    table->add("inputNumber", "int", {},
               [](Variable& v, OrderedCltn&) -> double { return int(sys(v).inputNumber()); });
    table->add("outputNumber", "int", {},
               [](Variable& v, OrderedCltn&) -> double { return int(sys(v).outputNumber()); });
    table->add("controlNumber", "int", {},
               [](Variable& v, OrderedCltn&) -> double { return int(sys(v).controlNumber()); });
    table->add("measureNumber", "int", {},
               [](Variable& v, OrderedCltn&) -> double { return int(sys(v).measureNumber()); });
    table->add("feedForwardNumber", "int", {},
               [](Variable& v, OrderedCltn&) -> double { return int(sys(v).feedForwardNumber()); });
    table->add("normHinf", "float", {},
               [](Variable& v, OrderedCltn&) -> double { return sys(v).normHinf(); });
    table->add("certifiedNormHinf", "Vector", {}, certifiedNorm);
    table->add("sweep", "Vector", {"DynOp", "string"}, sweep);
    table->add("sweep", "Vector", {"DynOp", "string", "int", "int"}, sweep);
    table->add("normH2", "float", {}, [](Variable& v, OrderedCltn&) -> double { return sys(v).normH2(); });
    table->add("outputFeedback", "DynOp", {"DynOp"}, outputFeedback);
    table->add("balancedRealization", "int", {"float"}, [](Variable& v, OrderedCltn& a) -> Variable* {
        sys(v).balancedRealization(floatAt(a, 0));
        return new IntVar(int(sys(v).order()));
    });
    table->add("zpk", "int", {}, zpk);
    table->add("schurForm", "int", {}, schurForm);
    table->add("schurForm", "int", {"Matrix"}, schurForm);
    table->add("cleanPolesInZero", "int", {}, [](Variable& v, OrderedCltn&) -> Variable* {
        sys(v).cleanPolesInZero(tollPoles);
        return new IntVar(1);
    });
    table->add("reduceOrder", "DynOp", {"int"}, reduceOrder);
    table->add("setInitialCondition", "int", {"Vector"}, [](Variable& v, OrderedCltn& a) -> Variable* {
        var(v).setInitialCondition(VectorVar::toVector(Variable::argumentAt(a, 0)));
        return new IntVar(1);
    });
    return *table;
}
