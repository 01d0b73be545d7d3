// Tests of the LAPACK driver layer: Schur forms, real and complex SVD, linear solve, XERBLA.
#include "algebra/lapack.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <random>
#include <string>
#include <vector>

namespace {

typedef std::complex<double> Complex;

// A column-major matrix of the elements T, just enough for building inputs and checking results.
template <class T>
struct Grid {
    int rows, cols;
    std::vector<T> data;
    Grid(int r, int c) : rows(r), cols(c), data(static_cast<std::size_t>(r) * c) {}
    T& operator()(int i, int j) { return data[static_cast<std::size_t>(j) * rows + i]; }
    T operator()(int i, int j) const { return data[static_cast<std::size_t>(j) * rows + i]; }
};
typedef Grid<double> Real;
typedef Grid<Complex> Cplx;

double conjugate(double x) { return x; }
Complex conjugate(Complex x) { return std::conj(x); }

template <class T>
Grid<T> identity(int n) {
    Grid<T> m(n, n);
    for (int i = 0; i < n; ++i) m(i, i) = 1.0;
    return m;
}

template <class T>
Grid<T> operator*(const Grid<T>& a, const Grid<T>& b) {
    Grid<T> c(a.rows, b.cols);
    for (int j = 0; j < b.cols; ++j)
        for (int k = 0; k < a.cols; ++k)
            for (int i = 0; i < a.rows; ++i) c(i, j) += a(i, k) * b(k, j);
    return c;
}

// Conjugate transpose (the plain transpose for real matrices).
template <class T>
Grid<T> adjoint(const Grid<T>& a) {
    Grid<T> t(a.cols, a.rows);
    for (int j = 0; j < a.cols; ++j)
        for (int i = 0; i < a.rows; ++i) t(j, i) = conjugate(a(i, j));
    return t;
}

template <class T>
double frobenius(const Grid<T>& a) {
    double sum = 0.0;
    for (const T& x : a.data) sum += std::norm(x);
    return std::sqrt(sum);
}

template <class T>
double distance(const Grid<T>& a, const Grid<T>& b) {
    Grid<T> d = a;
    for (std::size_t k = 0; k < d.data.size(); ++k) d.data[k] -= b.data[k];
    return frobenius(d);
}

double uniform(std::mt19937& random) { return std::uniform_real_distribution<double>(-1.0, 1.0)(random); }
Complex uniformComplex(std::mt19937& random) { return Complex(uniform(random), uniform(random)); }

// A orthogonal (unitary) matrix as a product of Householder reflections of random vectors.
template <class T, class Draw>
Grid<T> orthogonal(int n, std::mt19937& random, Draw draw) {
    Grid<T> q = identity<T>(n);
    for (int step = 0; step < 3; ++step) {
        Grid<T> v(n, 1);
        for (int i = 0; i < n; ++i) v(i, 0) = draw(random);
        double vv = frobenius(v) * frobenius(v);
        if (vv == 0.0) continue;
        Grid<T> h = identity<T>(n);
        Grid<T> outer = v * adjoint(v);
        for (std::size_t k = 0; k < h.data.size(); ++k) h.data[k] -= 2.0 / vv * outer.data[k];
        q = q * h;
    }
    return q;
}

Real orthogonal(int n, std::mt19937& random) { return orthogonal<double>(n, random, uniform); }
Cplx unitary(int n, std::mt19937& random) { return orthogonal<Complex>(n, random, uniformComplex); }

// ---- Schur form ----

// Eigenvalues: a real one stands alone, a complex one (im > 0) stands for its conjugate pair.
struct Spectrum {
    const char* name;
    std::vector<Complex> values;
};

int orderOf(const Spectrum& s) {
    int n = 0;
    for (const Complex& v : s.values) n += v.imag() > 0.0 ? 2 : 1;
    return n;
}

// Q0 B Q0ᵀ with B block upper triangular holding the spectrum on its diagonal.
Real withSpectrum(const Spectrum& s, std::mt19937& random) {
    int n = orderOf(s);
    Real b(n, n);
    int k = 0;
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
    for (int j = 0; j < n; ++j)
        for (int i = 0; i < j; ++i)
            if (b(i, j) == 0.0 && !(j == i + 1 && b(j, i) != 0.0)) b(i, j) = 0.5 * uniform(random);
    Real q = orthogonal(n, random);
    return q * b * adjoint(q);
}

std::vector<Complex> expanded(const Spectrum& s) {
    std::vector<Complex> all;
    for (const Complex& v : s.values) {
        all.push_back(v);
        if (v.imag() > 0.0) all.push_back(std::conj(v));
    }
    return all;
}

bool byParts(const Complex& a, const Complex& b) {
    if (a.real() != b.real()) return a.real() < b.real();
    return a.imag() < b.imag();
}

std::vector<Complex> eigenvalues(const Real& values) {
    std::vector<Complex> all;
    for (int i = 0; i < values.rows; ++i) all.push_back(Complex(values(i, 0), values(i, 1)));
    return all;
}

void expectSameSpectrum(std::vector<Complex> found, std::vector<Complex> wanted) {
    ASSERT_EQ(found.size(), wanted.size());
    // Round away the last bits before sorting so that a real pair sorts consistently.
    for (Complex& v : found) v = Complex(std::round(v.real() * 1e8) / 1e8, std::round(v.imag() * 1e8) / 1e8);
    std::sort(found.begin(), found.end(), byParts);
    std::sort(wanted.begin(), wanted.end(), byParts);
    for (std::size_t k = 0; k < found.size(); ++k)
        EXPECT_NEAR(std::abs(found[k] - wanted[k]), 0.0, 1e-7) << "eigenvalue " << k;
}

// T is quasi-triangular, its 2×2 blocks carry the complex pairs, values matches its diagonal.
void expectSchurShape(const Real& t, const Real& values) {
    int n = t.rows;
    for (int j = 0; j < n; ++j)
        for (int i = j + 2; i < n; ++i) EXPECT_EQ(t(i, j), 0.0) << "T(" << i << "," << j << ")";
    for (int i = 0; i < n; ++i) {
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

TEST(LapackSchur, RebuildsMatricesOfKnownSpectrum) {
    std::mt19937 random(11);
    for (const Spectrum& s : spectra()) {
        SCOPED_TRACE(s.name);
        int n = orderOf(s);
        Real a = withSpectrum(s, random);
        Real t = a, z(n, n), values(n, 2);
        ASSERT_EQ(lapackSchur(n, t.data.data(), z.data.data(), values.data.data(), true, 0), 0);

        double scale = std::max(1.0, frobenius(a));
        EXPECT_LE(distance(a, z * t * adjoint(z)), 1e-12 * scale);
        EXPECT_LE(distance(adjoint(z) * z, identity<double>(n)), 1e-12 * std::max(1, n));
        expectSchurShape(t, values);
        expectSameSpectrum(eigenvalues(values), expanded(s));
    }
}

TEST(LapackSchur, WithoutVectors) {
    std::mt19937 random(5);
    for (const Spectrum& s : spectra()) {
        SCOPED_TRACE(s.name);
        int n = orderOf(s);
        Real a = withSpectrum(s, random);
        Real alone = a, values(n, 2);
        ASSERT_EQ(lapackSchur(n, alone.data.data(), 0, values.data.data(), false, 0), 0);
        expectSchurShape(alone, values);
        expectSameSpectrum(eigenvalues(values), expanded(s));
    }
}

int selectAboveOne(const double* re, const double*) {
    return *re > 1.25;  // no real part of the spectra lies near the bound
}

// A sorted form keeps the residual and puts every selected eigenvalue (both members of a
// selected pair) before the others.
TEST(LapackSchur, SortedFormPutsSelectedEigenvaluesFirst) {
    struct Selection {
        const char* name;
        SchurSelect select;
    };
    const Selection selections[] = {{"stable", selectStable}, {"real part above 1.25", selectAboveOne}};
    std::mt19937 random(23);
    for (const Selection& sel : selections) {
        for (const Spectrum& s : spectra()) {
            SCOPED_TRACE(std::string(sel.name) + ", " + s.name);
            int n = orderOf(s);
            Real a = withSpectrum(s, random);
            Real t = a, z(n, n), values(n, 2);
            int selected = -1;
            ASSERT_EQ(
                lapackSchur(n, t.data.data(), z.data.data(), values.data.data(), true, sel.select, &selected),
                0);
            EXPECT_LE(distance(a, z * t * adjoint(z)), 1e-12 * std::max(1.0, frobenius(a)));
            expectSchurShape(t, values);

            int wanted = 0;
            for (const Complex& v : expanded(s)) {
                double re = v.real(), im = v.imag();
                wanted += sel.select(&re, &im) ? 1 : 0;
            }
            EXPECT_EQ(selected, wanted);
            for (int i = 0; i < n; ++i) {
                double re = values(i, 0), im = values(i, 1);
                EXPECT_EQ(sel.select(&re, &im) != 0, i < wanted) << "position " << i << ", re " << re;
            }
        }
    }
}

TEST(LapackSchur, StableSelectionLooksAtTheRealPartOnly) {
    const double cases[][3] = {{-1.0, 0.0, 1}, {-1e-300, 5.0, 1}, {0.0, -1.0, 0}, {2.0, 0.0, 0}};
    for (const auto& c : cases)
        EXPECT_EQ(selectStable(&c[0], &c[1]), static_cast<int>(c[2])) << c[0] << " " << c[1];
}

// ---- Real singular value decomposition ----

struct SvdCase {
    int m, n;
    std::vector<double> sigma;  // min(m, n) values, descending
};

const std::vector<SvdCase>& svdCases() {
    static const std::vector<SvdCase> cases = {
        {0, 0, {}},
        {0, 3, {}},
        {3, 0, {}},
        {1, 1, {2.5}},
        {1, 1, {0.0}},
        {2, 2, {3.0, 0.0}},
        {2, 2, {4.0, 1.0}},
        {6, 4, {5.0, 3.0, 0.0, 0.0}},
        {3, 5, {2.0, 2.0, 0.0}},
        {20, 20, {9, 8, 7, 6, 5, 4, 3, 2, 1, 0.5, 0.25, 0.125, 0.1, 0.01, 0.001, 0, 0, 0, 0, 0}},
        {20, 2, {1.0, 0.0}},
    };
    return cases;
}

std::string label(int m, int n) { return std::to_string(m) + "x" + std::to_string(n); }

// U0 [diag(sigma); 0] V0ᵀ, of the rank given by the non-zero sigmas.
template <class T>
Grid<T> withSingularValues(const SvdCase& c, const Grid<T>& u0, const Grid<T>& v0) {
    Grid<T> s(c.m, c.n);
    for (std::size_t k = 0; k < c.sigma.size(); ++k) s(k, k) = c.sigma[k];
    return u0 * s * adjoint(v0);
}

template <class T>
Grid<T> diagonal(int m, int n, const std::vector<double>& s) {
    Grid<T> d(m, n);
    for (std::size_t k = 0; k < s.size(); ++k) d(k, k) = s[k];
    return d;
}

void expectSigma(const std::vector<double>& found, const std::vector<double>& wanted) {
    double scale = wanted.empty() ? 1.0 : std::max(1.0, wanted[0]);
    for (std::size_t k = 0; k < wanted.size(); ++k)
        EXPECT_NEAR(found[k], wanted[k], 1e-12 * scale) << "sigma " << k;
}

TEST(LapackSvd, RankDeficientMatricesOfKnownSingularValues) {
    std::mt19937 random(3);
    for (const SvdCase& c : svdCases()) {
        SCOPED_TRACE(label(c.m, c.n));
        Real a = withSingularValues(c, orthogonal(c.m, random), orthogonal(c.n, random));
        Real work = a, u(c.m, c.m), vt(c.n, c.n);
        std::vector<double> s(c.sigma.size());
        ASSERT_EQ(lapackSvd(c.m, c.n, work.data.data(), s.data(), u.data.data(), vt.data.data(), true), 0);
        expectSigma(s, c.sigma);
        double scale = std::max(1.0, frobenius(a));
        EXPECT_LE(distance(a, u * diagonal<double>(c.m, c.n, s) * vt), 1e-12 * scale);
        EXPECT_LE(distance(adjoint(u) * u, identity<double>(c.m)), 1e-12 * std::max(1, c.m));
        EXPECT_LE(distance(vt * adjoint(vt), identity<double>(c.n)), 1e-12 * std::max(1, c.n));
    }
}

TEST(LapackSvd, ValuesOnly) {
    std::mt19937 random(4);
    for (const SvdCase& c : svdCases()) {
        SCOPED_TRACE(label(c.m, c.n));
        Real a = withSingularValues(c, orthogonal(c.m, random), orthogonal(c.n, random));
        std::vector<double> s(c.sigma.size());
        ASSERT_EQ(lapackSvd(c.m, c.n, a.data.data(), s.data(), 0, 0, false), 0);
        expectSigma(s, c.sigma);
    }
}

// ---- Complex singular value decomposition ----

TEST(LapackComplexSvd, SmallKnownMatrix) {
    // [[1, i], [i, 1]] / √2 is unitary; times diag(3, 1) it has singular values 3 and 1.
    const double r = 1.0 / std::sqrt(2.0);
    Cplx a(2, 2);
    a(0, 0) = 3.0 * r;
    a(0, 1) = Complex(0.0, r);
    a(1, 0) = Complex(0.0, 3.0 * r);
    a(1, 1) = r;
    Cplx work = a, u(2, 2), vt(2, 2);
    std::vector<double> s(2);
    ASSERT_EQ(lapackSvd(2, 2, work.data.data(), s.data(), u.data.data(), vt.data.data(), true), 0);
    expectSigma(s, {3.0, 1.0});
    EXPECT_LE(distance(a, u * diagonal<Complex>(2, 2, s) * vt), 1e-14 * 4.0);
}

// The 40×2 case needs more real work than 5·(k² + k + 20) doubles.
TEST(LapackComplexSvd, ConstructedMatricesOfKnownSingularValues) {
    const std::vector<SvdCase> cases = {
        {0, 0, {}},          {0, 2, {}},
        {1, 1, {1.5}},       {2, 2, {2.0, 0.0}},
        {3, 2, {4.0, 1.0}},  {2, 5, {1.0, 0.5}},
        {40, 2, {6.0, 0.0}}, {20, 20, {10, 9, 8, 7, 6, 5, 4, 3, 2, 1, 0.5, 0.1, 0.01, 0, 0, 0, 0, 0, 0, 0}},
    };
    std::mt19937 random(7);
    for (const SvdCase& c : cases) {
        SCOPED_TRACE(label(c.m, c.n));
        Cplx a = withSingularValues(c, unitary(c.m, random), unitary(c.n, random));
        Cplx work = a, u(c.m, c.m), vt(c.n, c.n);
        std::vector<double> s(c.sigma.size());
        ASSERT_EQ(lapackSvd(c.m, c.n, work.data.data(), s.data(), u.data.data(), vt.data.data(), true), 0);
        expectSigma(s, c.sigma);
        double scale = std::max(1.0, frobenius(a));
        EXPECT_LE(distance(a, u * diagonal<Complex>(c.m, c.n, s) * vt), 1e-12 * scale);
        EXPECT_LE(distance(adjoint(u) * u, identity<Complex>(c.m)), 1e-12 * std::max(1, c.m));
        EXPECT_LE(distance(vt * adjoint(vt), identity<Complex>(c.n)), 1e-12 * std::max(1, c.n));

        Cplx again = a;
        std::vector<double> alone(c.sigma.size());
        ASSERT_EQ(lapackSvd(c.m, c.n, again.data.data(), alone.data(), 0, 0, false), 0);
        expectSigma(alone, c.sigma);
    }
}

// ---- Linear solve ----

TEST(LapackSolve, KnownSystems) {
    std::mt19937 random(9);
    for (int n : {0, 1, 2, 3, 20}) {
        SCOPED_TRACE(n);
        const int nrhs = 2;
        Real a(n, n), x(n, nrhs);
        for (double& e : a.data) e = uniform(random);
        for (int i = 0; i < n; ++i) a(i, i) += 4.0;  // well away from singular
        for (double& e : x.data) e = uniform(random) * 10.0;
        Real b = a * x;
        Real aCopy = a, bCopy = b, solution(n, nrhs);
        ASSERT_EQ(lapackSolve(n, nrhs, a.data.data(), b.data.data(), solution.data.data()), 0);
        EXPECT_LE(distance(solution, x), 1e-12 * std::max(1.0, frobenius(x)));
        EXPECT_EQ(a.data, aCopy.data);
        EXPECT_EQ(b.data, bCopy.data);
    }
}

// A singular matrix gives INFO > 0, leaves the right-hand side in the result and prints nothing.
TEST(LapackSolve, SingularMatrix) {
    Real a(3, 3), b(3, 1), x(3, 1);
    const double rows[3][3] = {{1, 2, 3}, {2, 4, 6}, {0, 1, 1}};
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 3; ++j) a(i, j) = rows[i][j];
    b.data = {1.0, 2.0, 3.0};
    testing::internal::CaptureStdout();
    int info = lapackSolve(3, 1, a.data.data(), b.data.data(), x.data.data());
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(info, 3);
    EXPECT_EQ(x.data, b.data);
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
             dgees_("X", "N", selectStable, &n, a, &lda, &sdim, wr, wi, vs, &ldvs, work, &lwork, bwork, &info,
                    1, 1);
             return info;
         },
         -1, "** On entry to  DGEES, parameter number  1 had an illegal value\n"},
        {"dgesv short leading dimension",
         [] {
             int n = 2, nrhs = 1, lda = 1, ldb = 2, info = 0, pivots[2];
             double a[4] = {1, 0, 0, 1}, b[2] = {1, 1};
             dgesv_(&n, &nrhs, a, &lda, pivots, b, &ldb, &info);
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

}  // namespace
