// Set and Dictionary against std::unordered_set and std::unordered_map: add, find, remove.
//
// Set holds Integer objects and is probed with distinct equal Integers, so
// each step pays for the virtual hash and isEqual; std::unordered_set<int>
// holds the numbers themselves. Dictionary maps Integer or String keys to
// Integer values, probed with distinct equal keys; std::unordered_map maps
// int or std::string to int. Sizes 10^3, 10^4 and 10^5 elements.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "quill/all.h"

namespace {

// Distinct numbers spread over the int range, the same in every run.
std::vector<int> numbers(int n) {
    std::vector<int> v;
    v.reserve(n);
    unsigned x = 12345;
    for (int i = 0; i < n; ++i) {
        x = x * 1103515245u + 12345u;
        v.push_back(int(x));  // distinct: the generator has full period
    }
    return v;
}

std::vector<std::string> words(int n) {
    std::vector<std::string> v;
    v.reserve(n);
    for (int i = 0; i < n; ++i) v.push_back("signal_" + std::to_string(i * 7919));
    return v;
}

// Two object copies of each number: the elements and the probes.
struct IntegerData {
    explicit IntegerData(int n) {
        for (int v : numbers(n)) {
            elements.emplace_back(new Integer(v));
            probes.emplace_back(new Integer(v));
        }
    }
    std::vector<std::unique_ptr<Integer>> elements, probes;
};

// Keys of the dictionaries: Integer objects beside int, String objects
// beside std::string. Each key has an equal twin to probe with.
struct IntegerKeys {
    typedef int Std;
    static std::vector<Std> make(int n) { return numbers(n); }
    static Object* object(int k) { return new Integer(k); }
};

struct StringKeys {
    typedef std::string Std;
    static std::vector<Std> make(int n) { return words(n); }
    static Object* object(const std::string& k) { return new String(k.c_str()); }
};

template <typename Keys>
struct DictData {
    explicit DictData(int n) : std(Keys::make(n)) {
        for (const typename Keys::Std& k : std) {
            keys.emplace_back(Keys::object(k));
            probes.emplace_back(Keys::object(k));
            values.emplace_back(new Integer(int(values.size())));
        }
    }
    std::vector<typename Keys::Std> std;
    std::vector<std::unique_ptr<Object>> keys, probes, values;
};

void fill(Set& s, const IntegerData& data) {
    for (auto& e : data.elements) s.add(*e);
}

template <typename Keys>
void fill(Dictionary& d, const DictData<Keys>& data) {
    for (size_t i = 0; i < data.keys.size(); ++i) d.atPut(*data.keys[i], *data.values[i]);
}

// Set

void BM_SetAdd(benchmark::State& state) {
    IntegerData data(int(state.range(0)));
    for (auto _ : state) {
        Set s;
        fill(s, data);
        benchmark::DoNotOptimize(s.size());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_SetFind(benchmark::State& state) {
    IntegerData data(int(state.range(0)));
    Set s;
    fill(s, data);
    for (auto _ : state)
        for (auto& p : data.probes) benchmark::DoNotOptimize(s.find(*p));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_SetRemove(benchmark::State& state) {
    IntegerData data(int(state.range(0)));
    for (auto _ : state) {
        state.PauseTiming();
        Set s;
        fill(s, data);
        state.ResumeTiming();
        for (auto& p : data.probes) benchmark::DoNotOptimize(s.remove(*p));
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_StdUnorderedSetAdd(benchmark::State& state) {
    std::vector<int> v = numbers(int(state.range(0)));
    for (auto _ : state) {
        std::unordered_set<int> s;
        for (int x : v) s.insert(x);
        benchmark::DoNotOptimize(s.size());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_StdUnorderedSetFind(benchmark::State& state) {
    std::vector<int> v = numbers(int(state.range(0)));
    std::unordered_set<int> s(v.begin(), v.end());
    for (auto _ : state)
        for (int x : v) benchmark::DoNotOptimize(s.find(x));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_StdUnorderedSetRemove(benchmark::State& state) {
    std::vector<int> v = numbers(int(state.range(0)));
    for (auto _ : state) {
        state.PauseTiming();
        std::unordered_set<int> s(v.begin(), v.end());
        state.ResumeTiming();
        for (int x : v) benchmark::DoNotOptimize(s.erase(x));
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

// Dictionary

template <typename Keys>
void BM_DictionaryAdd(benchmark::State& state) {
    DictData<Keys> data(int(state.range(0)));
    for (auto _ : state) {
        Dictionary d;
        fill(d, data);
        benchmark::DoNotOptimize(d.size());
        state.PauseTiming();
        d.deleteContents();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <typename Keys>
void BM_DictionaryFind(benchmark::State& state) {
    DictData<Keys> data(int(state.range(0)));
    Dictionary d;
    fill(d, data);
    for (auto _ : state)
        for (auto& p : data.probes) benchmark::DoNotOptimize(d.atKey(*p));
    state.SetItemsProcessed(state.iterations() * state.range(0));
    d.deleteContents();
}

template <typename Keys>
void BM_DictionaryRemove(benchmark::State& state) {
    DictData<Keys> data(int(state.range(0)));
    for (auto _ : state) {
        state.PauseTiming();
        Dictionary d;
        fill(d, data);
        state.ResumeTiming();
        for (auto& p : data.probes) delete d.removeKey(*p);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <typename Keys>
void BM_StdUnorderedMapAdd(benchmark::State& state) {
    std::vector<typename Keys::Std> keys = Keys::make(int(state.range(0)));
    for (auto _ : state) {
        std::unordered_map<typename Keys::Std, int> m;
        for (size_t i = 0; i < keys.size(); ++i) m.emplace(keys[i], int(i));
        benchmark::DoNotOptimize(m.size());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <typename Keys>
void BM_StdUnorderedMapFind(benchmark::State& state) {
    std::vector<typename Keys::Std> keys = Keys::make(int(state.range(0)));
    std::unordered_map<typename Keys::Std, int> m;
    for (size_t i = 0; i < keys.size(); ++i) m.emplace(keys[i], int(i));
    std::vector<typename Keys::Std> probes = keys;
    for (auto _ : state)
        for (const typename Keys::Std& p : probes) benchmark::DoNotOptimize(m.at(p));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <typename Keys>
void BM_StdUnorderedMapRemove(benchmark::State& state) {
    std::vector<typename Keys::Std> keys = Keys::make(int(state.range(0)));
    for (auto _ : state) {
        state.PauseTiming();
        std::unordered_map<typename Keys::Std, int> m;
        for (size_t i = 0; i < keys.size(); ++i) m.emplace(keys[i], int(i));
        state.ResumeTiming();
        for (const typename Keys::Std& k : keys) benchmark::DoNotOptimize(m.erase(k));
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

}  // namespace

#define SIZES RangeMultiplier(10)->Range(1000, 100000)
// String hashes are folded modulo 51751, so past some tens of thousands of
// keys the start indices crowd together and the probe chains merge into one
// long run: at 10^5 String keys a look-up walks thousands of slots. The
// String runs stop at 10^4; the Integer runs show the table itself.
#define STRING_SIZES RangeMultiplier(10)->Range(1000, 10000)

BENCHMARK(BM_SetAdd)->SIZES;
BENCHMARK(BM_StdUnorderedSetAdd)->SIZES;
BENCHMARK(BM_SetFind)->SIZES;
BENCHMARK(BM_StdUnorderedSetFind)->SIZES;
BENCHMARK(BM_SetRemove)->SIZES;
BENCHMARK(BM_StdUnorderedSetRemove)->SIZES;
BENCHMARK_TEMPLATE(BM_DictionaryAdd, IntegerKeys)->SIZES;
BENCHMARK_TEMPLATE(BM_StdUnorderedMapAdd, IntegerKeys)->SIZES;
BENCHMARK_TEMPLATE(BM_DictionaryFind, IntegerKeys)->SIZES;
BENCHMARK_TEMPLATE(BM_StdUnorderedMapFind, IntegerKeys)->SIZES;
BENCHMARK_TEMPLATE(BM_DictionaryRemove, IntegerKeys)->SIZES;
BENCHMARK_TEMPLATE(BM_StdUnorderedMapRemove, IntegerKeys)->SIZES;
BENCHMARK_TEMPLATE(BM_DictionaryAdd, StringKeys)->STRING_SIZES;
BENCHMARK_TEMPLATE(BM_StdUnorderedMapAdd, StringKeys)->STRING_SIZES;
BENCHMARK_TEMPLATE(BM_DictionaryFind, StringKeys)->STRING_SIZES;
BENCHMARK_TEMPLATE(BM_StdUnorderedMapFind, StringKeys)->STRING_SIZES;
BENCHMARK_TEMPLATE(BM_DictionaryRemove, StringKeys)->STRING_SIZES;
BENCHMARK_TEMPLATE(BM_StdUnorderedMapRemove, StringKeys)->STRING_SIZES;
