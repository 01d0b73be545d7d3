// The command-line model of a block diagram: check, build, and write what was asked.
#include "panel/modelcl.h"

#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <iostream>
#include <string>

#include "model/stsem.h"
#include "model/titleicon.h"
#include "quill/quillerr.h"
#include "quill/safefile.h"
#include "quill/startup.h"

namespace {

// The Matlab script of the model into dir/<title>.m.
bool writeMatlabFile(const String& dir, const StateTransSem& sem, const DynOp& model) {
    std::string name = sem.titleIcon() ? sem.titleIcon()->titleName().asCharPointer() : "TITLE";
    std::string path = std::string(dir.asCharPointer()) + "/" + name + ".m";
    String failure = errorTextOf([&] {
        SafeFile file(path.c_str());
        StateTransSem::writeMatlab(file.stream(), model, sem.lastNames());
        file.commit();
    });
    if (failure.size() > 0) {
        std::cerr << "tarn: " << failure.asCharPointer() << std::endl;
        return false;
    }
    std::cout << "Matlab script written in " << path << std::endl;
    return true;
}

bool periodOption(double& period) {
    String text;
    if (!findOption("-discretize", text)) return true;
    char* end = 0;
    period = std::strtod(text.asCharPointer(), &end);
    if (end != text.asCharPointer() && *end == 0 && std::isfinite(period) && period > 0) return true;
    std::cerr << "tarn: option -discretize: \"" << text.asCharPointer() << "\" is not a positive number"
              << std::endl;
    return false;
}

}  // namespace

int runModel(const String& diagramFile) {
    String dynFile, matlabDir;
    bool save = findOption("-dyn", dynFile), matlab = findOption("-matlab", matlabDir);
    bool poles = findFlag("-poles");
    double period = 0.0;
    if (!periodOption(period)) return 1;
    DiagramFile file(diagramFile.asCharPointer());
    StateTransSem* sem = file.semantic();
    if (!sem) {
        std::cerr << "tarn: " << file.message().asCharPointer() << std::endl;
        return 1;
    }
    if (period > 0 && !sem->isContinuous()) {
        std::cerr << "The model is already discrete" << std::endl;
        return 1;
    }
    bool consistent = sem->checkConsistency(true);
    String failure = errorTextOf([&] {
        sem->modelFile = dynFile.asCharPointer();
        std::unique_ptr<DynOp> model = sem->buildSystem(save, false, period);
        std::cout << "Model " << *model << std::endl;
        if (poles) std::cout << "system poles \n" << model->poles() << std::endl;
        if (matlab && !writeMatlabFile(matlabDir, *sem, *model)) consistent = false;
    });
    if (failure.size() > 0) {
        std::cerr << "TarnException : " << failure.asCharPointer() << std::endl;
        return 1;
    }
    return consistent ? 0 : 1;
}
