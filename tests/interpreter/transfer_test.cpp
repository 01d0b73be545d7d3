// Polynomials and transfer functions in the language: the algebra of s and z against the numeric
// library, the zero-pole-gain print, methods, constructors, and the refusals.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "algebra/polynom.h"
#include "algebra/ratfun.h"
#include "numtext.h"

namespace {

Polynomial poly(std::vector<double> coefficients, double samplingTime = 0.0) {
    Vector v(unsigned(coefficients.size()));
    for (unsigned i = 0; i < v.size(); ++i) v[i] = coefficients[i];
    return Polynomial(v, samplingTime);
}

struct Case {
    const char* expression;
    std::string expected;
};

void expectPrinted(const std::string& declarations, const std::vector<Case>& cases) {
    for (const Case& c : cases) {
        SCOPED_TRACE(c.expression);
        ProgramRun run = runMain(declarations + "cout << " + c.expression + " << endl;");
        EXPECT_EQ(run.message, "");
        EXPECT_EQ(run.out, c.expected + "\n");
    }
}

TEST(TransferTest, polynomialsInSAndZAreTheLibrarys) {
    Polynomial s = poly({1, 0}), z = poly({1, 0}, -1.0), p = poly({1, 2, 5});
    expectPrinted("", {
                          {"s", shown(s)},
                          {"z", shown(z)},
                          {"s * s + 2 * s + 5", shown(p)},
                          {"(s + 1) * (s - 1)", shown((s + 1.0) * (s - 1.0))},
                          {"2 - s", shown(2.0 - s)},
                          {"s / 2", shown(s / 2.0)},
                          {"-z * 3", shown(-z * 3.0)},
                          {"int(s == s) + int(s == z)", "1"},
                      });
}

TEST(TransferTest, rationalFunctionsCombineAsTheLibrarysDo) {
    Polynomial s = poly({1, 0}), p = poly({1, 2, 5}), z = poly({1, 0}, -1.0);
    RationalFunction G(s + 1.0, p, 0.0);
    RationalFunction H(z - 0.5, z * z - 0.25, -1.0);
    expectPrinted("RationalFunction G = (s + 1) / (s * s + 2 * s + 5);\n",
                  {
                      {"G", shown(G)},
                      {"s / s", shown(RationalFunction(s, s, 0.0))},
                      {"2 / s", shown(RationalFunction(Polynomial(2.0), s, 0.0))},
                      {"G + 1", shown(G + 1.0)},
                      {"1 - G", shown(1.0 - G)},
                      {"G * G", shown(G * G)},
                      {"G / G", shown(G / G)},
                      {"G * s", shown(G * RationalFunction(s, Polynomial(1.0), 0.0))},
                      {"s + G", shown(RationalFunction(s, Polynomial(1.0), 0.0) + G)},
                      {"G / 2", shown(G / 2.0)},
                      {"-G", shown(-G)},
                      {"(z - 0.5) / (z * z - 0.25)", shown(H)},
                      {"int(G == G) + int(G != G / 2)", "2"},
                  });
}

TEST(TransferTest, sOverSIsARationalFunctionNotOne) {
    ProgramRun run = runMain(
        "RationalFunction r = s / s;\n"
        "cout << r.order() << endl;\n"
        "Polynomial q = s / s;\n"
        "cout << q << endl;");
    EXPECT_EQ(run.message, "");
    EXPECT_EQ(run.out, "1\nVar  of level 23 cannot be converted in a Polynomial\n0\n");
}

TEST(TransferTest, zpkPrintsGainZerosAndPolesInTheShortNumberForm) {
    ProgramRun run = runMain(
        "RationalFunction G = (s + 1) / (s * s + 2 * s + 5);\n"
        "G.zpk();\n"
        "cout << G << endl;\n"
        "RationalFunction H = 2.5 * (z - 0.5) / (z * z - z + 0.5);\n"
        "H.zpk();\n"
        "RationalFunction K = 100000 / (s + 0.00001);\n"
        "K.zpk();\n"
        "RationalFunction still;\n"
        "still.zpk();\n"
        "RationalFunction none = 0 * s / (s + 1);\n"
        "none.zpk();\n"
        "Polynomial p = 2 * s + 4;\n"
        "p.zpk();\n"
        "p = s * s + 2 * s + 5;\n"
        "p.zpk();\n"
        "RationalFunction sampled(s + 1, s * s, 0.1);\n"
        "sampled.zpk();");
    RationalFunction G(poly({1, 1}), poly({1, 2, 5}), 0.0);
    EXPECT_EQ(run.message, "");
    EXPECT_EQ(run.out, "1 (s + 1) / (s^2 + 2 s + 5)\n" + shown(G) +
                           "\n"
                           "2.5 (z - 0.5) / (z^2 - 1 z + 0.5)\n"
                           "1e5 / (s + 1e-5)\n"
                           "zero gain\n"
                           "zero gain\n"
                           "2 (s + 2)\n"
                           "1 (s^2 + 2 s + 5)\n"
                           "1 (z + 1) / ((z) (z))\n");
}

TEST(TransferTest, methodsAreTheLibrarysOnTheSameFunction) {
    Polynomial p = poly({1, 2, 5});
    RationalFunction G(poly({1, 1}), p, 0.0);
    RationalFunction grown(G);
    grown.reSize(3);
    ProgramRun run = runMain(
        "Polynomial p = s * s + 2 * s + 5;\n"
        "RationalFunction G = (s + 1) / p;\n"
        "cout << G.poles() << G.zeros() << G.eig() << G.order() << endl;\n"
        "cout << G.reSize(3) << G << endl;\n"
        "cout << p.roots() << p.eig() << p.order() << endl;\n"
        "cout << p.reSize(1) << \" \" << p << endl;");
    Polynomial cut(p);
    cut.reSize(1);
    EXPECT_EQ(run.message, "");
    EXPECT_EQ(run.out, shown(RationalFunction(G).poles()) + shown(RationalFunction(G).zeros()) +
                           shown(RationalFunction(G).poles()) + "2\n3" + shown(grown) + "\n" +
                           shown(Polynomial(p).roots()) + shown(Polynomial(p).roots()) + "2\n1 " +
                           shown(cut) + "\n");
}

TEST(TransferTest, constructorsTakeCoefficientsPolynomialsOrRoots) {
    Matrix zeros("[-1 0]"), poles("[-2 0;-3 0]");
    Vector numerator(2u, 1.0), denominator(1.0, 3.0, 2.0);
    ProgramRun run = runMain(
        "Vector c(3, 1.0);\n"
        "Polynomial p(c, -1);\n"
        "cout << p << \" \" << Polynomial(3) << endl;\n"
        "Vector n(2, 1.0), d(3, 0.0);\n"
        "d << 1 << 3 << 2;\n"
        "cout << RationalFunction(n, d) << endl;\n"
        "Matrix zeros(1, 2), poles(2, 2);\n"
        "zeros << -1 << 0;\n"
        "poles << -2 << 0 << -3 << 0;\n"
        "RationalFunction R(zeros, poles, 2);\n"
        "cout << R << endl;\n"
        "RationalFunction Rz(zeros, poles, 2, 0.5);\n"
        "Rz.zpk();\n"
        "cout << RationalFunction(4) << endl;");
    EXPECT_EQ(run.message, "");
    EXPECT_EQ(run.out, shown(poly({1, 1, 1}, -1.0)) + " " + shown(Polynomial(3.0)) + "\n" +
                           shown(RationalFunction(numerator, denominator)) + "\n" +
                           shown(RationalFunction(zeros, poles, 2.0, 0.0)) +
                           "\n2 (z + 1) / ((z + 2) (z + 3))\n" + shown(RationalFunction(4.0, 0.0)) + "\n");
}

TEST(TransferTest, conversionsAndOperatorsThatDoNotExistAreRefused) {
    ProgramRun run = runMain(
        "Matrix A(2, 2);\n"
        "Polynomial P(A);\n"
        "RationalFunction R(A);\n"
        "string text = \"s\";\n"
        "RationalFunction T = text;\n"
        "cout << P << \" \" << R << endl;");
    EXPECT_EQ(run.message, "");
    EXPECT_EQ(run.out,
              "Var A of level 101 cannot be converted in a Polynomial\n"
              "Var A of level 101 cannot be converted in a RationalFunction\n"
              "Var text of level 100 cannot be converted in a RationalFunction\n0 " +
                  shown(RationalFunction()) + "\n");
    struct Refusal {
        const char* statement;
        const char* message;
    };
    for (Refusal r :
         {Refusal{"Matrix A(2, 2);\ns + A;", "Cannot do operation + between Polynomial and Matrix"},
          Refusal{"s % 2;", "Cannot do operation % between Polynomial and int"},
          Refusal{"RationalFunction G = 1 / s;\nG < G;",
                  "Cannot do operation < between RationalFunction and RationalFunction"},
          Refusal{"cout << !s;", "Cannot do unary operation ! on Polynomial"}}) {
        SCOPED_TRACE(r.statement);
        ProgramRun refused = runMain(r.statement);
        EXPECT_TRUE(failsWith(refused, std::string("[PARSE ERROR] ") + r.message)) << refused.message;
    }
}

}  // namespace
