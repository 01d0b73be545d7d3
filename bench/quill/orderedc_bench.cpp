// OrderedCltn add, indexOf and remove on Integers, beside the same work on std::vector<Integer*>.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <vector>

#include "quill/integer.h"
#include "quill/orderedc.h"

namespace {

const int PROBES = 100;  // look-ups and removals per iteration, spread over the collection

// n Integers 0..n-1, kept alive for the whole benchmark.
class Elements {
public:
    explicit Elements(int n) {
        for (int i = 0; i < n; ++i) items.push_back(new Integer(i));
    }
    ~Elements() {
        for (Integer* i : items) delete i;
    }
    std::vector<Integer*> items;
};

// The positions that the probes look at: evenly spread, front to back.
std::vector<int> probePositions(int n) {
    std::vector<int> at;
    for (int k = 0; k < PROBES; ++k) at.push_back(int((long(k) * n) / PROBES + n / (2 * PROBES)));
    return at;
}

bool sameValue(const Integer* a, const Object& b) { return a->isEqual(b); }

// From capacity 16: the collection grows by 32 at each filling.
void BM_OrderedCltnAdd(benchmark::State& state) {
    Elements e(int(state.range(0)));
    for (auto _ : state) {
        OrderedCltn c;
        for (Integer* i : e.items) c.add(*i);
        benchmark::DoNotOptimize(c.size());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_VectorAdd(benchmark::State& state) {
    Elements e(int(state.range(0)));
    for (auto _ : state) {
        std::vector<Integer*> v;
        for (Integer* i : e.items) v.push_back(i);
        benchmark::DoNotOptimize(v.data());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

// Look-ups by equality with a distinct Integer of the same value.
void BM_OrderedCltnIndexOf(benchmark::State& state) {
    int n = int(state.range(0));
    Elements e(n);
    OrderedCltn c(n);
    for (Integer* i : e.items) c.add(*i);
    std::vector<int> at = probePositions(n);
    for (auto _ : state) {
        for (int p : at) {
            Integer key(p);
            benchmark::DoNotOptimize(c.indexOf(key));
        }
    }
    state.SetItemsProcessed(state.iterations() * PROBES);
}

void BM_VectorIndexOf(benchmark::State& state) {
    int n = int(state.range(0));
    Elements e(n);
    std::vector<Integer*> v(e.items);
    std::vector<int> at = probePositions(n);
    for (auto _ : state) {
        for (int p : at) {
            Integer key(p);
            auto found = std::find_if(v.begin(), v.end(), [&](Integer* i) { return sameValue(i, key); });
            benchmark::DoNotOptimize(found);
        }
    }
    state.SetItemsProcessed(state.iterations() * PROBES);
}

// Removal by equality of PROBES elements, back to front; they are put back
// outside the timing.
void BM_OrderedCltnRemove(benchmark::State& state) {
    int n = int(state.range(0));
    Elements e(n);
    OrderedCltn c(n);
    for (Integer* i : e.items) c.add(*i);
    std::vector<int> at = probePositions(n);
    for (auto _ : state) {
        for (auto p = at.rbegin(); p != at.rend(); ++p) {
            Integer key(*p);
            benchmark::DoNotOptimize(c.remove(key));
        }
        state.PauseTiming();
        for (int p : at) c.addAtIndex(p, *e.items[p]);
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * PROBES);
}

void BM_VectorRemove(benchmark::State& state) {
    int n = int(state.range(0));
    Elements e(n);
    std::vector<Integer*> v(e.items);
    std::vector<int> at = probePositions(n);
    for (auto _ : state) {
        for (auto p = at.rbegin(); p != at.rend(); ++p) {
            Integer key(*p);
            auto found = std::find_if(v.begin(), v.end(), [&](Integer* i) { return sameValue(i, key); });
            v.erase(found);
        }
        state.PauseTiming();
        for (int p : at) v.insert(v.begin() + p, e.items[p]);
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * PROBES);
}

}  // namespace

BENCHMARK(BM_OrderedCltnAdd)->RangeMultiplier(10)->Range(1000, 100000);
BENCHMARK(BM_VectorAdd)->RangeMultiplier(10)->Range(1000, 100000);
BENCHMARK(BM_OrderedCltnIndexOf)->RangeMultiplier(10)->Range(1000, 100000);
BENCHMARK(BM_VectorIndexOf)->RangeMultiplier(10)->Range(1000, 100000);
BENCHMARK(BM_OrderedCltnRemove)->RangeMultiplier(10)->Range(1000, 100000);
BENCHMARK(BM_VectorRemove)->RangeMultiplier(10)->Range(1000, 100000);
