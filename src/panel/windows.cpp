// The entry of the window layer, which the executable opens for every mode but -run.
#include <cstdlib>

#include "panel/tarnmain.h"
#include "quill/startup.h"

// The modes without windows keep the toolkit for their dialogues but open no display, so that
// nothing waits on the screen after them.
extern "C" int tarnWindowsEntry(int argc, char** argv) {
    if (hasArgument(argc, argv, "-design") || hasArgument(argc, argv, "-model") ||
        hasArgument(argc, argv, "-sweep") || hasArgument(argc, argv, "-document"))
        setenv("QT_QPA_PLATFORM", "offscreen", 1);
    return tarnEntry(argc, argv, tarnMain);
}
