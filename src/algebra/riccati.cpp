// Riccati iterations in factored form: closed-loop Lyapunov steps on the factor R of the
// solution X = R'R, alternated with updates of the state feedback.
#include <cmath>
#include <iostream>

#include "algebra/algebra.h"
#include "algebra/factored.h"
#include "algebra/househld.h"

namespace {

void printProgress(int iteration, double e, double value) {
    if (iteration % 10 == 0)
        std::cout << "abs conv " << e << ", rel conv " << e / value << ", value " << value << std::endl;
}

void printStop(int iteration) { std::cout << "iter " << iteration << std::endl; }

}  // namespace

int Algebra::riccati(const Matrix& A, const Matrix& B, const Matrix& C, const Matrix& D, Matrix& K, Matrix& R,
                     double relaxation) {
    unsigned n = A.rowNumber();
    Matrix I = Matrix::diagonal(n, 1.0);
    double half = std::sqrt(0.5);
    R = factored::start(R, n);
    Matrix Rprev = R;
    int iteration = 0;
    while (iteration < 500) {
        ++iteration;
        Matrix Acl = A - B * K;
        Matrix M = (Acl + I) * half;
        Matrix Ninv = inv((I - Acl) * half);
        R = factored::step(*this, R, M, C - D * K, &Ninv);
        double e, value;
        bool done = factored::converged(*this, R, Rprev, 0.01, e, value);
        printProgress(iteration, e, value);
        if (done) {
            printStop(iteration);
            break;
        }
        Matrix Knew = B.transpose() * R.transpose() * R + D.transpose() * C;
        K = K * relaxation + Knew * (1.0 - relaxation);
    }
    return iteration;
}

int Algebra::riccatid(const Matrix& A, const Matrix& B, const Matrix& C, const Matrix& D, Matrix& K,
                      Matrix& R) {
    unsigned n = A.rowNumber(), m = B.columnNumber();
    R = factored::start(R, n);
    Matrix Rprev = R;
    int iteration = 0;
    while (iteration < 500) {
        ++iteration;
        R = factored::step(*this, R, A - B * K, C - D * K, 0);
        double e, value;
        bool done = factored::converged(*this, R, Rprev, 1e-5, e, value);
        printProgress(iteration, e, value);
        if (done) {
            printStop(iteration);
            break;
        }
        Matrix S = householder::stack(Matrix::diagonal(m, 1.0), R * B);
        triangularize(S, m, false, false);
        Matrix Winv = inv(S.subMatrix(0, 0, m, m));
        Matrix Bt = B.transpose();
        K = Winv * Winv.transpose() * (Bt * R.transpose() * R * A + D.transpose() * C);
    }
    return iteration;
}
