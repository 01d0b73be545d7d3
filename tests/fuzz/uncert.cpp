// Harness of the parameter file of an uncertain model: the text is read against a fixed plant of
// two states, and a model that reads is evaluated at the middle of its ranges.
#include "control/uncert.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

#include "fuzzsupport.h"
#include "quill/all.h"

DEFINE_FUZZ_ENTRY {
    startFuzzedLibrary();
    static std::string file;
    if (file.empty()) {
        const char* dir = getenv("TMPDIR");
        file = std::string(dir && *dir ? dir : "/tmp") + "/tarn-fuzz-" + std::to_string(getpid()) + ".txt";
        atexit([] { std::remove(file.c_str()); });
    }
    std::ofstream(file, std::ios::binary | std::ios::trunc)
        .write(reinterpret_cast<const char*>(data), std::streamsize(size));
    DynOp plant(Matrix("[0 1; -1 -0.1]"), Matrix("[0 0; 1 1]"), Matrix("[1 0; 0 1]"), Matrix("[0 0; 0 0]"), 1,
                1);
    UncertainModel model;
    std::string error;
    if (!UncertainModel::read(file.c_str(), plant, model, error)) {
        if (error.empty()) abort();  // a refusal always says why
        return 0;
    }
    std::vector<double> middle;
    for (const VariableS& p : model.parameters())
        middle.push_back(0.5 * (double(p.lowBound()) + p.highBound()));
    std::unique_ptr<DynOp> at = model.at(middle);
    if (!at || at->order() != plant.order()) abort();
    return 0;
}
