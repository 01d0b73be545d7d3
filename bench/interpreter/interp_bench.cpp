// Interpreted programs of examples/: a million-pass int loop, fib(25) by recursion, and struct
// and array elements in a loop; and those of programs/ that bench/compare/interp.sh times
// against CPython and Lua: a float loop, matrix elements and a method in a loop. Each parsed
// and run, with cout thrown away. The counter peak_rss_kb is the process's peak resident size
// after the runs (getrusage).
#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <fstream>
#include <iostream>
#include <sstream>
#include <string>

#include "interpreter/all.h"
#include "quill/startup.h"

namespace {

void startLibrary() {
    static bool started = false;
    if (started) return;
    started = true;
    static char name[] = "interpreter_bench";
    static char* argv[] = {name, 0};
    quillStart(1, argv, 0);
}

// The examples lie two folders above this source file, the programs next to it.
std::string example(const char* name) {
    std::string here = __FILE__;
    std::string root = here.substr(0, here.rfind("/bench/"));
    std::string path = std::string(name).find('/') == std::string::npos ? root + "/examples/" + name
                                                                        : root + "/bench/interpreter/" + name;
    std::ifstream in(path);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

void runProgram(benchmark::State& state, const char* file) {
    startLibrary();
    std::string source = example(file);
    std::ostringstream sink;
    std::streambuf* old = std::cout.rdbuf(sink.rdbuf());
    for (auto _ : state) {
        CodeParser parser;
        Executer executer(&parser);
        String message = parser.parseText(source.c_str(), 1);
        int stopped = 0;
        if (message.size() == 0) executer.run(message, stopped);
        if (message.size() != 0) state.SkipWithError(message.asCharPointer());
        sink.str("");
    }
    std::cout.rdbuf(old);
    rusage usage;
    getrusage(RUSAGE_SELF, &usage);
    state.counters["peak_rss_kb"] = double(usage.ru_maxrss);
}

void BM_IntLoopMillion(benchmark::State& state) { runProgram(state, "counting.cxx"); }
void BM_RecursiveFib25(benchmark::State& state) { runProgram(state, "fibonacci.cxx"); }
void BM_StructArrayLoop(benchmark::State& state) { runProgram(state, "particles.cxx"); }
void BM_FloatLoopMillion(benchmark::State& state) { runProgram(state, "programs/floatloop.cxx"); }
void BM_MatrixElements(benchmark::State& state) { runProgram(state, "programs/matrix.cxx"); }
void BM_MethodInLoop(benchmark::State& state) { runProgram(state, "programs/method.cxx"); }

BENCHMARK(BM_IntLoopMillion)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RecursiveFib25)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_StructArrayLoop)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FloatLoopMillion)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_MatrixElements)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_MethodInLoop)->Unit(benchmark::kMillisecond);

}  // namespace
