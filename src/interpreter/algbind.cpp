// The matrix built-in functions of the Executer: inv, eig, schur, chol, lyap, lyapd, ls and ls1.
#include "interpreter/executer.h"
#include "interpreter/floatvar.h"
#include "interpreter/mtrxvar.h"
#include "quill/quillerr.h"

namespace {

// Argument i, a Matrix value or a reference to a Matrix variable.
Matrix& matrixAt(OrderedCltn& arguments, int i) {
    return static_cast<MatrixVar*>(Variable::dereference(Variable::argumentAt(arguments, i)))->getValue();
}

// A numeric fault of a built-in ends the run as the interpreter's error.
Variable* matrixBuiltin(Executer& executer, const String& name, OrderedCltn& arguments) {
    try {
        Matrix& A = matrixAt(arguments, 0);
        if (name.isEqual(String("inv"))) return new MatrixVar(executer.inv(A));
        if (name.isEqual(String("eig"))) return new MatrixVar(executer.computeEigenvalues(A));
        if (name.isEqual(String("schur"))) return new MatrixVar(executer.schur(A));
        if (name.isEqual(String("chol"))) return new MatrixVar(executer.cholesky(A));
        if (name.isEqual(String("lyap")) || name.isEqual(String("lyapd")))
            return new MatrixVar(
                executer.lyapunovSolution(A, matrixAt(arguments, 1), name.isEqual(String("lyapd"))));
        double tolerance = arguments.size() > 2 ? scalarValue(Variable::argumentAt(arguments, 2)) : -1.0;
        return new FloatVar(executer.leastSquares(A, matrixAt(arguments, 1), tolerance));
    } catch (TarnException* e) {
        AlgebraVar::numericFault(e);
    }
}

}  // namespace

void registerMatrixBuiltins() {
    Executer::addBuiltin("inv", "Matrix", {"Matrix"}, matrixBuiltin);
    Executer::addBuiltin("eig", "Matrix", {"Matrix"}, matrixBuiltin);
    Executer::addBuiltin("schur", "Matrix", {"Matrix&"}, matrixBuiltin);
    Executer::addBuiltin("chol", "Matrix", {"Matrix"}, matrixBuiltin);
    Executer::addBuiltin("lyap", "Matrix", {"Matrix", "Matrix"}, matrixBuiltin);
    Executer::addBuiltin("lyapd", "Matrix", {"Matrix", "Matrix"}, matrixBuiltin);
    Executer::addBuiltin("ls", "float", {"Matrix&", "Matrix&"}, matrixBuiltin);
    Executer::addBuiltin("ls1", "float", {"Matrix&", "Matrix&", "float"}, matrixBuiltin);
}
