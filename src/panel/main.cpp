// The process entry: help, or the library's start, tarnMain and stop.
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
    // A program run from the command line has small matrices; the BLAS's idle workers
    // go before the toolkit starts.
    if (hasWord(argc, argv, "-run")) useOneBlasThread();
    return tarnEntry(argc, argv, tarnMain);
}
