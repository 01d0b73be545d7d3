// The library start shared by the benchmark programs: once, before the first benchmark needs it.
#ifndef BENCH_BENCHLIB_H
#define BENCH_BENCHLIB_H

#include "quill/startup.h"

inline void startLibrary() {
    static bool started = false;
    if (started) return;
    started = true;
    static char name[] = "tarn_bench";
    static char* argv[] = {name, 0};
    quillStart(1, argv, 0);
}

#endif
