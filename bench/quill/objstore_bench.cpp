// Object streams: writing and reading a model-like graph of 10^5 objects, text and binary.
#include <benchmark/benchmark.h>

#include <sstream>
#include <string>

#include "../benchlib.h"
#include "quill/all.h"
#include "quill/objio.h"

namespace {

const int OBJECTS = 100000;

// About OBJECTS objects: collections of ten holding strings and numbers, one
// in five of the numbers shared with the collection before.
OrderedCltn* makeGraph() {
    OrderedCltn* root = new OrderedCltn;
    Integer* shared = new Integer(0);
    for (int made = 1; made < OBJECTS; made += 11) {
        OrderedCltn* group = new OrderedCltn(10);
        for (int i = 0; i < 10; ++i) {
            if (i % 5 == 0)
                group->add(*shared);
            else if (i % 2)
                group->add(*new String(formatText("element %d of a model", made + i)));
            else
                group->add(*new Integer(made + i));
        }
        shared = new Integer(made);
        group->add(*shared);
        root->add(*group);
    }
    return root;
}

OrderedCltn* graph() {
    startLibrary();
    static OrderedCltn* g = makeGraph();
    return g;
}

void report(benchmark::State& state, size_t bytes) {
    state.counters["objects/s"] =
        benchmark::Counter(double(OBJECTS) * state.iterations(), benchmark::Counter::kIsRate);
    state.counters["MB/s"] =
        benchmark::Counter(double(bytes) * state.iterations() / 1e6, benchmark::Counter::kIsRate);
}

void BM_StoreText(benchmark::State& state) {
    OrderedCltn* g = graph();
    size_t bytes = 0;
    for (auto _ : state) {
        std::ostringstream os;
        storeObject(os, *g);
        bytes = os.str().size();
    }
    report(state, bytes);
}

void BM_ReadText(benchmark::State& state) {
    std::ostringstream os;
    storeObject(os, *graph());
    std::string text = os.str();
    for (auto _ : state) {
        std::istringstream is(text);
        Object* ob = readFrom(is);
        state.PauseTiming();
        deepDelete(ob);
        state.ResumeTiming();
    }
    report(state, text.size());
}

void BM_StoreBinary(benchmark::State& state) {
    OrderedCltn* g = graph();
    size_t bytes = 0;
    for (auto _ : state) {
        std::ostringstream os;
        BinOstream bos(os);
        storeObject(bos, *g);
        bytes = os.str().size();
    }
    report(state, bytes);
}

void BM_ReadBinary(benchmark::State& state) {
    std::ostringstream os;
    BinOstream bos(os);
    storeObject(bos, *graph());
    std::string bytes = os.str();
    for (auto _ : state) {
        std::istringstream is(bytes);
        BinIstream bis(is);
        Object* ob = readFrom(bis);
        state.PauseTiming();
        deepDelete(ob);
        state.ResumeTiming();
    }
    report(state, bytes.size());
}

BENCHMARK(BM_StoreText)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadText)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_StoreBinary)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadBinary)->Unit(benchmark::kMillisecond);

}  // namespace
