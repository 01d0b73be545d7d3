// Tests of the LAPACK driver layer: Schur forms, real and complex SVD, linear solve, XERBLA.
#include "algebra/lapack.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <random>
#include <string>
#include <vector>

#include "algebra/cmatrix.h"
#include "algebra/lazylib.h"
#include "algebra/matrix.h"

namespace {

typedef std::complex<double> Complex;

Matrix adjoint(const Matrix& a) { return a.transpose(); }
CMatrix adjoint(const CMatrix& a) { return a.conjugateTranspose(); }

template <class M>
M identity(unsigned n) {
    return M(Matrix::diagonal(n, 1.0));
}

template <class M>
double frobenius(const M& a) {
    double sum = 0.0;
    for (unsigned k = 0; k < a.rowNumber() * a.columnNumber(); ++k) sum += std::norm(a.elements()[k]);
    return std::sqrt(sum);
}

template <class M>
double distance(const M& a, const M& b) {
    return frobenius(a - b);
}

template <class M>
double unitaryError(const M& q) {
    return distance(adjoint(q) * q, identity<M>(q.columnNumber())) / std::max(1u, q.columnNumber());
}

double uniform(std::mt19937& random) { return std::uniform_real_distribution<double>(-1.0, 1.0)(random); }
Complex uniformComplex(std::mt19937& random) { return Complex(uniform(random), uniform(random)); }

// A product of Householder reflections of random vectors.
template <class M, class Draw>
M orthogonal(unsigned n, std::mt19937& random, Draw draw) {
    M q = identity<M>(n);
    for (int step = 0; step < 3; ++step) {
        M v(n, 1);
        for (unsigned i = 0; i < n; ++i) v(i, 0) = draw(random);
        double vv = frobenius(v) * frobenius(v);
        if (vv > 0.0) q = q * (identity<M>(n) - v * adjoint(v) * (2.0 / vv));
    }
    return q;
}

Matrix orthogonal(unsigned n, std::mt19937& random) { return orthogonal<Matrix>(n, random, uniform); }
CMatrix unitary(unsigned n, std::mt19937& random) { return orthogonal<CMatrix>(n, random, uniformComplex); }

// ---- Schur form ----

// Eigenvalues: a real one stands alone, a complex one (im > 0) stands for its conjugate pair.
struct Spectrum {
    const char* name;
    std::vector<Complex> values;
};

std::vector<Complex> expanded(const Spectrum& s) {
    std::vector<Complex> all;
    for (const Complex& v : s.values) {
        all.push_back(v);
        if (v.imag() > 0.0) all.push_back(std::conj(v));
    }
    return all;
}

// Q0 B Q0ᵀ with B block upper triangular holding the spectrum on its diagonal.
Matrix withSpectrum(const Spectrum& s, std::mt19937& random) {
    unsigned n = expanded(s).size(), k = 0;
    Matrix b(n, n);
    for (const Complex& v : s.values) {
        b(k, k) = v.real();
        if (v.imag() > 0.0) {
            b(k + 1, k + 1) = v.real();
            b(k, k + 1) = v.imag();
            b(k + 1, k) = -v.imag();
            ++k;
        }
        ++k;
    }
    for (unsigned j = 0; j < n; ++j)
        for (unsigned i = 0; i < j; ++i)
            if (b(i, j) == 0.0 && !(j == i + 1 && b(j, i) != 0.0)) b(i, j) = 0.5 * uniform(random);
    Matrix q = orthogonal(n, random);
    return q * b * adjoint(q);
}

bool byParts(const Complex& a, const Complex& b) {
    return a.real() != b.real() ? a.real() < b.real() : a.imag() < b.imag();
}

void expectSameSpectrum(const Matrix& values, std::vector<Complex> wanted) {
    std::vector<Complex> found;
    // Round away the last bits before sorting so that a real pair sorts consistently.
    for (unsigned i = 0; i < values.rowNumber(); ++i)
        found.push_back(Complex(std::round(values(i, 0) * 1e8) / 1e8, std::round(values(i, 1) * 1e8) / 1e8));
    ASSERT_EQ(found.size(), wanted.size());
    std::sort(found.begin(), found.end(), byParts);
    std::sort(wanted.begin(), wanted.end(), byParts);
    for (std::size_t k = 0; k < found.size(); ++k)
        EXPECT_NEAR(std::abs(found[k] - wanted[k]), 0.0, 1e-7) << "eigenvalue " << k;
}

// T is quasi-triangular, its 2×2 blocks carry the complex pairs, values matches its diagonal.
void expectSchurShape(const Matrix& t, const Matrix& values) {
    unsigned n = t.rowNumber();
    for (unsigned j = 0; j < n; ++j)
        for (unsigned i = j + 2; i < n; ++i) EXPECT_EQ(t(i, j), 0.0) << "T(" << i << "," << j << ")";
    for (unsigned i = 0; i < n; ++i) {
        bool inBlock = (i + 1 < n && t(i + 1, i) != 0.0) || (i > 0 && t(i, i - 1) != 0.0);
        EXPECT_EQ(values(i, 1) != 0.0, inBlock) << "row " << i;
        EXPECT_NEAR(values(i, 0), t(i, i), 1e-12 * (1.0 + std::fabs(t(i, i))));
    }
}

const std::vector<Spectrum>& spectra() {
    static const std::vector<Spectrum> cases = {
        {"empty", {}},
        {"one negative", {Complex(-2.5, 0.0)}},
        {"two real", {Complex(3.0, 0.0), Complex(-1.0, 0.0)}},
        {"one complex pair", {Complex(-0.5, 2.0)}},
        {"mixed of order 5", {Complex(1.0, 0.0), Complex(-1.0, 3.0), Complex(2.0, 1.0), Complex(-4.0, 0.0)}},
        {"mixed of order 20",
         {Complex(-1.0, 0.0), Complex(2.0, 0.0), Complex(-3.0, 1.0), Complex(0.5, 0.0), Complex(4.0, 2.0),
          Complex(-0.25, 0.0), Complex(1.5, 0.5), Complex(-6.0, 0.0), Complex(-2.0, 4.0), Complex(3.5, 0.0),
          Complex(-5.0, 0.0), Complex(0.75, 1.25), Complex(7.0, 0.0), Complex(-1.5, 0.0)}},
    };
    return cases;
}

TEST(LapackSchur, RebuildsMatricesOfKnownSpectrumWithAndWithoutVectors) {
    std::mt19937 random(11);
    for (const Spectrum& s : spectra()) {
        SCOPED_TRACE(s.name);
        unsigned n = expanded(s).size();
        Matrix a = withSpectrum(s, random);
        Matrix t = a, z(n, n), values(n, 2);
        ASSERT_EQ(lapackSchur(n, t.elements(), z.elements(), values.elements(), true, 0), 0);
        EXPECT_LE(distance(a, z * t * adjoint(z)), 1e-12 * std::max(1.0, frobenius(a)));
        EXPECT_LE(unitaryError(z), 1e-12);
        expectSchurShape(t, values);
        expectSameSpectrum(values, expanded(s));

        Matrix alone = a, valuesAlone(n, 2);
        ASSERT_EQ(lapackSchur(n, alone.elements(), 0, valuesAlone.elements(), false, 0), 0);
        expectSchurShape(alone, valuesAlone);
        expectSameSpectrum(valuesAlone, expanded(s));
    }
}

int selectAboveOne(const double* re, const double*) {
    return *re > 1.25;  // no real part of the spectra lies near the bound
}

// A sorted form keeps the residual and puts every selected eigenvalue (both members of a
// selected pair) before the others.
TEST(LapackSchur, SortedFormPutsSelectedEigenvaluesFirst) {
    const std::pair<const char*, SchurSelect> selections[] = {{"stable", selectStable},
                                                              {"real part above 1.25", selectAboveOne}};
    std::mt19937 random(23);
    for (const auto& sel : selections) {
        for (const Spectrum& s : spectra()) {
            SCOPED_TRACE(std::string(sel.first) + ", " + s.name);
            unsigned n = expanded(s).size();
            Matrix a = withSpectrum(s, random);
            Matrix t = a, z(n, n), values(n, 2);
            int selected = -1;
            ASSERT_EQ(
                lapackSchur(n, t.elements(), z.elements(), values.elements(), true, sel.second, &selected),
                0);
            EXPECT_LE(distance(a, z * t * adjoint(z)), 1e-12 * std::max(1.0, frobenius(a)));
            expectSchurShape(t, values);

            int wanted = 0;
            for (const Complex& v : expanded(s)) {
                double re = v.real(), im = v.imag();
                wanted += sel.second(&re, &im) ? 1 : 0;
            }
            EXPECT_EQ(selected, wanted);
            for (unsigned i = 0; i < n; ++i)
                EXPECT_EQ(sel.second(&values(i, 0), &values(i, 1)) != 0, int(i) < wanted) << "position " << i;
        }
    }
}

TEST(LapackSchur, StableSelectionLooksAtTheRealPartOnly) {
    const double cases[][3] = {{-1.0, 0.0, 1}, {-1e-300, 5.0, 1}, {0.0, -1.0, 0}, {2.0, 0.0, 0}};
    for (const auto& c : cases)
        EXPECT_EQ(selectStable(&c[0], &c[1]), static_cast<int>(c[2])) << c[0] << " " << c[1];
}

// ---- Singular value decomposition ----

struct SvdCase {
    unsigned m, n;
    std::vector<double> sigma;  // min(m, n) values, descending
};

template <class M>
M diagonal(unsigned m, unsigned n, const std::vector<double>& s) {
    M d(m, n);
    for (unsigned k = 0; k < s.size(); ++k) d(k, k) = s[k];
    return d;
}

// Builds U0 [diag(sigma); 0] V0ᵀ and checks the decomposition, then the values alone.
template <class M>
void checkSvd(const std::vector<SvdCase>& cases, M (*draw)(unsigned, std::mt19937&), unsigned seed) {
    std::mt19937 random(seed);
    for (const SvdCase& c : cases) {
        SCOPED_TRACE(std::to_string(c.m) + "x" + std::to_string(c.n));
        M a = draw(c.m, random) * diagonal<M>(c.m, c.n, c.sigma) * adjoint(draw(c.n, random));
        M work = a, u(c.m, c.m), vt(c.n, c.n);
        std::vector<double> s(c.sigma.size()), alone(c.sigma.size());
        ASSERT_EQ(lapackSvd(c.m, c.n, work.elements(), s.data(), u.elements(), vt.elements(), true), 0);
        M again = a;
        ASSERT_EQ(lapackSvd(c.m, c.n, again.elements(), alone.data(), 0, 0, false), 0);
        double scale = c.sigma.empty() ? 1.0 : std::max(1.0, c.sigma[0]);
        for (std::size_t k = 0; k < c.sigma.size(); ++k) {
            EXPECT_NEAR(s[k], c.sigma[k], 1e-12 * scale) << "sigma " << k;
            EXPECT_NEAR(alone[k], c.sigma[k], 1e-12 * scale) << "sigma " << k;
        }
        EXPECT_LE(distance(a, u * diagonal<M>(c.m, c.n, s) * vt), 1e-12 * std::max(1.0, frobenius(a)));
        EXPECT_LE(unitaryError(u), 1e-12);
        EXPECT_LE(unitaryError(adjoint(vt)), 1e-12);
    }
}

TEST(LapackSvd, RealRankDeficientMatricesOfKnownSingularValues) {
    checkSvd<Matrix>(
        {{0, 0, {}},
         {0, 3, {}},
         {3, 0, {}},
         {1, 1, {2.5}},
         {1, 1, {0.0}},
         {2, 2, {3.0, 0.0}},
         {2, 2, {4.0, 1.0}},
         {6, 4, {5.0, 3.0, 0.0, 0.0}},
         {3, 5, {2.0, 2.0, 0.0}},
         {20, 20, {9, 8, 7, 6, 5, 4, 3, 2, 1, 0.5, 0.25, 0.125, 0.1, 0.01, 0.001, 0, 0, 0, 0, 0}},
         {20, 2, {1.0, 0.0}}},
        orthogonal, 3);
}

// The 40×2 case needs more real work than 5·(k² + k + 20) doubles.
TEST(LapackSvd, ComplexMatricesOfKnownSingularValues) {
    checkSvd<CMatrix>({{0, 0, {}},
                       {0, 2, {}},
                       {1, 1, {1.5}},
                       {2, 2, {2.0, 0.0}},
                       {3, 2, {4.0, 1.0}},
                       {2, 5, {1.0, 0.5}},
                       {40, 2, {6.0, 0.0}},
                       {20, 20, {10, 9, 8, 7, 6, 5, 4, 3, 2, 1, 0.5, 0.1, 0.01, 0, 0, 0, 0, 0, 0, 0}}},
                      unitary, 7);
}

// ---- Linear solve ----

TEST(LapackSolve, KnownSystemsLeaveTheInputsAlone) {
    std::mt19937 random(9);
    for (unsigned n : {0, 1, 2, 3, 20}) {
        SCOPED_TRACE(n);
        Matrix a = Matrix::diagonal(n, 4.0), x(n, 2);  // well away from singular
        for (unsigned k = 0; k < n * n; ++k) a.elements()[k] += uniform(random);
        for (unsigned k = 0; k < n * 2; ++k) x.elements()[k] = 10.0 * uniform(random);
        Matrix b = a * x, aCopy = a, bCopy = b, solution(n, 2);
        ASSERT_EQ(lapackSolve(n, 2, a.elements(), b.elements(), solution.elements()), 0);
        EXPECT_LE(distance(solution, x), 1e-12 * std::max(1.0, frobenius(x)));
        EXPECT_TRUE(a.isEqual(aCopy) && b.isEqual(bCopy));
    }
}

// A singular matrix gives INFO > 0, leaves the right-hand side in the result and prints nothing.
TEST(LapackSolve, SingularMatrix) {
    Matrix a("[1 2 3;2 4 6;0 1 1]"), b("[1;2;3]"), x(3, 1);
    testing::internal::CaptureStdout();
    int info = lapackSolve(3, 1, a.elements(), b.elements(), x.elements());
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(info, 3);
    EXPECT_TRUE(x.isEqual(b));
}

// ---- Illegal arguments ----

// LAPACK's own XERBLA would stop the program: reaching the checks proves ours is the one called.
TEST(LapackXerbla, IllegalArgumentPrintsTheMessageAndReturns) {
    struct Case {
        const char* name;
        int (*call)();
        int info;
        const char* text;
    };
    const Case cases[] = {
        {"dgesdd negative rows",
         [] {
             double a[1], s[1];
             return lapackSvd(-1, 2, a, s, 0, 0, false);
         },
         -2, "** On entry to DGESDD, parameter number  2 had an illegal value\n"},
        {"zgesdd negative columns",
         [] {
             Complex a[1];
             double s[1];
             return lapackSvd(2, -3, a, s, 0, 0, false);
         },
         -3, "** On entry to ZGESDD, parameter number  3 had an illegal value\n"},
        {"dgees bad job",
         [] {
             int n = 1, lda = 1, sdim = 0, ldvs = 1, lwork = 10, info = 0, bwork[1];
             double a[1] = {1.0}, wr[1], wi[1], vs[1], work[10];
             LAPACK(dgees_)
             ("X", "N", selectStable, &n, a, &lda, &sdim, wr, wi, vs, &ldvs, work, &lwork, bwork, &info, 1,
              1);
             return info;
         },
         -1, "** On entry to  DGEES, parameter number  1 had an illegal value\n"},
        {"dgesv short leading dimension",
         [] {
             int n = 2, nrhs = 1, lda = 1, ldb = 2, info = 0, pivots[2];
             double a[4] = {1, 0, 0, 1}, b[2] = {1, 1};
             LAPACK(dgesv_)(&n, &nrhs, a, &lda, pivots, b, &ldb, &info);
             return info;
         },
         -4, "** On entry to  DGESV, parameter number  4 had an illegal value\n"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        testing::internal::CaptureStdout();
        int info = c.call();
        EXPECT_EQ(testing::internal::GetCapturedStdout(), c.text);
        EXPECT_EQ(info, c.info);
    }
}

// LAPACK is opened at its first call; a library or an entry that is not there ends the program
// with a report that names it, rather than a null call.
TEST(LazyLibrary, AMissingLibraryOrEntryEndsWithItsName) {
    EXPECT_NE(lazylib::entry(LAPACK_LIBRARY, "dgemm_"), nullptr);
    EXPECT_NE(lazylib::openedHandle(LAPACK_LIBRARY), nullptr);
    EXPECT_EXIT(lazylib::entry("libtarn-absent.so.9", "f_"), ::testing::ExitedWithCode(1),
                "cannot open libtarn-absent.so.9");
    EXPECT_EXIT(lazylib::entry(LAPACK_LIBRARY, "tarn_absent_"), ::testing::ExitedWithCode(1),
                "liblapack.so.3 has no entry tarn_absent_");
}

}  // namespace
