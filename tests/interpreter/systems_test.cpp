// Systems in the language: construction, methods, compositions and closed loops against the
// numeric library and closed forms, discrete systems, conversions, the workspace and model files,
// and the example programs.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "algebra/ratfun.h"
#include "control/discdyn.h"
#include "control/workspc.h"
#include "numtext.h"
#include "quill/quillerr.h"

namespace {

bool endsWith(const std::string& text, const std::string& end) {
    return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

// The spring-mass plant x'' + 0.4 x' + 4 x = u, y = x.
const char* const SPRING =
    "Matrix A(2, 2), B(2, 1), C(1, 2);\n"
    "A << 0 << 1 << -4 << -0.4;\n"
    "B << 0 << 1;\n"
    "C << 1 << 0;\n"
    "DynOp G(A, B, C, 0);\n";

DynOp spring() { return DynOp(Matrix("[0 1;-4 -0.4]"), Matrix("[0;1]"), Matrix("[1 0]"), Matrix("[0]")); }

// Two inputs and two outputs: the disturbance and the control force, the position twice.
const char* const LOOP =
    "Matrix A(2, 2), B(2, 2), C(2, 2), D(2, 2);\n"
    "A << 0 << 1 << 0 << -1;\n"
    "B << 0 << 0 << 1 << 1;\n"
    "C << 1 << 0 << 1 << 0;\n"
    "DynOp P(A, B, C, D, 1, 1);\n";

DynOp loopPlant() {
    return DynOp(Matrix("[0 1;0 -1]"), Matrix("[0 0;1 1]"), Matrix("[1 0;1 0]"), Matrix(2, 2), 1, 1);
}

// Runs a program in a fresh working directory, so that default file names stay there.
class InTemporaryDirectory {
public:
    InTemporaryDirectory() {
        char name[] = "/tmp/tarn_systems_XXXXXX";
        directory = mkdtemp(name);
        old = getcwd(buffer, sizeof buffer);
        EXPECT_EQ(chdir(directory.c_str()), 0);
    }
    ~InTemporaryDirectory() {
        EXPECT_EQ(chdir(old.c_str()), 0);
        EXPECT_EQ(std::system(("rm -rf " + directory).c_str()), 0);
    }
    void copy(const std::string& from, const std::string& name) {
        std::ifstream in(from, std::ios::binary);
        std::ofstream(name, std::ios::binary) << in.rdbuf();
    }

private:
    std::string directory, old;
    char buffer[4096];
};

TEST(SystemsTest, accessorsNormsGramiansAndPolesAreTheLibrarys) {
    DynOp g = spring();
    ProgramRun run = runMain(std::string(SPRING) +
                             "cout << G.getA() << G.getB() << G.getC() << G.getD() << endl;\n"
                             "cout << G.order() << G.inputNumber() << G.outputNumber() << G.controlNumber()\n"
                             "     << G.measureNumber() << G.feedForwardNumber() << endl;\n"
                             "cout << G.normH2() << \" \" << G.normHinf() << endl;\n"
                             "cout << G.contrGramian() << G.obsGramian() << G.eig() << endl;\n"
                             "cout << G << endl;");
    EXPECT_EQ(run.message, "");
    EXPECT_EQ(run.out, shown(g.stateA()) + shown(g.stateB()) + shown(g.stateC()) + shown(g.getD()) +
                           "\n211000\n" + number(g.normH2()) + " " + number(g.normHinf()) + "\n" +
                           shown(g.contrGramian()) + shown(g.obsGramian()) + shown(g.poles()) + "\n" +
                           shown(g) + "\n");
    // 1 / (s^2 + c s + k) has the H2 norm 1 / sqrt(2 c k).
    EXPECT_EQ(number(g.normH2()), number(1.0 / std::sqrt(2.0 * 0.4 * 4.0)));
}

TEST(SystemsTest, compositionsAreTheLibrarysAndKeepTheirOrder) {
    CapturedStreams quiet;  // the companion form writes its order
    DynOp g = spring(), h(RationalFunction(1.0, Vector(2u, 1.0)));
    Matrix M("[2]");
    struct Case {
        const char* expression;
        DynOp expected;
    };
    const std::vector<Case> cases = {
        {"G * H", g * h},
        {"G + H", g + h},
        {"G * 2", g * 2.0},
        {"2 * G", g * 2.0},
        {"M * G", M * g},
        {"G * M", g * M},
        {"G + M", g + M},
        {"-G", -g},
        {"G - H", g + -h},
        {"G / 4", g * 0.25},
        {"G * (1 / (s + 1))", g * h},
        {"H - 1", h + -M / 2.0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.expression);
        ProgramRun run = runMain(std::string(SPRING) +
                                 "DynOp H = 1 / (s + 1);\n"
                                 "Matrix M(1, 2.0);\n"
                                 "DynOp R = " +
                                 c.expression + ";\ncout << R << endl;");
        EXPECT_EQ(run.message, "");
        EXPECT_TRUE(endsWith(run.out, shown(c.expected) + "\n")) << run.out;
    }
    ProgramRun assigned = runMain(std::string(SPRING) + "G *= 2;\nG += G;\ncout << G << endl;");
    DynOp twice = g * 2.0;
    EXPECT_EQ(assigned.out, shown(twice + twice) + "\n");
}

TEST(SystemsTest, outputFeedbackClosesTheLoopWithTheClosedFormPoles) {
    DynOp loop = loopPlant().outputFeedback(DynOp(2.0, 0, 0, 0));
    ProgramRun run =
        runMain(std::string(LOOP) +
                "DynOp L = P.outputFeedback(DynOp(2));\n"
                "cout << L.inputNumber() << L.outputNumber() << L.order() << \" \" << L.normH2() << endl;\n"
                "cout << L.eig() << endl;\n"
                "L.zpk();");
    EXPECT_EQ(run.message, "");
    // x'' + x' + 2 x = w: poles -1/2 +- j sqrt(7)/2, H2 norm 1 / sqrt(2 * 1 * 2).
    Matrix poles(2, 2);
    poles(0, 0) = poles(1, 0) = -0.5;
    poles(0, 1) = std::sqrt(7.0) / 2.0;
    poles(1, 1) = -poles(0, 1);
    EXPECT_EQ(run.out, "112 " + number(0.5) + "\n" + shown(poles) + "\n1 / (s^2 + 1 s + 2)\n");
    EXPECT_EQ(shown(loop.poles()), shown(poles));
}

TEST(SystemsTest, channelsStructureAndInPlaceMethods) {
    DynOp p = loopPlant();
    Matrix T;
    DynOp uncontrollable(Matrix("[-1 0;0 -2]"), Matrix("[1;0]"), Matrix("[1 1]"), Matrix("[0]"));
    ProgramRun run =
        runMain(std::string(LOOP) +
                "DynOp G = P(1, 0);\n"
                "cout << G << P(0, 1, 2, 1) << P.transpose() << endl;\n"
                "Matrix F(2, 2), E(2, 1), H(1, 2);\n"
                "F << -1 << 0 << 0 << -2;\n"
                "E << 1 << 0;\n"
                "H << 1 << 1;\n"
                "DynOp U(F, E, H, 0);\n"
                "cout << U.contrSubSystem() << U.contrSubSystem(0.1) << U.obsSubSystem() << endl;\n"
                "DynOp S(A, B, C, D);\n"
                "S = 1 / (s * s + 0.4 * s + 4);\n"
                "DynOp Q = S;\n"
                "cout << Q.schurForm(Q.getA()) << Q << endl;\n"
                "cout << S.balancedRealization(1e-8) << S.reduceOrder(1).order() << endl;\n"
                "cout << S.cleanPolesInZero() << S.setInitialCondition(Vector(3, 1.0)) << endl;\n"
                "P.zpk();");
    CapturedStreams quiet;  // the companion form writes its order
    DynOp companion(RationalFunction(1.0, Vector(1.0, 0.4, 4.0)));
    DynOp sorted(companion), reduced(companion);
    sorted.schurForm(true);
    reduced.balancedRealization(1e-8);
    EXPECT_EQ(run.message, "");
    EXPECT_EQ(run.out,
              shown(p.subSystem(1, 0, 1, 1)) + shown(p.subSystem(0, 1, 2, 1)) + shown(p.transpose()) + "\n" +
                  shown(uncontrollable.contrSubSystem(0, T, zeroTolerance)) +
                  shown(uncontrollable.contrSubSystem(0, T, 0.1)) +
                  shown(uncontrollable.obsSubSystem(0, T, zeroTolerance)) + "\nn 2\n1" + shown(sorted) +
                  "\n" + std::to_string(reduced.order()) + std::to_string(reduced.reduceOrder(1).order()) +
                  "\n11\n(0, 0) 1 / ((s) (s + 1))\n(0, 1) 1 / ((s) (s + 1))\n"
                  "(1, 0) 1 / ((s) (s + 1))\n(1, 1) 1 / ((s) (s + 1))\n");
    EXPECT_EQ(uncontrollable.contrSubSystem(0, T, zeroTolerance).order(), 1u);
}

TEST(SystemsTest, channelAndPartitionFaultsHaveTheirMessages) {
    struct Case {
        const char* statement;
        std::string message;
    };
    DynOp p = loopPlant();
    std::string outside;
    try {
        p.subSystem(2, 0, 1, 1);
    } catch (TarnException* e) {
        outside = e->message().asCharPointer();
        delete e;
    }
    const std::vector<Case> cases = {
        {"P(-1, 0);", "Run time error, row index -1 out of range"},
        {"P(0, -1);", "Run time error, column index -1 out of range"},
        {"P(0, 0, -2, 1);", "Run time error, row dimension -2 out of range"},
        {"P(0, 0, 1, -2);", "Run time error, column dimension -2 out of range"},
        {"P(2, 0);", outside},
        {"P.reduceOrder(3);", "Run time error, order 3 out of range"},
        {"DynOp Q(A, B, C, D, 3, 1);", "Run time error, control number 3 out of range"},
        {"DynOp Q(P, 1, -1);", "Run time error, measure number -1 out of range"},
        {"DynOp Q(A, B, C, D, 0, 0, 5);", "Run time error, feed forward number 5 out of range"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.statement);
        ProgramRun run = runMain(std::string(LOOP) + c.statement);
        EXPECT_TRUE(failsWith(run, "[PARSE ERROR] " + c.message + " At line 7")) << run.message;
    }
}

TEST(SystemsTest, discreteSystemsKeepTheirSamplingTime) {
    DynOp g = spring();
    DiscDynOp d(g, false, 0.1);
    ProgramRun run = runMain(
        std::string(SPRING) +
        "DiscDynOp d(G, 0.1);\n"
        "cout << d << d.order() << \" \" << d.samplingTime() << endl;\n"
        "cout << d.eig() << d.normHinf() << endl;\n"
        "DiscDynOp t = d.transpose();\n"
        "DiscDynOp both = d * d + 1;\n"
        "cout << both.samplingTime() << both.order() << endl;\n"
        "DiscDynOp f = (z + 1) / (2 * z);\n"
        "cout << f.samplingTime() << endl;\n"
        "DiscDynOp g2 = d * DynOp(2);\n"
        "DiscDynOp withLoop(d, 1, 1);\n"
        "cout << g2.samplingTime() << \" \" << withLoop.outputFeedback(DiscDynOp(0.5, 0.1)).samplingTime()\n"
        "     << endl;");
    EXPECT_EQ(run.message, "");
    EXPECT_EQ(run.out,
              shown(d) + "2 0.1\n" + shown(d.poles()) + number(d.normHinf()) + "\n0.14\nn 1\n-1\n0.1 0.1\n");
    ProgramRun mixed = runMain(std::string(SPRING) + "DiscDynOp d(G, 0.1);\nd + G;");
    EXPECT_EQ(mixed.out, "Var G of level 101 cannot be converted in a DiscDynOp\n");
    EXPECT_TRUE(failsWith(mixed, "[PARSE ERROR] [DIFFMTRXDIM]")) << mixed.message;
}

TEST(SystemsTest, discreteGramianAndBalancingSolveTheSteinEquation) {
    // 1/(z + 0.5): the gramian is 1/(1 - 0.25), and so is the Hankel singular value, above 0.1:
    // balancing keeps the state.
    ProgramRun run = runMain(
        "DiscDynOp d = 1 / (z + 0.5);\n"
        "cout << d.contrGramian() << d.balancedRealization(0.1) << d.order() << endl;");
    EXPECT_EQ(run.message, "");
    EXPECT_EQ(run.out, "n 1\n" + shown(Matrix::diagonal(1, 4.0 / 3)) + "11\n");
}

TEST(SystemsTest, everySystemConversionMessage) {
    ProgramRun run = runMain(
        "DynOp fromPolynomial(s);\n"
        "DynOp fromDiscrete = 1 / z;\n"
        "DiscDynOp fromContinuous = 1 / s;\n"
        "DynOp G = 1 / (s + 1);\n"
        "DiscDynOp fromSystem = G;\n"
        "DiscDynOp d(G, 0.1);\n"
        "DynOp fromSampled = d;\n"
        "DiscDynOp gain = DynOp(3);\n"
        "cout << fromPolynomial.inputNumber() << fromSystem.order() << gain.samplingTime() << endl;");
    EXPECT_EQ(run.message, "");
    EXPECT_EQ(run.out,
              "Var s of level 23 cannot be converted in a DynOp\n"
              "Var  of level 23 cannot be converted in a DynOp\n"
              "Var  of level 23 cannot be converted in a DiscDynOp\n"
              "n 1\n"
              "Var G of level 101 cannot be converted in a DiscDynOp\n"
              "Var d of level 101 cannot be converted in a DynOp\n"
              "00-1\n");
}

TEST(SystemsTest, theWorkspaceKeepsValuesByNameAndRefusesOtherKinds) {
    globalWorkspace().clear();
    ProgramRun run = runMain(
        "Matrix A(2, 1.5);\n"
        "Vector v(3, 2.0);\n"
        "Polynomial p = s * s + 1;\n"
        "RationalFunction G = 1 / p;\n"
        "DynOp sys = G;\n"
        "DiscDynOp d(sys, 0.2);\n"
        "A.save(); v.save(\"vector\"); p.save(\"poly\"); G.save(); sys.save(); d.save();\n"
        "Matrix A2; Vector v2; Polynomial p2; RationalFunction G2; DynOp sys2; DiscDynOp d2;\n"
        "A2.recover(\"A\"); v2.recover(\"vector\"); p2.recover(\"poly\"); G2.recover(\"G\");\n"
        "sys2.recover(\"sys\"); d2.recover(\"d\");\n"
        "cout << int(A2 == A) << int(v2 == v) << int(p2 == p) << int(G2 == G) << int(sys2 == sys)\n"
        "     << int(d2 == d) << endl;\n"
        "DynOp K = A;\n"
        "K.save(\"gain\");\n"
        "Matrix fromGain;\n"
        "fromGain.recover(\"gain\");\n"
        "cout << int(fromGain == A) << endl;");
    EXPECT_EQ(run.message, "");
    EXPECT_EQ(run.out, "n 2\n111111\n1\n");
    EXPECT_EQ(globalWorkspace().get("A")->isKindOf(class_Matrix), true);

    struct Case {
        const char* statements;
        const char* message;
    };
    for (Case c :
         {Case{"Matrix M;\nM.recover(\"nothere\");",
               "Warning, the name nothere is not present in the workspace"},
          Case{"Matrix M;\nM.recover(\"sys\");", "Warning, sys on the workspace is not a matrix object"},
          Case{"DynOp S;\nS.recover(\"d\");",
               "Warning, d on the workspace is not a continuous time dynamical system"},
          Case{"DiscDynOp S;\nS.recover(\"sys\");",
               "Warning, sys on the workspace is not a discrete time dynamical system"},
          Case{"Vector w;\nw.recover(\"A\");", "Warning, A on the workspace is not a vector object"},
          Case{"Polynomial q;\nq.recover(\"G\");", "Warning, G on the workspace is not a polynomial object"},
          Case{"RationalFunction R;\nR.recover(\"A\");",
               "Warning, A on the workspace is not a rational function object"}}) {
        SCOPED_TRACE(c.statements);
        ProgramRun refused = runMain(std::string(c.statements) + "\ncout << \"not reached\";");
        EXPECT_TRUE(failsWith(refused, std::string("[PARSE ERROR] ") + c.message + " At line 3"))
            << refused.message;
        EXPECT_EQ(refused.out.find("not reached"), std::string::npos);
    }
    globalWorkspace().clear();
}

// Model files keep 16 digits: the sampled system comes back within rounding, the others exactly.
TEST(SystemsTest, modelFilesGoAndComeBackUnderTheirClassesExtensions) {
    InTemporaryDirectory here;
    here.copy(std::string(TARN_EXAMPLES) + "/twomass.dyn", "twomass.dyn");
    here.copy(std::string(TARN_EXAMPLES) + "/twomassx.dyn", "twomassx.dyn");
    here.copy(std::string(TARN_EXAMPLES) + "/twomassxd.dyn", "twomassxd.dyn");
    ProgramRun run = runMain(
        "Matrix A(2, 1.5);\n"
        "Vector v(3, 2.0);\n"
        "Polynomial p = s * s + 1;\n"
        "RationalFunction G = 1 / p;\n"
        "DynOp sys = G;\n"
        "DiscDynOp d(sys, 0.2);\n"
        "cout << A.storeOn() << v.storeOn() << p.storeOn(\"poly.rat\") << G.storeOn() << sys.storeOn()\n"
        "     << d.storeOn() << endl;\n"
        "Matrix A2; Vector v2; Polynomial p2; RationalFunction G2; DynOp sys2; DiscDynOp d2;\n"
        "A2.readFrom(\"A.mat\"); v2.readFrom(\"v.mat\"); p2.readFrom(\"poly.rat\"); G2.readFrom(\"G.rat\");\n"
        "sys2.readFrom(\"sys.dyn\"); d2.readFrom(\"d.dyn\");\n"
        "cout << int(A2 == A) << int(v2 == v) << int(p2 == p) << int(G2 == G) << int(sys2 == sys)\n"
        "     << d2.getA() - d.getA() << d2.samplingTime() << endl;\n"
        "Matrix A3;\n"
        "int absent = A3.readFrom(), wrong = A3.readFrom(\"sys.dyn\"), named = A3.readFrom(\"none.mat\");\n"
        "cout << absent << wrong << named << endl;\n"
        "DynOp plant;\n"
        "cout << plant.readFrom(\"twomass.dyn\") << plant << endl;\n"
        // A design problem's file gives its composed system, in its own time domain only.
        "DynOp problem; DiscDynOp sampled;\n"
        "cout << problem.readFrom(\"twomassx.dyn\") << sampled.readFrom(\"twomassxd.dyn\")\n"
        "     << sampled.samplingTime() << problem.readFrom(\"twomassxd.dyn\") << endl;");
    Object* twoMass = Workspace::readModelFile("twomass.dyn");
    ASSERT_NE(twoMass, nil);
    EXPECT_EQ(run.message, "");
    EXPECT_EQ(run.out, "n 2\n111111\n11111" + shown(Matrix(2, 2)) +
                           "0.2\n"
                           "Warning, file name A3.mat has not been found\n"
                           "Warning, file name sys.dyn doesn't contain a proper object\n"
                           "Warning, file name none.mat has not been found\n000\n1" +
                           shown(*twoMass) +
                           "\n110.05Warning, file name twomassxd.dyn doesn't contain a proper object\n0\n");
    delete twoMass;
}

TEST(SystemsTest, theExampleProgramsRunAndGiveTheClosedForms) {
    InTemporaryDirectory here;
    here.copy(std::string(TARN_EXAMPLES) + "/twomass.dyn", "twomass.dyn");
    here.copy(std::string(TARN_EXAMPLES) + "/mass.txt", "mass.txt");
    double z = 0.2 / (2 * std::sqrt(2.0));  // the damping ratio of the heaviest mass, 2
    struct Example {
        const char* name;
        std::vector<std::string> lines;
    };
    const std::vector<Example> examples = {
        {"spring", {"G(s) = 1 / (s^2 + 0.4 s + 4)", "H2 norm " + number(1.0 / std::sqrt(3.2))}},
        {"reduce",
         {"full order 2, H2 norm " + number(std::sqrt(0.5 + 0.01 * 0.01 / 100 + 2 * 0.01 / 51)),
          "states above the threshold 1"}},
        {"sampled", {"sampling time 0.1", "filtered order 3, sampling time 0.1"}},
        {"loop", {"K = 2: 1 / (s^2 + 1 s + 2)", "  H2 norm from w to z 0.5"}},
        {"models", {"read back spring.dyn, order 2", "the same model: 1", "twomass.dyn: order 4, poles ["}},
        {"sweep", {"worst norm " + number(1 / (2 * z * std::sqrt(1 - z * z))) + ", mass 2"}},
    };
    for (const Example& e : examples) {
        SCOPED_TRACE(e.name);
        ProgramRun run = runFile(std::string(TARN_EXAMPLES) + "/" + e.name + ".cxx");
        EXPECT_EQ(run.status, 0);
        EXPECT_EQ(run.err, "");
        for (const std::string& line : e.lines)
            EXPECT_NE(run.out.find(line + (line.back() == '[' ? "" : "\n")), std::string::npos) << line;
    }
}

}  // namespace

TEST(SystemsTest, certifiedNormIsTheLibrarysInEitherTimeDomain) {
    DynOp g = spring();
    DiscDynOp d(g, false, 0.1);
    auto vector = [](const HinfNorm& h) {
        Vector v(4);
        v[0] = h.norm, v[1] = h.omega, v[2] = h.lower, v[3] = h.upper;
        return shown(v);
    };
    ProgramRun run = runMain(std::string(SPRING) +
                             "DiscDynOp d(G, 0.1);\n"
                             "cout << G.certifiedNormHinf() << d.certifiedNormHinf() << endl;");
    EXPECT_EQ(run.message, "");
    EXPECT_EQ(run.out, vector(g.certifiedNormHinf()) + vector(d.certifiedNormHinf()) + "\n");
}
