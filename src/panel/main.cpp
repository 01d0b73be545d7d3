// The process entry: help, or the library's start, tarnMain and stop.
#include <iostream>

#include "panel/tarnmain.h"
#include "quill/startup.h"

int main(int argc, char** argv) {
    // Help is answered before the toolkit opens any window.
    setArgs(argc, argv);
    if (findFlag("-help")) {
        printUsage(std::cout);
        return 0;
    }
    return tarnEntry(argc, argv, tarnMain);
}
