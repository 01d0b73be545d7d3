// Replays the kept corpus of every harness: each case runs through its entry
// as the fuzzers ran it, and must end without a fault.
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <string>

#include "fuzzsupport.h"

// Every harness, each under the name that the test build gives its entry.

extern "C" int fuzzObjstream(const uint8_t* data, size_t size);
extern "C" int fuzzModel(const uint8_t* data, size_t size);
extern "C" int fuzzParser(const uint8_t* data, size_t size);
extern "C" int fuzzExecuter(const uint8_t* data, size_t size);
extern "C" int fuzzUncert(const uint8_t* data, size_t size);

namespace {

void replay(const char* harness, int (*entry)(const uint8_t*, size_t)) {
    int cases = 0;
    for (const auto& file :
         std::filesystem::directory_iterator(std::string(TARN_FUZZ_CORPUS) + "/" + harness)) {
        std::string input = readFile(file.path());
        SCOPED_TRACE(file.path().string());
        entry(reinterpret_cast<const uint8_t*>(input.data()), input.size());
        ++cases;
    }
    EXPECT_GT(cases, 0) << harness;
}

TEST(FuzzCorpusTest, objectStreams) { replay("objstream", fuzzObjstream); }
TEST(FuzzCorpusTest, matrixAndModelFiles) { replay("model", fuzzModel); }
TEST(FuzzCorpusTest, scannerAndParser) { replay("parser", fuzzParser); }
TEST(FuzzCorpusTest, executer) { replay("executer", fuzzExecuter); }
TEST(FuzzCorpusTest, uncertainParameterFiles) { replay("uncert", fuzzUncert); }

}  // namespace
