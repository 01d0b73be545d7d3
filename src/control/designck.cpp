// The checks of a design problem before its first step: stabilizability, detectability, the rank
// of D12 and D21 and the invariant zeros on the stability boundary.
#include "control/designck.h"

#include <cmath>
#include <complex>
#include <functional>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "algebra/cmatrix.h"
#include "control/extsys.h"

using dynop::block;
using dynop::stack;

namespace {

typedef std::complex<double> Cx;
typedef std::function<bool(Cx)> ModeFilter;

// Singular values below this fraction of the matrix's size count as zero.
const double rankTolerance = 1e-9;
// Eigenvalues this close to the stability boundary count as on it.
const double boundaryTolerance = 1e-7;

double size(const Matrix& M) { return M.rowNumber() && M.columnNumber() ? Algebra().normF(M) : 0.0; }

unsigned rankOf(const CMatrix& M) {
    if (!M.rowNumber() || !M.columnNumber()) return 0;
    Vector s = M.singularValues();
    unsigned r = 0;
    while (r < s.size() && s[int(r)] > rankTolerance * std::max(1.0, s[0])) ++r;
    return r;
}

unsigned rankOf(const Matrix& M) { return rankOf(CMatrix(M)); }

// The eigenvalues of A that filter keeps (one of each conjugate pair) at which [A - lambda I; C]
// loses rank: the modes of A that C does not see.
std::vector<Cx> hiddenModes(const Matrix& A, const Matrix& C, const ModeFilter& keep) {
    std::vector<Cx> hidden;
    unsigned n = A.rowNumber(), p = C.rowNumber();
    if (n == 0) return hidden;
    Matrix values = Algebra().computeEigenvalues(A);
    double scale = 1.0 + size(A) + size(C);
    for (unsigned i = 0; i < values.rowNumber(); ++i) {
        Cx lambda(values(i, 0), values(i, 1));
        if (lambda.imag() < 0.0 || !keep(lambda)) continue;
        Matrix re = stack(A - Matrix::diagonal(n, lambda.real()), C);
        Matrix im = stack(Matrix::diagonal(n, -lambda.imag()), Matrix(p, n));
        Vector s = CMatrix(re, im).singularValues();
        if (s[int(n - 1)] <= rankTolerance * scale) hidden.push_back(lambda);
    }
    return hidden;
}

// The invariant zeros of (A, B, C, D) that filter keeps, D of full column rank: with D = U S V'
// and U = [U1 U2], the modes of A - B D+ C that U2' C does not see.
std::vector<Cx> invariantZeros(const Matrix& A, const Matrix& B, const Matrix& C, const Matrix& D,
                               const ModeFilter& keep) {
    Algebra alg;
    Matrix d(D), U, Vt;
    Vector s = alg.svd(d, U, Vt, true);
    unsigned p = D.rowNumber(), m = D.columnNumber();
    Matrix inverse(m, p);  // D+ = V S^-1 U1'
    for (unsigned i = 0; i < m; ++i)
        for (unsigned j = 0; j < p; ++j)
            for (unsigned k = 0; k < m; ++k) inverse(i, j) += Vt(k, i) * U(j, k) / s[int(k)];
    Matrix complement = block(U, 0, m, p, p - m).transpose();
    return hiddenModes(A - B * inverse * C, complement * C, keep);
}

std::string modeText(Cx lambda) {
    std::ostringstream os;
    os << lambda.real();
    if (lambda.imag() != 0.0) os << " +- " << lambda.imag() << "j";
    return os.str();
}

// The Rosenbrock matrix [A - lambda I, B; C, D] of a component.
CMatrix rosenbrock(const DynOp& c, Cx lambda) {
    unsigned n = c.order();
    Matrix Z(c.outputNumber(), c.inputNumber());
    Matrix re = dynop::sideBySide(stack(c.stateA() - Matrix::diagonal(n, lambda.real()), c.stateC()),
                                  stack(c.stateB(), c.getD()));
    Matrix im = dynop::sideBySide(stack(Matrix::diagonal(n, -lambda.imag()), Matrix(c.outputNumber(), n)),
                                  stack(Matrix(n, c.inputNumber()), Z));
    return CMatrix(re, im);
}

bool hasPoleAt(const DynOp& c, Cx lambda) {
    Matrix p = c.poles();
    for (unsigned i = 0; i < p.rowNumber(); ++i)
        if (std::abs(Cx(p(i, 0), std::fabs(p(i, 1))) - lambda) <= 1e-6 * (1.0 + std::abs(lambda)))
            return true;
    return false;
}

// A zero: the Rosenbrock matrix loses rank against its rank at a point that is no zero.
bool hasZeroAt(const DynOp& c, Cx lambda) {
    return c.order() > 0 && rankOf(rosenbrock(c, lambda)) < rankOf(rosenbrock(c, Cx(0.3711, 1.1173)));
}

// " (a pole of W21, Model)": the components with lambda among their poles, or their zeros.
std::string ownersOf(const ExtendedSystem& s, Cx lambda, bool zeros) {
    std::string names;
    for (const char* name : ExtendedSystem::componentNames) {
        const DynOp& c = s.getElement(name);
        if (zeros ? hasZeroAt(c, lambda) : hasPoleAt(c, lambda))
            names += (names.empty() ? "" : ", ") + std::string(name);
    }
    return names.empty() ? names : std::string(zeros ? " (a zero of " : " (a pole of ") + names + ")";
}

bool hasComponents(const ExtendedSystem& s) { return s.hasElement("Model"); }

// One line for each mode, with the components that own it when the system has them.
bool report(const std::vector<Cx>& modes, const std::string& text, const ExtendedSystem& s, bool zeros) {
    for (Cx lambda : modes)
        std::cout << text << modeText(lambda) << (hasComponents(s) ? ownersOf(s, lambda, zeros) : "")
                  << std::endl;
    return modes.empty();
}

bool rankCheck(const Matrix& D, unsigned needed, const char* name, const char* what,
               const std::string& hint) {
    unsigned r = rankOf(D);
    if (r >= needed) return true;
    std::cout << name << " has rank " << r
              << (r == 0 ? ": no " : " of " + std::to_string(needed) + ": not every ") << what << hint
              << std::endl;
    return false;
}

// The measures of an extended system are the plant's, with noise Wd, then the reference's,
// with noise Wdr: the hint names the group whose rows lack rank.
std::string measureHint(const ExtendedSystem& s, const Matrix& D21) {
    if (!hasComponents(s)) return "; add noise on the measures";
    unsigned plant = s.getElement("Wd").outputNumber();
    if (rankOf(block(D21, 0, 0, plant, D21.columnNumber())) < plant)
        return "; add a noise weight Wd on the measured outputs";
    return "; add a noise weight Wdr on the measured reference";
}

}  // namespace

bool designProblemCheck(const ExtendedSystem& s) {
    unsigned m2 = s.controlNumber(), p2 = s.measureNumber();
    if (m2 == 0 || p2 == 0 || s.inputNumber() <= m2 || s.outputNumber() <= p2) return true;
    dynop::Partition b(s);
    bool discrete = s.isDiscreteTime();
    auto margin = [discrete](Cx l) { return discrete ? std::abs(l) - 1.0 : l.real(); };
    ModeFilter unstable = [margin](Cx l) { return margin(l) > -boundaryTolerance; };
    ModeFilter boundary = [margin](Cx l) { return std::fabs(margin(l)) <= boundaryTolerance; };
    const char* where = discrete ? " on the unit circle at " : " on the imaginary axis at ";

    bool ok = report(hiddenModes(b.A.transpose(), b.B2.transpose(), unstable),
                     "(A, B2) is not stabilizable: the controls cannot move the pole ", s, false);
    ok = report(hiddenModes(b.A, b.C2, unstable),
                "(C2, A) is not detectable: the measures do not see the pole ", s, false) &&
         ok;
    bool fullD12 = rankCheck(
        b.D12, m2, "D12", "control reaches the objectives",
        hasComponents(s) ? "; add a weight Wu2 on the controls" : "; weight the controls in the objectives");
    bool fullD21 = rankCheck(b.D21.transpose(), p2, "D21", "measure carries noise", measureHint(s, b.D21));
    if (fullD12)
        ok = report(invariantZeros(b.A, b.B2, b.C1, b.D12, boundary),
                    std::string("the controls to the objectives (A, B2, C1, D12) have an invariant zero") +
                        where,
                    s, true) &&
             ok;
    if (fullD21)
        ok = report(invariantZeros(b.A.transpose(), b.C2.transpose(), b.B1.transpose(), b.D21.transpose(),
                                   boundary),
                    std::string("the disturbances to the measures (A, B1, C2, D21) have an invariant zero") +
                        where,
                    s, true) &&
             ok;
    return ok && fullD12 && fullD21;
}
