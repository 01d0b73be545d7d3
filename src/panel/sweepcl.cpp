// tarn -sweep: the plant and the compensator from their model files, the parameters from theirs.
#include "panel/sweepcl.h"

#include <iostream>
#include <memory>

#include "control/sweep.h"
#include "control/workspc.h"
#include "panel/cloption.h"
#include "quill/startup.h"

namespace {

// The system a model file holds, or null after the line that says why.
std::unique_ptr<DynOp> systemOf(const char* fileName) {
    Object* read = Workspace::readModelFile(fileName);
    if (read && read->isKindOf(class_DynOp)) return std::unique_ptr<DynOp>(static_cast<DynOp*>(read));
    std::cerr << "tarn: " << fileName << " holds no system" << std::endl;
    delete read;
    return nullptr;
}

}  // namespace

int runSweep(const String& modelFile) {
    double grid = 5, samples = 100;
    if (!numberOption("-grid", grid, Range{1.0, true, 1000.0, true}) ||
        !numberOption("-samples", samples, Range{0.0, true, 1e6, true}))
        return 1;
    if (Argc != 3) {
        std::cerr << "tarn: usage: tarn -sweep model.dyn control.dyn params.txt [-grid n] [-samples n]"
                  << std::endl;
        return 1;
    }
    std::unique_ptr<DynOp> plant = systemOf(modelFile.asCharPointer()), compensator = systemOf(Argv[1]);
    if (!plant || !compensator) return 1;
    UncertainModel model;
    SweepReport report;
    std::string error;
    SweepOptions options{unsigned(grid), unsigned(samples)};
    if (!UncertainModel::read(Argv[2], *plant, model, error) ||
        !sweepModel(model, *compensator, options, report, error)) {
        std::cerr << "tarn: " << error << std::endl;
        return 1;
    }
    printSweep(std::cout, report);
    return report.unstable == 0 ? 0 : 1;
}
