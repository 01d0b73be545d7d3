// The command-line design: options into the parameters of the design's phases.
#include "panel/designcl.h"

#include <cmath>
#include <cstdlib>
#include <iostream>
#include <sstream>
#include <string>

#include "control/rcdesign.h"
#include "control/workspc.h"
#include "quill/quillstr.h"
#include "quill/startup.h"

namespace {

String textOption(const char* name, const char* fallback) {
    String value;
    return findOption(name, value) ? value : String(fallback);
}

// The admissible values of a numeric option: above low (or from it, when closed), up to high.
struct Range {
    double low;
    bool closed;
    double high;
    bool integer;
};

const Range positive = {0.0, false, HUGE_VAL, false};
const Range notNegative = {0.0, true, HUGE_VAL, false};
const Range unitStep = {0.0, false, 1.0, false};
const Range count = {1.0, true, 1e6, true};

bool inRange(double x, const Range& r) {
    return (r.closed ? x >= r.low : x > r.low) && x <= r.high && (!r.integer || x == std::floor(x));
}

std::string rangeText(const Range& r) {
    std::ostringstream os;
    os.precision(15);
    os << (r.integer ? "an integer " : "a number ") << (r.closed ? "from " : "above ") << r.low;
    if (r.high < HUGE_VAL) os << (r.closed ? " to " : " up to ") << r.high;
    return os.str();
}

// The option's value into value when it is given; false after the line that names the option,
// when it is not a number or lies outside range.
bool numberOption(const char* name, double& value, const Range& range) {
    String text;
    if (!findOption(name, text)) return true;
    const char* start = text.asCharPointer();
    char* end = 0;
    double x = std::strtod(start, &end);
    if (end == start || *end != '\0' || !std::isfinite(x)) {
        std::cerr << "tarn: option " << name << ": \"" << start << "\" is not a number" << std::endl;
        return false;
    }
    if (!inRange(x, range)) {
        std::cerr << "tarn: option " << name << ": " << start << " is out of range, it must be "
                  << rangeText(range) << std::endl;
        return false;
    }
    value = x;
    return true;
}

// The panel's parameters from the options; false when one of them is refused.
bool parametersFromOptions(DesignParameters& p, double& gamma2) {
    String minimum = textOption("-minimum", "");
    p.lmiMode = minimum == "min H2" ? 1 : minimum == "bound Hinf" ? 2 : minimum == "min Hinf" ? 3 : 0;
    double iterations = p.iterations;
    bool ok = numberOption("-gamma", p.gamma, positive) && numberOption("-iter", iterations, count) &&
              numberOption("-toll", p.tolerance, positive) && numberOption("-minFreq", p.minFreq, positive) &&
              numberOption("-alfa", p.alfa, unitStep) && numberOption("-noiseL", p.noiseLevel, notNegative);
    gamma2 = p.gamma;
    ok = ok && numberOption("-gamma2", gamma2, positive);
    p.iterations = unsigned(iterations);
    p.start = !findFlag("-continue");
    p.useH2 = textOption("-gramian", "H2") == "H2";
    p.approaching = textOption("-algorithm", "refining") == "approaching";
    p.initialFeedback = textOption("-initialFeedback", "pole placement") == "pole placement" ? 1 : 0;
    return ok;
}

// An H-infinity phase must reach its bound; a norm above it fails the phase.
bool runPhase(RobustControlDesign& design, DesignParameters p, const char* phase, const char* made) {
    p.choice = phase;
    p.conObs = made;
    std::cout << "--- " << phase << " ---" << std::endl;
    double norm = design.design(p);
    std::cout << phase << ": " << norm << std::endl;
    if (norm <= 0.0) return false;
    if (p.useH2 || *made == '\0' || norm <= p.gamma) return true;
    std::cerr << "tarn: " << phase << " reached the H-infinite norm " << norm << ", above its bound "
              << p.gamma << std::endl;
    return false;
}

// The closed loop of the final results must be stable and, for an H-infinity design, within
// the first bound by its certified norm.
bool closedLoopHolds(const RobustControlDesign& design, const DesignParameters& p) {
    const HinfNorm& loop = design.closedLoopNorm();
    if (!std::isfinite(loop.lower)) {
        std::cerr << "tarn: the closed loop is unstable" << std::endl;
        return false;
    }
    if (p.useH2 || loop.lower <= p.gamma) return true;
    std::cerr << "tarn: the closed loop's H-infinite norm " << loop.lower << " is above the bound " << p.gamma
              << std::endl;
    return false;
}

}  // namespace

int runDesign(const String& modelFile) {
    String phase = textOption("-phase", "all");
    String first = textOption("-first", "Control");
    Workspace::setMatlabDirectory(textOption("-matlab", ".").asCharPointer());
    DesignParameters p;
    double gamma2 = 0.0;
    if (!parametersFromOptions(p, gamma2)) return 1;
    DesignParameters second = p;
    second.gamma = gamma2;
    bool all = phase == "all";
    if (!(all || phase == "Step 1" || phase == "Step 2" || phase == "Final Results")) {
        std::cerr << "tarn: unknown design phase \"" << phase.asCharPointer() << "\"" << std::endl;
        return 1;
    }
    const char* other = first == "Observer" ? "Control" : "Observer";
    RobustControlDesign design;
    design.setModelFileName(modelFile.asCharPointer());
    bool ok = true;
    if (all || phase == "Step 1") ok = runPhase(design, p, "Step 1", first.asCharPointer());
    if (ok && (all || phase == "Step 2")) ok = runPhase(design, second, "Step 2", other);
    if (ok && (all || phase == "Final Results"))
        ok = runPhase(design, p, "Final Results", "") && closedLoopHolds(design, p);
    return ok ? 0 : 1;
}
