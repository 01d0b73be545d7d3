// The sweep: grid samples by an odometer over the parameters, then the seeded random samples
// of the expression layer's generator; each closed loop's certified H-infinity norm.
#include "control/sweep.h"

#include <cmath>
#include <ostream>

namespace {

class Sweeper {
public:
    Sweeper(const UncertainModel& model, const DynOp& compensator, SweepReport& report)
        : model(model), compensator(compensator), report(report) {}

    void take(const std::vector<double>& values) {
        std::unique_ptr<DynOp> plant = model.at(values);
        SweepSample s{values, plant->inTimeDomain(plant->closedLoop(compensator))->certifiedNormHinf()};
        bool stable = std::isfinite(s.norm.lower);
        if (!stable && report.unstable++ == 0) report.firstUnstable = s;
        if (report.gridCount + report.randomCount == 0 || !(s.norm.lower <= report.worst.norm.lower))
            report.worst = s;
    }

private:
    const UncertainModel& model;
    const DynOp& compensator;
    SweepReport& report;
};

std::string counted(unsigned n, const char* word) {
    return std::to_string(n) + " " + word + (n == 1 ? "" : "s");
}

double gridPoint(const VariableS& v, unsigned i, unsigned points) {
    if (points == 1) return v.nominalValue();
    return v.lowBound() + (double(v.highBound()) - v.lowBound()) * i / (points - 1);
}

}  // namespace

bool sweepModel(const UncertainModel& model, const DynOp& compensator, const SweepOptions& options,
                SweepReport& report, std::string& error) {
    const std::vector<VariableS>& p = model.parameters();
    double total = std::pow(double(options.grid), double(p.size()));
    if (total > maxGridSamples) {
        error = "a grid of " + std::to_string(options.grid) + " points on " + std::to_string(p.size()) +
                " parameters is above " + std::to_string(maxGridSamples) + " samples: take fewer points";
        return false;
    }
    std::vector<double> nominal;
    for (const VariableS& v : p) nominal.push_back(v.nominalValue());
    std::unique_ptr<DynOp> plant = model.at(nominal);
    unsigned inputs = compensator.inputNumber() - compensator.controlNumber(),
             outputs = compensator.outputNumber() - compensator.measureNumber();
    if (inputs != plant->measureNumber() || outputs != plant->controlNumber()) {
        error = "the compensator takes " + counted(inputs, "measure") + " and gives " +
                counted(outputs, "control") + "; the plant gives " +
                counted(plant->measureNumber(), "measure") + " and takes " +
                counted(plant->controlNumber(), "control");
        return false;
    }
    report = SweepReport();
    for (const VariableS& v : p) report.names.push_back(v.getName().asCharPointer());
    Sweeper sweeper(model, compensator, report);
    std::vector<unsigned> index(p.size(), 0);
    std::vector<double> values(p.size());
    for (unsigned k = 0; options.grid > 0 && k < unsigned(total); ++k) {
        for (unsigned i = 0; i < p.size(); ++i) values[i] = gridPoint(p[i], index[i], options.grid);
        sweeper.take(values);
        ++report.gridCount;
        for (unsigned i = 0; i < p.size() && ++index[i] == options.grid; ++i) index[i] = 0;
    }
    RandomLinear source = ExpressionS::sampleSource();
    std::vector<VariableS> drawn = p;
    for (unsigned k = 0; k < options.samples; ++k) {
        for (unsigned i = 0; i < drawn.size(); ++i) {
            drawn[i].sample(source);
            values[i] = drawn[i].currentValue();
        }
        sweeper.take(values);
        ++report.randomCount;
    }
    return true;
}

namespace {

void printValues(std::ostream& os, const SweepReport& r, const SweepSample& s) {
    for (unsigned i = 0; i < r.names.size(); ++i) os << (i ? ", " : "") << r.names[i] << " = " << s.values[i];
}

}  // namespace

void printSweep(std::ostream& os, const SweepReport& r) {
    unsigned count = r.gridCount + r.randomCount;
    os << "sweep of " << r.names.size() << " uncertain parameter" << (r.names.size() == 1 ? "" : "s") << ": "
       << r.gridCount << " grid samples and " << r.randomCount << " random samples" << std::endl;
    if (count == 0) return;
    os << "worst case: certified H-infinite norm of the closed loop = " << r.worst.norm << ", at ";
    printValues(os, r, r.worst);
    os << std::endl;
    if (r.unstable == 0) {
        os << "all " << count << " closed loops are stable" << std::endl;
        return;
    }
    os << r.unstable << " of " << count << " closed loops are unstable, the first at ";
    printValues(os, r, r.firstUnstable);
    os << std::endl;
}
