// The command-line design: options into the parameters of the design's phases.
#include "panel/designcl.h"

#include <cstdlib>
#include <iostream>

#include "control/rcdesign.h"
#include "control/workspc.h"
#include "quill/quillstr.h"
#include "quill/startup.h"

namespace {

String textOption(const char* name, const char* fallback) {
    String value;
    return findOption(name, value) ? value : String(fallback);
}

double numberOption(const char* name, double fallback) {
    String value;
    return findOption(name, value) ? std::strtod(value.asCharPointer(), 0) : fallback;
}

DesignParameters parametersFromOptions() {
    DesignParameters p;
    String minimum = textOption("-minimum", "");
    p.lmiMode = minimum == "min H2" ? 1 : minimum == "bound Hinf" ? 2 : minimum == "min Hinf" ? 3 : 0;
    p.gamma = numberOption("-gamma", p.gamma);
    p.iterations = unsigned(numberOption("-iter", p.iterations));
    p.start = !findFlag("-continue");
    p.useH2 = textOption("-gramian", "H2") == "H2";
    p.approaching = textOption("-algorithm", "refining") == "approaching";
    p.tolerance = numberOption("-toll", p.tolerance);
    p.minFreq = numberOption("-minFreq", p.minFreq);
    p.initialFeedback = textOption("-initialFeedback", "pole placement") == "pole placement" ? 1 : 0;
    p.alfa = numberOption("-alfa", p.alfa);
    p.noiseLevel = numberOption("-noiseL", p.noiseLevel);
    return p;
}

bool runPhase(RobustControlDesign& design, DesignParameters p, const char* phase, const char* made) {
    p.choice = phase;
    p.conObs = made;
    std::cout << "--- " << phase << " ---" << std::endl;
    double norm = design.design(p);
    std::cout << phase << ": " << norm << std::endl;
    return norm > 0.0;
}

}  // namespace

int runDesign(const String& modelFile) {
    String phase = textOption("-phase", "all");
    String first = textOption("-first", "Control");
    Workspace::setMatlabDirectory(textOption("-matlab", ".").asCharPointer());
    DesignParameters p = parametersFromOptions(), second = p;
    second.gamma = numberOption("-gamma2", p.gamma);
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
    if (ok && (all || phase == "Final Results")) ok = runPhase(design, p, "Final Results", "");
    return ok ? 0 : 1;
}
