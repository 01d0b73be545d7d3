// The checks of a design problem before its first step, each on a plant built to fail it.
#include <gtest/gtest.h>

#include "../quill/testutil.h"
#include "control/designck.h"
#include "ctltest.h"
#include "quill/all.h"

namespace {

// Inputs [w1 w2 | u], outputs [z1 z2 | y]; D11 = 0. A sampling time T makes it discrete.
ExtendedSystem plant(const Matrix& A, const Matrix& B1, const Matrix& B2, const Matrix& C1, const Matrix& C2,
                     const Matrix& D12, const Matrix& D21, double T = 0.0) {
    Matrix B = dynop::sideBySide(B1, B2), C = dynop::stack(C1, C2);
    Matrix D = dynop::stack(dynop::sideBySide(Matrix(2, 2), D12), dynop::sideBySide(D21, Matrix(1, 1)));
    if (T) return ExtendedSystem(DiscDynOp(A, B, C, D, T, 1, 1));
    return ExtendedSystem(DynOp(A, B, C, D, 1, 1));
}

// x' = -x + u + w1, z = [x; u], y = x + w2: every condition holds.
ExtendedSystem regular(const Matrix& C1 = mat(2, 1, {1, 0}), const Matrix& B1 = mat(1, 2, {1, 0}),
                       const Matrix& D12 = mat(2, 1, {0, 1}), const Matrix& D21 = mat(1, 2, {0, 1})) {
    return plant(mat(1, 1, {-1}), B1, mat(1, 1, {1}), C1, mat(1, 1, {1}), D12, D21);
}

// Two modes, the unstable one (1) reached by B2 and seen by C2 as given.
ExtendedSystem twoModes(const Matrix& B2, const Matrix& C2) {
    return plant(mat(2, 2, {1, 0, 0, -1}), mat(2, 2, {1, 0, 1, 0}), B2, mat(2, 2, {1, 1, 0, 0}), C2,
                 mat(2, 1, {0, 1}), mat(1, 2, {0, 1}));
}

ExtendedSystem withComponent(const char* name, const DynOp& component) {
    ExtendedSystem e = extendedComponents();
    e.setElement(name, component);
    consoleOf([&] { e.make(); });
    return e;
}

struct Case {
    const char* name;
    ExtendedSystem system;
    std::string console;
};

TEST(DesignCheckTest, EachConditionExplainsItsFailure) {
    std::vector<Case> cases = {
        {"regular", regular(), ""},
        {"components in place", extendedComponents(), ""},
        {"not stabilizable", twoModes(mat(2, 1, {0, 1}), mat(1, 2, {1, 1})),
         "(A, B2) is not stabilizable: the controls cannot move the pole 1\n"},
        {"not detectable", twoModes(mat(2, 1, {1, 1}), mat(1, 2, {0, 1})),
         "(C2, A) is not detectable: the measures do not see the pole 1\n"},
        {"D12 zero", regular(mat(2, 1, {1, 0}), mat(1, 2, {1, 0}), Matrix(2, 1)),
         "D12 has rank 0: no control reaches the objectives; weight the controls in the objectives\n"},
        {"D21 zero", regular(mat(2, 1, {1, 0}), mat(1, 2, {1, 0}), mat(2, 1, {0, 1}), Matrix(1, 2)),
         "D21 has rank 0: no measure carries noise; add noise on the measures\n"},
        // z2 = u s / (s + 1) and y = w2 s / (s + 1): a zero at 0.
        {"zero of the control block", regular(mat(2, 1, {0, -1})),
         "the controls to the objectives (A, B2, C1, D12) have an invariant zero on the imaginary axis at 0\n"},
        {"zero of the measure block", regular(mat(2, 1, {1, 0}), mat(1, 2, {0, -1})),
         "the disturbances to the measures (A, B1, C2, D21) have an invariant zero on the imaginary axis at 0\n"},
        {"zero on the unit circle",
         plant(mat(1, 1, {0.5}), mat(1, 2, {1, 0}), mat(1, 1, {1}), mat(2, 1, {0, -0.5}), mat(1, 1, {1}),
               mat(2, 1, {0, 1}), mat(1, 2, {0, 1}), 0.1),
         "the controls to the objectives (A, B2, C1, D12) have an invariant zero on the unit circle at 1\n"},
        {"no weight on the controls", withComponent("Wu2", DynOp()),
         "D12 has rank 0: no control reaches the objectives; add a weight Wu2 on the controls\n"},
        {"unstable disturbance weight", withComponent("W11", lag(1, 2, 1)),
         "(A, B2) is not stabilizable: the controls cannot move the pole 1 (a pole of W11)\n"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        bool ok = true;
        EXPECT_EQ(consoleOf([&] { ok = designProblemCheck(c.system); }), c.console);
        EXPECT_EQ(ok, c.console.empty());
    }
}

}  // namespace
