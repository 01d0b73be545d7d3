// Semidefinite programs written in SDPA sparse form and solved by CSDP.
#include "control/semidef.h"

#include <csdp/declarations.h>

#include <cstdio>
#include <cstdlib>
#include <iostream>

#include "algebra/lazylib.h"
#include "control/dynop.h"
#include "quill/safefile.h"

// CSDP, opened at the first program solved.
#define CSDP(name) LAZY_ENTRY("libsdp.so.0", name)

namespace {

// Every block is kept this far inside the cone, so that the strict inequalities hold.
const double margin = 1e-8;

// The upper triangles of the blocks as SDPA entries of one matrix.
void writeEntries(std::ostream& os, unsigned matrixNumber, const std::vector<Matrix>& blocks) {
    for (unsigned k = 0; k < blocks.size(); ++k)
        for (unsigned j = 0; j < blocks[k].columnNumber(); ++j)
            for (unsigned i = 0; i <= j; ++i)
                if (blocks[k](i, j) != 0.0)
                    os << matrixNumber << " " << k + 1 << " " << i + 1 << " " << j + 1 << " "
                       << blocks[k](i, j) << "\n";
}

// Each constraint matrix of the solver is the change of the blocks for one variable at 1; the
// constant matrix keeps the blocks off the boundary by the margin.
void writeProblemOn(std::ostream& os, unsigned m, const std::vector<double>& c,
                    const semidef::Blocks& blocks) {
    os.precision(17);
    std::vector<double> y(m, 0.0);
    std::vector<Matrix> base = blocks(y), constant;
    os << m << "\n" << base.size() << "\n";
    for (const Matrix& b : base) {
        os << b.rowNumber() << " ";
        constant.push_back(Matrix::diagonal(b.rowNumber(), margin) - b);
    }
    os << "\n";
    for (double value : c) os << value << " ";
    os << "\n";
    writeEntries(os, 0, constant);
    for (unsigned i = 0; i < m; ++i) {
        y[i] = 1.0;
        std::vector<Matrix> changed = blocks(y);
        y[i] = 0.0;
        for (unsigned k = 0; k < changed.size(); ++k) changed[k] -= base[k];
        writeEntries(os, i + 1, changed);
    }
}

// The solver's sample driver, entered as a program with its arguments: it reads the problem,
// takes the solver's initial point and solves. Answers the solver's code, y and the gap.
int solverMain(int argc, char** argv, std::vector<double>& y, double& gap) {
    if (argc != 2) {
        std::cout << "Usage: \n"
                  << "\n"
                  << "solver <input problem> [<final solution>] [<initial solution>]\n"
                  << std::flush;
        std::exit(1);
    }
    int n = 0, k = 0;
    blockmatrix C, X, Z;
    double *a = 0, *ys = 0, pobj = 0.0, dobj = 0.0;
    constraintmatrix* constraints = 0;
    int code = CSDP(read_prob)(argv[1], &n, &k, &C, &a, &constraints, 1);
    if (code) return code;
    CSDP(initsoln)(n, k, C, a, constraints, &X, &ys, &Z);
    code = CSDP(easy_sdp)(n, k, C, a, constraints, 0.0, &X, &ys, &Z, &pobj, &dobj);
    std::fflush(stdout);
    y.assign(ys + 1, ys + k + 1);
    gap = dobj - pobj;
    CSDP(free_prob)(n, k, C, a, constraints, X, ys, Z);
    return code;
}

}  // namespace

namespace semidef {

bool writeProblem(const char* fileName, unsigned m, const std::vector<double>& c, const Blocks& blocks) {
    String failure = writeSafely(fileName, [&](std::ostream& os) { writeProblemOn(os, m, c, blocks); });
    if (failure.size() > 0) std::cout << failure.asCharPointer() << std::endl;
    return failure.size() == 0;
}

int solveFile(const char* fileName, std::vector<double>& y, double& gap) {
    char program[] = "main";
    std::string problem(fileName);
    char* argv[] = {program, &problem[0]};
    return solverMain(2, argv, y, gap);
}

Matrix symmetric(const std::vector<double>& y, unsigned first, unsigned n) {
    Matrix S(n, n);
    for (unsigned j = 0; j < n; ++j)
        for (unsigned i = 0; i <= j; ++i) S(i, j) = S(j, i) = y[first++];
    return S;
}

Matrix grid(std::initializer_list<std::initializer_list<Matrix>> rows) {
    auto row = [](std::initializer_list<Matrix> blocks) {
        auto it = blocks.begin();
        Matrix r = *it;
        for (++it; it != blocks.end(); ++it) r = dynop::sideBySide(r, *it);
        return r;
    };
    auto it = rows.begin();
    Matrix r = row(*it);
    for (++it; it != rows.end(); ++it) r = dynop::stack(r, row(*it));
    return r;
}

}  // namespace semidef
