// Householder triangularisation without pivoting (triangularize) and with column pivoting (triangle).
#include <algorithm>
#include <cmath>
#include <iostream>
#include <vector>

#include "algebra/algebra.h"
#include "algebra/househld.h"
#include "quill/quillerr.h"
#include "quill/random.h"

namespace {

// Solves the upper triangular rows 0..count-1 of columns 0..count-1 against every column from
// first on, in place; rows from count to last-1 of those columns are taken as already known.
// With trace set, each solved element is written as it is found.
void backSubstitute(Matrix& M, unsigned count, unsigned last, unsigned first, bool trace = false) {
    unsigned rows = M.rowNumber();
    double* a = M.elements();
    for (unsigned c = first; c < M.columnNumber(); ++c) {
        double* x = a + c * rows;
        for (unsigned i = count; i-- > 0;) {
            double s = x[i];
            for (unsigned k = i + 1; k < last; ++k) s -= a[k * rows + i] * x[k];
            x[i] = s / a[i * rows + i];
            if (trace) {
                std::cout << "j h " << i << " " << c << std::endl;
                std::cout << "Ab(j,i) " << x[i] << std::endl;
            }
        }
    }
}

// The library's random integer, in the range of the classic 15-bit generator.
long randomInteger() {
    static Random generator(1);
    return static_cast<long>(generator.uniform() * 32768.0);
}

// Row r of M from column first on: random elements, scaled to unit norm.
void randomRow(Matrix& M, unsigned r, unsigned first) {
    double sum = 0.0;
    for (unsigned c = first; c < M.columnNumber(); ++c) {
        double x = randomInteger() * 0.0001;
        M(r, c) = x;
        sum += x * x;
    }
    if (sum > 0.0)
        for (unsigned c = first; c < M.columnNumber(); ++c) M(r, c) /= std::sqrt(sum);
}

}  // namespace

double Algebra::triangularize(Matrix& M, unsigned columns, bool backSolve, bool print) {
    unsigned rows = M.rowNumber(), cols = M.columnNumber();
    unsigned limit = columns == 0 ? std::min(rows, cols) : columns;
    for (unsigned j = 0; j < limit && j < rows && j < cols; ++j) householder::step(M, j, j);
    if (!backSolve || limit >= cols || limit > rows) return 0.0;
    backSubstitute(M, limit, limit, limit);
    double deviation = 0.0;
    if (rows > limit) deviation = rms(M.subMatrix(limit, limit, rows - limit, cols - limit), rows - limit);
    if (print) printNamed(deviation, "standard deviation");
    return deviation;
}

double Algebra::triangle(Matrix& M, unsigned basisNumber, bool quiet, bool printSingular, double threshold,
                         bool zeroFill) {
    return pivotedTriangle(M, basisNumber, quiet, printSingular, threshold, zeroFill, false);
}

// triangle with the trace lines that serve when hunting a fault in it.
double Algebra::triangleF(Matrix& M, unsigned basisNumber, bool quiet, bool printSingular, double threshold,
                          bool zeroFill) {
    return pivotedTriangle(M, basisNumber, quiet, printSingular, threshold, zeroFill, true);
}

double Algebra::pivotedTriangle(Matrix& M, unsigned basisNumber, bool quiet, bool printSingular,
                                double threshold, bool zeroFill, bool trace) {
    unsigned n = M.rowNumber(), given = M.columnNumber();
    QASSERT(basisNumber <= given);
    Matrix W = householder::sideBySide(M, Matrix::diagonal(n, 1.0));
    if (basisNumber > n) W.reSize(basisNumber, W.columnNumber());
    std::vector<unsigned> pivots;
    double lastMax = 0.0;
    unsigned rank = householder::pivotedSteps(W, basisNumber, threshold, pivots, lastMax);
    if (rank < basisNumber && !quiet)
        std::cout << " max, basisNumberNew " << lastMax << ",  " << rank << std::endl;

    for (unsigned r = rank; r < basisNumber; ++r) {
        if (zeroFill)
            for (unsigned c = basisNumber; c < W.columnNumber(); ++c) W(r, c) = 0.0;
        else
            randomRow(W, r, basisNumber);
    }
    if (trace) {
        std::cout << "Ab inside triangleF,after cleaning" << std::endl;
        W.printOn(std::cout);
        std::cout << std::endl;
    }
    backSubstitute(W, rank, basisNumber, basisNumber, trace);
    if (trace) std::cout << "USCITI" << std::endl;
    for (unsigned k = rank; k-- > 0;) householder::swapRows(W, k, pivots[k], basisNumber);
    if (trace) std::cout << "USCITI 2" << std::endl;

    if (rank == basisNumber && !quiet && rank > 0) {
        std::cout << "conditioning of the solution = " << W(0, 0) / W(rank - 1, rank - 1) << std::endl;
        double deviation = 0.0;
        if (n > basisNumber && given > basisNumber)
            deviation = rms(W.subMatrix(basisNumber, basisNumber, n - basisNumber, given - basisNumber),
                            n - basisNumber);
        std::cout << "deviazione standard nella triangolarizzazione: " << deviation << std::endl;
    } else if (rank < basisNumber && printSingular) {
        unsigned usable = rank > 0 ? rank - 1 : 0;
        std::cout << "basis singular - actual conditioning = " << W(0, 0) / W(usable, usable) << std::endl;
        std::cout << " elementi della diagonale nulli = ";
        for (unsigned i = basisNumber > 4 ? basisNumber - 4 : 0; i < basisNumber; ++i)
            std::cout << " " << W(i, i);
        std::cout << std::endl;
    }
    M = W;
    return rank;
}
