// Appending to String, char by char and by chunks, beside the same work on std::string.
#include <benchmark/benchmark.h>

#include <string>

#include "quill/quillstr.h"

namespace {

const char CHUNK[] = "0123456789abcdef";  // 16 characters
const int CHUNK_LENGTH = sizeof CHUNK - 1;

// A full String grows by exactly what is appended, so this reallocates at every step.
void BM_StringAppendChar(benchmark::State& state) {
    for (auto _ : state) {
        String s;
        for (int i = 0; i < state.range(0); ++i) s += 'x';
        benchmark::DoNotOptimize(s.asCharPointer());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_StdStringAppendChar(benchmark::State& state) {
    for (auto _ : state) {
        std::string s;
        for (int i = 0; i < state.range(0); ++i) s += 'x';
        benchmark::DoNotOptimize(s.data());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_StringAppendChunk(benchmark::State& state) {
    for (auto _ : state) {
        String s;
        for (int i = 0; i < state.range(0); i += CHUNK_LENGTH) s += CHUNK;
        benchmark::DoNotOptimize(s.asCharPointer());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_StdStringAppendChunk(benchmark::State& state) {
    for (auto _ : state) {
        std::string s;
        for (int i = 0; i < state.range(0); i += CHUNK_LENGTH) s += CHUNK;
        benchmark::DoNotOptimize(s.data());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

// With the room reserved up front the growth rule never runs.
void BM_StringAppendCharReserved(benchmark::State& state) {
    for (auto _ : state) {
        String s("", static_cast<unsigned>(state.range(0)));
        for (int i = 0; i < state.range(0); ++i) s += 'x';
        benchmark::DoNotOptimize(s.asCharPointer());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

}  // namespace

BENCHMARK(BM_StringAppendChar)->RangeMultiplier(10)->Range(1000, 100000);
BENCHMARK(BM_StdStringAppendChar)->RangeMultiplier(10)->Range(1000, 100000);
BENCHMARK(BM_StringAppendChunk)->RangeMultiplier(10)->Range(1000, 100000);
BENCHMARK(BM_StdStringAppendChunk)->RangeMultiplier(10)->Range(1000, 100000);
BENCHMARK(BM_StringAppendCharReserved)->RangeMultiplier(10)->Range(1000, 100000);
