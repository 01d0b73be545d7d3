// The process entry: help, a program run on the console, or the window layer for the other modes.
#include <dlfcn.h>

#include <iostream>
#include <string>

#include "algebra/blasthreads.h"
#include "panel/start.h"
#include "quill/startup.h"

namespace {

// The window layer lies beside the executable. It is opened only for the modes that may show a
// window: loading the window system's libraries costs more than a short program's whole run.
int runWindowLayer(int argc, char** argv) {
    std::string path = executableDirectory() + "/libtarnwindows.so";
    void* layer = dlopen(path.c_str(), RTLD_NOW | RTLD_GLOBAL);
    if (!layer) {
        std::cerr << "tarn: the window layer cannot be opened: " << dlerror() << std::endl;
        return 1;
    }
    typedef int (*Entry)(int, char**);
    Entry entry = reinterpret_cast<Entry>(dlsym(layer, "tarnWindowsEntry"));
    if (!entry) {
        std::cerr << "tarn: " << path << " has no entry: " << dlerror() << std::endl;
        return 1;
    }
    return entry(argc, argv);
}

}  // namespace

int main(int argc, char** argv) {
    setArgs(argc, argv);
    if (findFlag("-help")) {
        printUsage(std::cout);
        return 0;
    }
    // A program run from the command line has small matrices and no window: the BLAS's idle
    // workers go.
    if (hasArgument(argc, argv, "-run")) {
        useOneBlasThread();
        return tarnEntry(argc, argv, runFromCommandLine);
    }
    return runWindowLayer(argc, argv);
}
