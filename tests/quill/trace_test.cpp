// Tests of the trace options, the "g__trace" file and GlobalTracer's records.
#include "quill/trace.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "killwrit.h"
#include "quill/quillerr.h"
#include "quill/quillstr.h"
#include "quill/set.h"
#include "quill/startup.h"

namespace {

typedef std::vector<std::string> Words;

class TraceTest : public ::testing::Test {
protected:
    void SetUp() override {
        savedDirectory_ = std::filesystem::current_path();
        char pattern[] = "/tmp/trace_testXXXXXX";
        ASSERT_NE(mkdtemp(pattern), nullptr);
        directory_ = pattern;
        std::filesystem::current_path(directory_);
        savedArgc_ = Argc;
        savedArgv_ = Argv;
        savedLevel_ = traceLevel;
        savedStream_ = traceStream;
        savedAll_ = allFunctions;
        savedDump_ = dumpTrace;
        savedDepth_ = traceDepth;
        Iterator it(traceNames());
        while (Object* name = it()) savedNames_.push_back(name->asCharPointer());
    }

    void TearDown() override {
        std::filesystem::remove("g__trace");
        readWith({});  // closes a -traceFile stream and empties the names
        setArgs(savedArgc_, savedArgv_);
        traceLevel = savedLevel_;
        traceStream = savedStream_;
        allFunctions = savedAll_;
        dumpTrace = savedDump_;
        traceDepth = savedDepth_;
        for (const std::string& name : savedNames_) addTraceName(name.c_str());
        std::filesystem::current_path(savedDirectory_);
        std::filesystem::remove_all(directory_);
    }

    Words readWith(const Words& options) {
        words_ = {"prog"};
        words_.insert(words_.end(), options.begin(), options.end());
        words_.push_back("positional");
        pointers_.clear();
        for (std::string& w : words_) pointers_.push_back(&w[0]);
        pointers_.push_back(0);
        setArgs(static_cast<int>(words_.size()), pointers_.data());
        readTraceOptions();
        return Words(Argv, Argv + Argc);
    }

    void writeFile(const char* name, const std::string& text) { std::ofstream(name) << text; }

    void capture() { traceStream = &out_; }
    std::string output() const { return out_.str(); }

    std::vector<std::string> names() const {
        std::vector<std::string> result;
        Iterator it(traceNames());
        while (Object* name = it()) result.push_back(name->asCharPointer());
        std::sort(result.begin(), result.end());
        return result;
    }

    std::filesystem::path directory_;
    std::ostringstream out_;

private:
    std::filesystem::path savedDirectory_;
    Words words_;
    std::vector<char*> pointers_;
    int savedArgc_;
    char** savedArgv_;
    int savedLevel_;
    std::ostream* savedStream_;
    bool savedAll_, savedDump_;
    int savedDepth_;
    std::vector<std::string> savedNames_;
};

void tracedLeaf(const char* name) { GlobalTracer t(name, 0); }

void tracedNest(const char* outer, const char* inner) {
    GlobalTracer t(outer, 0);
    tracedLeaf(inner);
}

const char* const NO_FILE = 0;

TEST_F(TraceTest, OptionsAndTraceFileSetLevelNamesAndAllFunctions) {
    struct Row {
        const char* label;
        Words options;
        const char* traceFile;  // contents of "g__trace", or NO_FILE
        int level;
        bool all;
        Words names;
    };
    const Row rows[] = {
        {"nothing at all: level 0, every name", {}, NO_FILE, 0, true, {}},
        {"-traceOn: everything, file unread", {"-traceOn"}, "#tracelevel 3\nf\n", -1, false, {}},
        {"-traceOff wins over -traceOn", {"-traceOn", "-traceOff"}, NO_FILE, 0x7FFFFFFF, false, {}},
        {"-traceOff wins whatever the order", {"-traceOff", "-traceOn"}, "f\n", 0x7FFFFFFF, false, {}},
        {"-traceLevel wins over -traceOn", {"-traceOn", "-traceLevel", "4"}, NO_FILE, 4, true, {}},
        {"negative -traceLevel", {"-traceLevel", "-3"}, NO_FILE, -3, true, {}},
        {"-traceLevel over the file's", {"-traceLevel", "5"}, "#tracelevel 3\nf\n", 5, false, {"f"}},
        {"comment with tracelevel sets the level", {}, "#tracelevel 3\n", 3, false, {}},
        {"directive behind '/' and blanks", {}, "/ level 2\n", 2, false, {}},
        {"first level in the file wins", {}, "#level 4\n#level 7\n", 4, false, {}},
        {"level without a number is ignored", {}, "#level x\n", 0x7FFFFFFF, false, {}},
        {"comments and blank lines only: disabled", {}, "# nothing here\n\n   \n", 0x7FFFFFFF, false, {}},
        {"names give level 0", {}, "alpha\n\nbeta\r\n  gamma  \n", 0, false, {"alpha", "beta", "gamma"}},
        {"allfunctions in a comment", {}, "/allfunctions\n", 0, true, {}},
        {"allfunction in a comment", {}, "#allfunction\n", 0, true, {}},
        {"disabled in a comment", {}, "#disabled\n", 0, true, {}},
        {"a directive line is also a name", {}, "disable\n", 0, true, {"disable"}},
        {"a level line is also a name", {}, "level 6\n", 6, false, {"level 6"}},
        {"unknown comment words do nothing", {}, "#levels 3\n#all\n", 0x7FFFFFFF, false, {}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        std::filesystem::remove("g__trace");
        if (row.traceFile) writeFile("g__trace", row.traceFile);
        Words remaining = readWith(row.options);
        EXPECT_EQ(remaining, (Words{"prog", "positional"})) << "every trace option is consumed";
        EXPECT_EQ(traceLevel, row.level);
        EXPECT_EQ(allFunctions, row.all);
        EXPECT_EQ(names(), row.names);
    }
}

TEST_F(TraceTest, NamedFunctionsAreWrittenWithTheirNesting) {
    writeFile("g__trace", "outer\ninner\n");
    readWith({});
    capture();
    tracedNest("outer", "inner");
    tracedNest("outer", "other");
    tracedLeaf("other");
    EXPECT_EQ(output(),
              "0 TarnTRACE, Begin  outer\n"
              "1 TarnTRACE, Begin  inner\n"
              "1 TarnTRACE, End    inner\n"
              "0 TarnTRACE, End    outer\n"
              "0 TarnTRACE, Begin  outer\n"
              "0 TarnTRACE, End    outer\n");
    EXPECT_EQ(traceDepth, 0);
}

// A call is written when its level reaches the trace level and its name is
// listed or every name is traced. Without options and without "g__trace"
// every name is traced at level 0.
TEST_F(TraceTest, WhichCallsAreWritten) {
    const std::string f = "0 TarnTRACE, Begin  f\n0 TarnTRACE, End    f\n";
    struct Row {
        const char* label;
        Words options;
        const char* traceFile;
        std::vector<std::pair<const char*, int>> calls;  // name and level
        std::string written;
    };
    const Row rows[] = {
        {"no options, no file", {}, NO_FILE, {{"f", -1}, {"f", 0}}, f},
        {"the file's level", {}, "#tracelevel 3\nf\n", {{"f", 2}, {"f", 3}, {"f", 9}, {"g", 9}}, f + f},
        {"-traceOn: every name, every level",
         {"-traceOn"},
         "f\n",
         {{"g", -1}},
         "0 TarnTRACE, Begin  g\n0 TarnTRACE, End    g\n"},
        {"-traceOff: nothing", {"-traceOff"}, "f\n", {{"f", 100}}, ""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label);
        std::filesystem::remove("g__trace");
        if (row.traceFile) writeFile("g__trace", row.traceFile);
        readWith(row.options);
        out_.str("");
        capture();
        for (auto& call : row.calls) GlobalTracer t(call.first, call.second);
        EXPECT_EQ(output(), row.written);
    }
}

TEST_F(TraceTest, TraceFileTakesTheOutputOnlyWhenItExists) {
    readWith({"-traceFile", "absent.txt"});
    EXPECT_EQ(traceStream, &std::cout);
    EXPECT_FALSE(std::filesystem::exists("absent.txt"));

    writeFile("present.txt", "old text\n");
    Words remaining = readWith({"-traceFile", "present.txt", "-traceLevel", "0"});
    EXPECT_EQ(remaining, (Words{"prog", "positional"}));
    EXPECT_NE(traceStream, &std::cout);
    { GlobalTracer t("f", 0); }
    readWith({});  // closes the file
    std::ifstream in("present.txt");
    std::stringstream text;
    text << in.rdbuf();
    EXPECT_EQ(text.str(), "0 TarnTRACE, Begin  f\n0 TarnTRACE, End    f\n");
}

TEST_F(TraceTest, AKilledTraceLeavesTheOldFile) {
    std::string path = std::filesystem::absolute("present.txt");
    EXPECT_EQ(oldFileSurvives(path,
                              [&] {
                                  readWith({"-traceFile", path, "-traceLevel", "0"});
                                  for (int i = 0; i < 1000; ++i) GlobalTracer t("f", 0);
                                  readWith({});
                              }),
              "");
}

TEST_F(TraceTest, DumpTraceRecordsEveryNameMet) {
    writeFile("g__trace", "#tracelevel 5\nknown\n");
    readWith({"-dumpTrace"});
    EXPECT_TRUE(dumpTrace);
    capture();
    tracedNest("a", "b");
    tracedLeaf("a");
    EXPECT_EQ(output(), "") << "level 0 is below the trace level";
    EXPECT_EQ(names(), (std::vector<std::string>{"a", "b", "known"}));
}

TEST_F(TraceTest, NoEndRecordWhileAnErrorTravels) {
    writeFile("g__trace", "f\n");
    readWith({});
    capture();
    std::string seen;
    try {
        GlobalTracer t("f", 0);
        setError(GENERICERR, SEV_ERROR, "X", "raised", "", "");
    } catch (TarnException* e) {
        seen = output();
        delete e;
    }
    EXPECT_EQ(seen, "0 TarnTRACE, Begin  f\n");
    EXPECT_EQ(traceDepth, 0);
    tracedLeaf("f");
    EXPECT_EQ(output(), "0 TarnTRACE, Begin  f\n0 TarnTRACE, Begin  f\n0 TarnTRACE, End    f\n");
}

TEST_F(TraceTest, DisableTraceSilencesEvenOpenCalls) {
    writeFile("g__trace", "f\n");
    readWith({});
    capture();
    {
        GlobalTracer t("f", 0);
        disableTrace();
        EXPECT_EQ(traceLevel, 2147483647);
        tracedLeaf("f");
    }
    EXPECT_EQ(output(), "0 TarnTRACE, Begin  f\n");
    EXPECT_EQ(traceDepth, 0);
}

TEST_F(TraceTest, DeletedNamesComeBackEmpty) {
    writeFile("g__trace", "f\n");
    readWith({});
    deleteTraceNames();
    EXPECT_FALSE(isTraceName("f"));
    EXPECT_EQ(traceNames().size(), 0u);
    addTraceName("g");
    addTraceName("g");
    EXPECT_EQ(traceNames().size(), 1u);
}

}  // namespace
