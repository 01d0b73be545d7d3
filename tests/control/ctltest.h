// Helpers of the dynamical systems' tests: transfer values computed directly from the state
// matrices, and small matrix builders.
#ifndef TESTS_CONTROL_CTLTEST_H
#define TESTS_CONTROL_CTLTEST_H

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstdlib>
#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include "algebra/all.h"
#include "control/all.h"

typedef std::complex<double> Cx;
typedef std::vector<std::vector<Cx>> CxMatrix;

// A design's set-up with the tolerance 1e-6.
inline GramianSetup setupOf(GramianRole role, int initialFeedback, Object* owner, const char* name = "") {
    GramianSetup s;
    s.role = role;
    s.tolerance = 1e-6;
    s.initialFeedback = initialFeedback;
    s.owner = owner;
    s.name = name;
    return s;
}

// A step's options with alfa 0.5 and minFreq 1e-4; change sets the others.
inline StepOptions stepOf(double gamma, unsigned iterations, bool useH2, const char* prefix = "",
                          const std::function<void(StepOptions&)>& change = {}) {
    StepOptions o;
    o.gamma = gamma;
    o.maxIterations = iterations;
    o.useH2 = useH2;
    o.alfa = 0.5;
    o.fileNamePrefix = prefix;
    o.minFreq = 1e-4;
    if (change) change(o);
    return o;
}

inline Matrix mat(unsigned rows, unsigned cols, std::initializer_list<double> values) {
    Matrix m(rows, cols);
    auto v = values.begin();
    for (unsigned i = 0; i < rows; ++i)
        for (unsigned j = 0; j < cols; ++j) m(i, j) = *v++;
    return m;
}

inline CxMatrix cx(const Matrix& m) {
    CxMatrix r(m.rowNumber(), std::vector<Cx>(m.columnNumber()));
    for (unsigned i = 0; i < m.rowNumber(); ++i)
        for (unsigned j = 0; j < m.columnNumber(); ++j) r[i][j] = m(i, j);
    return r;
}

inline CxMatrix mul(const CxMatrix& a, const CxMatrix& b) {
    size_t n = b.empty() ? 0 : b[0].size();
    CxMatrix r(a.size(), std::vector<Cx>(n));
    for (size_t i = 0; i < a.size(); ++i)
        for (size_t k = 0; k < b.size(); ++k)
            for (size_t j = 0; j < n; ++j) r[i][j] += a[i][k] * b[k][j];
    return r;
}

inline CxMatrix add(const CxMatrix& a, const CxMatrix& b, double sign = 1.0) {
    CxMatrix r(a);
    for (size_t i = 0; i < a.size(); ++i)
        for (size_t j = 0; j < a[i].size(); ++j) r[i][j] += sign * b[i][j];
    return r;
}

inline CxMatrix identity(size_t n) {
    CxMatrix r(n, std::vector<Cx>(n));
    for (size_t i = 0; i < n; ++i) r[i][i] = 1.0;
    return r;
}

// X with M X = R by Gauss-Jordan elimination with partial pivoting.
inline CxMatrix solveCx(CxMatrix M, CxMatrix R) {
    size_t n = M.size();
    for (size_t c = 0; c < n; ++c) {
        size_t p = c;
        for (size_t r = c + 1; r < n; ++r)
            if (std::abs(M[r][c]) > std::abs(M[p][c])) p = r;
        std::swap(M[c], M[p]);
        std::swap(R[c], R[p]);
        for (size_t r = 0; r < n; ++r) {
            if (r == c) continue;
            Cx f = M[r][c] / M[c][c];
            for (size_t k = c; k < n; ++k) M[r][k] -= f * M[c][k];
            for (size_t k = 0; k < R[r].size(); ++k) R[r][k] -= f * R[c][k];
        }
    }
    for (size_t r = 0; r < n; ++r)
        for (auto& x : R[r]) x /= M[r][r];
    return R;
}

// C (sI - A)^-1 B + D of the system's state matrices.
inline CxMatrix transferAt(const DynOp& s, Cx point) {
    CxMatrix D = cx(s.getD());
    if (s.order() == 0) return D;
    CxMatrix M = cx(-s.getA());
    for (unsigned i = 0; i < s.order(); ++i) M[i][i] += point;
    return add(mul(cx(s.getC()), solveCx(M, cx(s.getB()))), D);
}

inline void expectNear(const CxMatrix& a, const CxMatrix& b, double tolerance) {
    ASSERT_EQ(a.size(), b.size());
    for (size_t i = 0; i < a.size(); ++i) {
        ASSERT_EQ(a[i].size(), b[i].size());
        for (size_t j = 0; j < a[i].size(); ++j)
            EXPECT_NEAR(std::abs(a[i][j] - b[i][j]), 0.0, tolerance * (1.0 + std::abs(b[i][j])))
                << i << "," << j;
    }
}

// The eigenvalues of a real matrix as complex numbers, sorted by real then imaginary part.
inline std::vector<Cx> eigenvalues(const Matrix& A) {
    Algebra alg;
    Matrix v = alg.computeEigenvalues(A);
    std::vector<Cx> r;
    for (unsigned i = 0; i < v.rowNumber(); ++i) r.push_back(Cx(v(i, 0), v(i, 1)));
    std::sort(r.begin(), r.end(),
              [](Cx a, Cx b) { return a.real() != b.real() ? a.real() < b.real() : a.imag() < b.imag(); });
    return r;
}

// A stable system of the given order with m inputs and p outputs, reproducible.
inline DynOp randomStable(unsigned n, unsigned m, unsigned p, unsigned seed = 7) {
    std::srand(seed);
    auto value = [] { return double(std::rand()) / RAND_MAX - 0.5; };
    Matrix A(n, n), B(n, m), C(p, n), D(p, m);
    for (unsigned i = 0; i < n; ++i)
        for (unsigned j = 0; j < n; ++j) A(i, j) = value();
    for (unsigned i = 0; i < n; ++i) A(i, i) -= 0.5 * n + 1.0;
    for (unsigned i = 0; i < n; ++i)
        for (unsigned j = 0; j < m; ++j) B(i, j) = value();
    for (unsigned i = 0; i < p; ++i)
        for (unsigned j = 0; j < n; ++j) C(i, j) = value();
    return DynOp(A, B, C, D);
}

// The plant of a model file with a disturbance force w on the second mass and the control u on
// the first; objectives z = [x2 + d11 w; rho u], measure y = x1 + 0.01 w.
inline std::unique_ptr<DynOp> twoMassPlant(const char* file, double rho, double d11 = 0.0) {
    Object* read = Workspace::readModelFile((std::string(TARN_EXAMPLES) + "/" + file).c_str());
    const DynOp& model = *CAST(DynOp, read);
    Matrix C = mat(3, 4, {0, 1, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0});
    Matrix D = mat(3, 2, {d11, 0, 0, rho, 0.01, 0});
    std::unique_ptr<DynOp> plant;
    if (model.isKindOf(class_DiscDynOp))
        plant.reset(new DiscDynOp(model.getA(), model.getB(), C, D,
                                  static_cast<const DiscDynOp&>(model).getSamplingTime(), 1, 1));
    else
        plant.reset(new DynOp(model.getA(), model.getB(), C, D, 1, 1));
    delete read;
    return plant;
}

// A first-order system with distinct gains on its channels.
inline DynOp lag(double pole, unsigned outputs, unsigned inputs) {
    Matrix B(1, inputs), C(outputs, 1);
    for (unsigned j = 0; j < inputs; ++j) B(0, j) = 1.0 + 0.5 * j;
    for (unsigned i = 0; i < outputs; ++i) C(i, 0) = 1.0 - 0.3 * i;
    return DynOp(mat(1, 1, {pole}), B, C, Matrix(0, 0));
}

inline DynOp gain(unsigned rows, unsigned cols, double value) {
    Matrix D(rows, cols);
    for (unsigned i = 0; i < rows; ++i)
        for (unsigned j = 0; j < cols; ++j) D(i, j) = value + 0.1 * (i + 2 * j);
    return DynOp(D);
}

// A lightly damped plant of one input and two outputs with every weight in place: two degrees
// of freedom. With T the dynamic components are sampled, and so the whole.
inline ExtendedSystem extendedComponents(double T = 0.0) {
    auto sampled = [T](const DynOp& s) { return T ? DynOp(DiscDynOp(s, false, T)) : s; };
    ExtendedSystem e;
    DynOp model(mat(2, 2, {0, 1, -2, -0.3}), mat(2, 1, {0, 1}), mat(2, 2, {1, 0, 0.5, 1}), Matrix(0, 0));
    if (T)  // the Model gives the time domain
        e.setElement("Model", DiscDynOp(model, false, T));
    else
        e.setElement("Model", model);
    e.setElement("Wu1", sampled(lag(-5, 1, 1)));
    e.setElement("Wu2", gain(1, 1, 0.1));
    e.setElement("W11", sampled(lag(-0.5, 2, 1)));
    e.setElement("W21", gain(2, 1, 0.7));
    e.setElement("Wr1", sampled(lag(-1, 1, 1)));
    e.setElement("Geqd", sampled(lag(-3, 1, 1)));
    e.setElement("Wyr", gain(1, 2, 1.0));
    e.setElement("Wr2", gain(1, 1, 2.0));
    e.setElement("W12", gain(1, 2, 0.4));
    e.setElement("W22", sampled(lag(-2, 1, 2)));
    e.setElement("Wym", gain(2, 2, 1.0));
    e.setElement("Wd", gain(2, 2, 0.01));
    e.setElement("Wdr", gain(1, 1, 0.02));
    return e;
}

// Runs each test in a fresh directory of its own, made and removed around it: designs write their
// files and "lmi.txt" in the working directory, and the tests run in parallel.
class ScratchTest : public ::testing::Test {
protected:
    void SetUp() override {
        char pattern[] = "/tmp/tarnctlXXXXXX";
        directory = mkdtemp(pattern);
        char here[4096];
        previous = getcwd(here, sizeof here);
        ASSERT_EQ(chdir(directory.c_str()), 0);
    }
    void TearDown() override {
        ASSERT_EQ(chdir(previous.c_str()), 0);
        std::system(("rm -rf " + directory).c_str());
    }
    std::string directory, previous;
};

#endif
