// Algebra, the carrier of the numeric routines every numeric class inherits, and the global numeric settings.
#ifndef ALGEBRA_ALGEBRA_H
#define ALGEBRA_ALGEBRA_H

#include <cstdint>
#include <iosfwd>

#include "algebra/lapack.h"
#include "algebra/matrix.h"
#include "algebra/vector.h"
#include "quill/object.h"
#include "quill/qclass.h"

extern Class class_Algebra;

// Global numeric settings, written by the tolerances dialog and the interpreter.
extern double zeroSquaredTolerance;  // squared column norm below which a column is no basis vector
extern double structureTolerance;    // element-is-zero test for Hessenberg and quasi-triangular shape
extern double zeroTolerance;         // element-is-zero test in general numeric code
extern double tollZeros;             // tolerance on zeros
extern double tollPoles;             // a pole is stable when its real part is at most -tollPoles
extern double wMin;                  // lowest frequency of the frequency searches
extern double wMaxRange;             // ratio of highest to lowest frequency
extern int fastMode;                 // 0..4, speed against accuracy

// Sets fastMode; a value outside 0..4 is refused with a console line and false.
bool setFastMode(int value);

// The workspace behind a matrix name in parseMatrix, installed by the interpreter:
// answers 1 with the matrix in result, 0 when the name is not there, -1 when the
// workspace is empty. Without one the workspace counts as empty.
typedef int (*WorkspaceLookup)(const char* name, Matrix& result);
extern WorkspaceLookup workspaceMatrixLookup;

class CMatrix;

class Algebra : public Object {
    DECLARE_MEMBERS(Algebra)
public:
    Algebra() : reserved(0) {}
    Algebra(std::istream& is, Object* where);
    Algebra(BinIstream& is, Object* where);

    void storer(std::ostream& os) const override;
    void storer(BinOstream& os) const override;

    // The selection callback of a sorted Schur form: real part below zero.
    virtual SchurSelect selectFunction() const;

    // --- Layers on LAPACK ---
    // Real Schur form: A overwritten with T, Q (n x n) gets the vectors when wanted,
    // values (n x 2) the eigenvalues (re, im). Returns the number of selected eigenvalues.
    int schurDecomposition(Matrix& Q, Matrix& A, Matrix& values, bool wantVectors, bool sorted);
    // Singular values of A (overwritten), min(m, n) of them; U, VT set when wanted.
    Vector svd(Matrix& A, Matrix& U, Matrix& VT, bool wantVectors);
    Vector svd(CMatrix& A, CMatrix& U, CMatrix& VT, bool wantVectors);  // cmatrix.cpp
    // Solution X of A X = B; A and B are left as they are. singular, when given, is set when A is
    // exactly singular, X then being meaningless.
    Matrix solve(const Matrix& A, const Matrix& B, bool* singular = nullptr);

    // --- Direct solvers and factorisations ---
    Matrix computeEigenvalues(const Matrix& A, bool isSchur = false);
    // The 2n eigenvalues (rows re, im) of a Hamiltonian H = [F G; Q -F'], G and Q symmetric, in
    // pairs lambda, -lambda, through the eigenvalues of H^2 (hamileig.cpp).
    Matrix hamiltonianEigenvalues(const Matrix& H);
    // A replaced by its real Schur form T; returns Q with A = Q T Q'.
    Matrix schur(Matrix& A, bool sorted = false);
    Matrix inv(const Matrix& A);
    // e^A of a square A (expm.cpp); nil (0x0) for an empty A.
    Matrix exponential(const Matrix& A);
    // In place: A becomes upper triangular R with A = R'R; false when it cannot be factored.
    bool chol(Matrix& A);
    double determinant(const Matrix& A, bool isSchur = false);

    // --- Norms and shape tests ---
    double norm2(const Matrix& A);
    double normF(const Matrix& A);
    double normInf(const Matrix& A);  // the largest sum of absolute values along a row
    double minSingularValue(const Matrix& A);
    double normTriangular(const Matrix& A, bool upperOnce = false, bool upperTwice = false);
    bool isSmall(const Matrix& A, double x);
    double vectorNorm1(const Vector& v);
    double trace(const Matrix& A);
    double rms(const Matrix& A, unsigned rows);
    bool isHessenberg(const Matrix& A);
    bool isQuasiTriangular(const Matrix& A);
    // Diagonal scaling: A := D A D^-1, D returned; a non-square A is refused.
    Matrix balance(Matrix& A);

    // Factored solvers (triangle.cpp, lyap.cpp, riccati.cpp)
    // Householder triangularisation of M in place on its first `columns` columns (0: min(rows,
    // cols)). With backSolve, the columns right of the block are solved by back substitution and
    // the rms of the residual rows below is returned (printed as "standard deviation"); else 0.
    double triangularize(Matrix& M, unsigned columns = 0, bool backSolve = false, bool print = false);
    // Householder with column pivoting on the first basisNumber columns of M, an identity
    // appended on the right and rows grown to basisNumber when fewer. A squared column norm not
    // above threshold ends the basis; missing rows of the solution get zeros or a random unit
    // row. M is replaced by the worked matrix: the triangular factor of the pivoted basis, then
    // rows 0..basisNumber-1 of the right-hand columns hold the solution in the basis order.
    // Returns the rank.
    double triangle(Matrix& M, unsigned basisNumber, bool quiet = false, bool printSingular = true,
                    double threshold = 1e-26, bool zeroFill = false);
    // triangle with trace lines of its completion and back substitution; no code calls it,
    // it serves when hunting a fault.
    double triangleF(Matrix& M, unsigned basisNumber, bool quiet = false, bool printSingular = true,
                     double threshold = 1e-26, bool zeroFill = false);
    // Controllability staircase: A := T A T', B := T B, T returned; the block sizes go to
    // indices, their sum being the order of the controllable part. With print, the report of
    // the levels is written into staircaseReport.
    Matrix staircase(Matrix& A, Matrix& B, class IntArray& indices, double tolerance, bool print = false);
    static String staircaseReport;
    // Unshifted QR on A (Hessenberg reduction first unless mode is 1), 5000 iterations; A is
    // overwritten, the accumulated orthogonal V returned (the identity for 2x2 input).
    Matrix qrIteration(Matrix& A, int mode = 0);
    // The same with full column reflections and 500 iterations, for gramian factorisation.
    Matrix qrIterationFull(Matrix& A);
    // A'P + PA + L'L = 0 (lyap) and P = A'PA + L'L (lyapd) for R upper triangular, P = R'R,
    // started from X0 (a matrix not n x n stands for nil: zero). R replaces L (n x n). Returns
    // the iterations done, 1000 when the iteration did not settle.
    int lyap(const Matrix& A, Matrix& L, const Matrix& X0 = Matrix());
    int lyapd(const Matrix& A, Matrix& L, const Matrix& X0 = Matrix());
    // Direct solutions of the same equations to full precision, for the gramians of systems
    // (lyapdirect.cpp): the symmetric P with a'P + P a + L'L = 0, or a'P a - P + L'L = 0 when
    // discrete, through the real Schur form of a. L may have any number of rows; a must be stable
    // (convergent) for P to be the gramian.
    Matrix lyapSolution(const Matrix& a, const Matrix& L, bool discrete);
    // The controllability gramian P (A P + P A' + B B' = 0) and the observability gramian O
    // (A'O + O A + C'C = 0), or their discrete forms, from one Schur form of A.
    void gramianPair(const Matrix& A, const Matrix& B, const Matrix& C, bool discrete, Matrix& P, Matrix& O);
    // The upper triangular R with R'R = P, diagonal not negative, for a symmetric positive
    // semidefinite P; rows beyond P's numerical rank are zero.
    Matrix semidefiniteFactor(const Matrix& P);
    // lyap with neither test nor sign repair: exactly 200 iterations, for checks.
    void lyapPlain(const Matrix& A, Matrix& L, const Matrix& X0 = Matrix());
    // Riccati iterations on the factor R (in: start, nil for zero; out: the solution factor)
    // with the state feedback K (in: stabilising start; out: the last gain), for D'D = I.
    // Continuous: K := a K + (1 - a)(B'R'R + D'C), a = relaxation, test 0.01. Discrete:
    // K := (I + B'R'RB)^-1 (B'R'RA + D'C), test 1e-5. Both at most 500 iterations, returned.
    int riccati(const Matrix& A, const Matrix& B, const Matrix& C, const Matrix& D, Matrix& K, Matrix& R,
                double relaxation);
    int riccatid(const Matrix& A, const Matrix& B, const Matrix& C, const Matrix& D, Matrix& K, Matrix& R);

    // --- Polynomials ---
    // Roots (count x 2: re, im) of the coefficients, highest power first.
    Matrix polyRoots(const Vector& coefficients);
    Vector polyMul(const Vector& a, const Vector& b);
    // p(-s) q(s): element i of a gets the sign (-1)^(n-1-i).
    Vector polyMulAlternating(const Vector& a, const Vector& b);
    // A 2x2 Schur block overwritten with its two roots as rows (re, im).
    void rootsOf2by2(Matrix& B);

    // --- Utilities ---
    Matrix parseMatrix(const char* text);
    void printNamed(const Matrix& m, const char* label);
    void printNamed(double x, const char* label);
    // One object to or from a file as an object stream. storeToFile replaces the file whole
    // or not at all, and returns false, the reason on the console, when it cannot be written; readFromFile
    // gives nil in object and false when the file cannot be read or holds no className.
    bool storeToFile(const Object& object, const char* fileName);
    bool readFromFile(Object*& object, const char* className, const char* fileName);

private:
    double pivotedTriangle(Matrix& M, unsigned basisNumber, bool quiet, bool printSingular, double threshold,
                           bool zeroFill, bool trace);
    std::int32_t reserved;  // always zero
};

#endif
