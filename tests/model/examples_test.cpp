// The shipped block diagrams: each is drawn here in code, its model compared with the one
// computed by hand, and the file under examples/ must give the same model. With
// TARN_WRITE_EXAMPLES set to a folder the drawings are written there instead of read.
#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>

#include "control/discdyn.h"
#include "control/extsys.h"
#include "diagram.h"

namespace {

const double m1 = 1.0, m2 = 0.5, k = 2.0, c = 0.1;

DynOp mass(double m) {
    Matrix a(2, 2), b(2, 1);
    a(0, 1) = 1.0;
    b(1, 0) = 1.0 / m;
    return DynOp(a, b, Matrix::diagonal(2, 1.0), Matrix(2, 1));
}

// Two masses on a spring and damper, the force u on the first, the second's position measured.
void twoMass(Diagram& d, const char* input = "u") {
    auto& u = d.input(input, 1, 46, 43);
    auto& f1 = d.sum("F1", 50, 43);
    auto& motor = d.block("Motor", mass(m1), 54, 43);
    auto& dx = d.sum("dx", 64, 43);
    Matrix spring(1, 2);
    spring(0, 0) = k;
    spring(0, 1) = c;
    auto& coupling = d.block("Spring", DynOp(spring), 68, 43);
    auto& load = d.block("Load", mass(m2), 78, 43);
    auto& y = d.output("y", 89, 43);
    d.link(u, f1);
    d.link(f1, motor);
    d.link(motor, dx);
    d.link(dx, coupling);
    d.link(coupling, load);
    d.link(coupling, f1, "-", "", "", Diagram::FromBelow);
    d.link(load, dx, "-", "", "", Diagram::FromAbove);
    d.link(load, y, "", "1,1", "position");
}

DynOp twoMassByHand() {
    Matrix a(4, 4), b(4, 1), cy(1, 4);
    a(0, 1) = a(2, 3) = 1.0;
    double row1[] = {-k / m1, -c / m1, k / m1, c / m1}, row3[] = {k / m2, c / m2, -k / m2, -c / m2};
    for (unsigned j = 0; j < 4; ++j) {
        a(1, j) = row1[j];
        a(3, j) = row3[j];
    }
    b(1, 0) = 1.0 / m1;
    cy(0, 2) = 1.0;
    return DynOp(a, b, cy, Matrix(1, 1));
}

// A discrete PI controller around a first-order plant, sampled at 0.1 s.
void discreteLoop(Diagram& d) {
    auto& r = d.input("r", 1, 48, 43);
    auto& e = d.sum("e", 53, 43);
    auto& ctrl = d.block("PI",
                         DiscDynOp(Matrix::diagonal(1, 1.0), Matrix::diagonal(1, 0.1),
                                   Matrix::diagonal(1, 0.5), Matrix::diagonal(1, 2.0), 0.1),
                         58, 43);
    auto& plant = d.block("Plant",
                          DiscDynOp(Matrix::diagonal(1, 0.9), Matrix::diagonal(1, 0.1),
                                    Matrix::diagonal(1, 1.0), Matrix::diagonal(1, 0.0), 0.1),
                          70, 43);
    auto& y = d.output("y", 82, 43);
    d.link(r, e);
    d.link(e, ctrl);
    d.link(ctrl, plant);
    d.link(plant, y);
    d.link(plant, e, "-", "", "", Diagram::FromBelow);
}

DynOp discreteByHand() {
    // x1 the integrator, x2 the plant: u = 0.5 x1 + 2 (r - x2).
    Matrix a(2, 2), b(2, 1), cy(1, 2);
    a(0, 0) = 1.0;
    a(0, 1) = -0.1;
    a(1, 0) = 0.1 * 0.5;
    a(1, 1) = 0.9 - 0.1 * 2.0;
    b(0, 0) = 0.1;
    b(1, 0) = 0.1 * 2.0;
    cy(0, 1) = 1.0;
    return DiscDynOp(a, b, cy, Matrix(1, 1), 0.1);
}

// The two-mass plant as the "Model" of an extended system: a disturbance force d and the control
// u on the first mass, the position and the control weighted by "Wu" as objectives z and e, and
// the measure y with noise n weighted by "Wym"; the title splits disturbances from controls and
// objectives from measures.
void extendedTwoMass(Diagram& d) {
    auto& dist = d.input("d", 1, 46, 40);
    auto& noise = d.input("n", 1, 46, 49);
    auto& u = d.input("u", 1, 46, 44);
    auto& force = d.sum("force", 51, 42);
    auto& model = d.block("Model", twoMassByHand(), 56, 42);
    auto& wym = d.block("Wym", DynOp(Matrix::diagonal(1, 0.01)), 56, 49);
    auto& meas = d.sum("meas", 72, 49);
    auto& wu = d.block("Wu", DynOp(Matrix::diagonal(1, 0.1)), 56, 36);
    auto& z = d.output("z", 86, 42);
    auto& e = d.output("e", 86, 36);
    auto& y = d.output("y", 86, 49);
    d.link(dist, force);
    d.link(u, force);
    d.link(u, wu);
    d.link(wu, e);
    d.link(force, model);
    d.link(model, z);
    d.link(model, meas);
    d.link(noise, wym);
    d.link(wym, meas);
    d.link(meas, y);
    d.title().setInputList("d n, u");
    d.title().setOutputList("z e, y");
}

DynOp extendedByHand() {
    DynOp plant = twoMassByHand();
    Matrix in(1, 3), direct(3, 3), out(3, 1);
    in(0, 0) = in(0, 2) = 1.0;  // d and u push the first mass
    direct(1, 2) = 0.1;         // the weighted control
    direct(2, 1) = 0.01;        // n reaches the measure only
    out(0, 0) = out(2, 0) = 1.0;
    return (out * plant) * in + direct;
}

void checkExample(const char* name, const std::function<void(Diagram&)>& draw, const DynOp& byHand) {
    Diagram d(name);
    draw(d);
    std::string reports;
    std::unique_ptr<DynOp> model = d.build(&reports);
    EXPECT_EQ(reports, "") << name;
    expectSameTransfer(*model, byHand);
    std::string file = std::string(name) + ".bdg";
    if (const char* folder = getenv("TARN_WRITE_EXAMPLES")) {
        d.save((std::string(folder) + "/" + file).c_str());
        return;
    }
    DiagramFile stored((std::string(TARN_EXAMPLES) + "/" + file).c_str());
    ASSERT_NE(stored.semantic(), nullptr) << stored.message().asCharPointer();
    stored.semantic()->checkConsistency(false);
    expectSameTransfer(*stored.semantic()->buildSystem(false, false), byHand);
    EXPECT_EQ(stored.semantic()->lastNames().states, d.semantic().lastNames().states);
}

}  // namespace

TEST(ExamplesTest, ShippedDiagramsGiveTheModelsComputedByHand) {
    checkExample(
        "twomass", [](Diagram& d) { twoMass(d); }, twoMassByHand());
    checkExample("discrete", discreteLoop, discreteByHand());
    checkExample("twomassext", extendedTwoMass, extendedByHand());
}
