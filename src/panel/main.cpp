// The process entry: help, or the library's start, tarnMain and stop.
#include <cstdlib>
#include <cstring>
#include <iostream>

#include "algebra/blasthreads.h"
#include "panel/tarnmain.h"
#include "quill/startup.h"

namespace {

bool hasWord(int argc, char** argv, const char* word) {
    for (int i = 1; i < argc; ++i)
        if (std::strcmp(argv[i], word) == 0) return true;
    return false;
}

}  // namespace

int main(int argc, char** argv) {
    // Help is answered before the toolkit opens any window.
    setArgs(argc, argv);
    if (findFlag("-help")) {
        printUsage(std::cout);
        return 0;
    }
    // A program run from the command line has small matrices and no window: the BLAS's idle
    // workers go, and the toolkit, whose start costs more than a short program, never starts.
    // The other modes without windows keep the toolkit for their dialogues but open no display,
    // so that nothing waits on the screen after them.
    if (hasWord(argc, argv, "-run")) {
        useOneBlasThread();
        toolkitInitHook = toolkitTermHook = 0;
    } else if (hasWord(argc, argv, "-design") || hasWord(argc, argv, "-model") ||
               hasWord(argc, argv, "-sweep") || hasWord(argc, argv, "-document")) {
        setenv("QT_QPA_PLATFORM", "offscreen", 1);
    }
    return tarnEntry(argc, argv, tarnMain);
}
