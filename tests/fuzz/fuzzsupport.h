// Shared by the fuzz harnesses, their drivers and the damaged-stream tests:
// the library's start, stored forms of seed objects, and the damage of a text.
#ifndef TESTS_FUZZ_FUZZSUPPORT_H
#define TESTS_FUZZ_FUZZSUPPORT_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <random>
#include <string>
#include <vector>

class Object;

// The harness entry; the corpus replay links every harness under a name of its own.
#ifndef FUZZ_ENTRY
#define FUZZ_ENTRY LLVMFuzzerTestOneInput

// Runs run with the first allocation failing, then the second, and so on
// until a run makes no more allocations than the one that would fail; after
// each run, with allocations working again, check(failed) tells whether an
// allocation failed. Answers the number of runs in which one failed.
int failEachAllocation(const std::function<void()>& run, const std::function<void(bool failed)>& check);

#endif
extern "C" int FUZZ_ENTRY(const uint8_t* data, size_t size);
#define DEFINE_FUZZ_ENTRY extern "C" int FUZZ_ENTRY(const uint8_t* data, size_t size)

// Starts the library once, without its signal handlers, so that a fault ends
// the process where the fuzzer and the sanitizers see it, and silences cout and cerr.
void startFuzzedLibrary();

// Runs op, which must leave nothing allocated: tables that the library makes
// on first use stay, so a run that leaves bytes is run again, and the fault
// is a second run that leaves bytes too.
void expectNothingLeft(const std::function<void()>& op);

// The bytes of a file; empty when it cannot be read.
std::string readFile(const std::string& path);

// The text form of ob, or "" when its class refuses storing; likewise the binary form.
std::string textOf(const Object& ob);
std::string binaryOf(const Object& ob);

// A model-like graph: collections of strings and numbers with shared members and a cycle.
Object* richGraph();
// A default instance of every class that can be made, and the graph; the
// caller deep-deletes them.
std::vector<Object*> seedObjects();

// One damage of s chosen by rng: a byte changed, cut short, a number out of
// range, an unknown class, a bad reference, bytes inserted or a range removed.
std::string mutate(const std::string& s, std::mt19937& rng);


// Runs run with the first allocation failing, then the second, and so on
// until a run makes no more allocations than the one that would fail; after
// each run, with allocations working again, check(failed) tells whether an
// allocation failed. Answers the number of runs in which one failed.
int failEachAllocation(const std::function<void()>& run, const std::function<void(bool failed)>& check);

#endif
