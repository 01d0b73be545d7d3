// The corpus: each programs/<name>.cxx runs through the console runner; what it writes on
// the standard output must be <name>.out, and when <name>.err exists the run must fail
// with exactly that on the error stream.
#include <dirent.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "../quill/testutil.h"
#include "runtext.h"

namespace {

bool exists(const std::string& path) { return std::ifstream(path).good(); }

std::vector<std::string> programNames() {
    std::vector<std::string> names;
    if (DIR* dir = opendir(TARN_PROGRAMS)) {
        while (dirent* entry = readdir(dir)) {
            std::string name = entry->d_name;
            if (name.size() > 4 && name.compare(name.size() - 4, 4, ".cxx") == 0)
                names.push_back(name.substr(0, name.size() - 4));
        }
        closedir(dir);
    }
    std::sort(names.begin(), names.end());
    return names;
}

class CorpusTest : public ::testing::TestWithParam<std::string> {};

TEST_P(CorpusTest, outputAndErrorsAreTheExpectedOnes) {
    std::string base = std::string(TARN_PROGRAMS) + "/" + GetParam();
    ProgramRun run = runFile(base + ".cxx");
    EXPECT_EQ(run.out, fileText(base + ".out"));
    bool fails = exists(base + ".err");
    EXPECT_EQ(run.err, fails ? fileText(base + ".err") : "");
    EXPECT_EQ(run.status, fails ? 1 : 0);
}

INSTANTIATE_TEST_SUITE_P(Programs, CorpusTest, ::testing::ValuesIn(programNames()),
                         [](const ::testing::TestParamInfo<std::string>& info) { return info.param; });

}  // namespace
