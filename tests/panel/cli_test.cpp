// Command-line tests: the tarn executable's modes, options and exit codes.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace {

struct RunResult {
    std::string out;
    std::string err;
    int status;  // the exit code, or -1 when the process did not exit normally
};

std::string readFile(const std::string& path) {
    std::ifstream in(path);
    std::stringstream s;
    s << in.rdbuf();
    return s.str();
}

// Runs tarn with the words given, the program's path as Argv[0].
RunResult runTarn(const std::vector<std::string>& words) {
    char outName[] = "/tmp/tarn_cli_outXXXXXX";
    char errName[] = "/tmp/tarn_cli_errXXXXXX";
    int outFd = mkstemp(outName);
    int errFd = mkstemp(errName);
    std::vector<std::string> args = {TARN_EXECUTABLE};
    args.insert(args.end(), words.begin(), words.end());
    std::vector<char*> argv;
    for (std::string& a : args) argv.push_back(&a[0]);
    argv.push_back(0);

    pid_t pid = fork();
    if (pid == 0) {
        dup2(outFd, 1);
        dup2(errFd, 2);
        execv(argv[0], argv.data());
        _exit(127);
    }
    int wstatus = 0;
    waitpid(pid, &wstatus, 0);
    close(outFd);
    close(errFd);
    RunResult r{readFile(outName), readFile(errName), WIFEXITED(wstatus) ? WEXITSTATUS(wstatus) : -1};
    unlink(outName);
    unlink(errName);
    return r;
}

std::string usageLine() { return std::string("Syntax error: usage ") + TARN_EXECUTABLE + " <filename>\n"; }

std::string modeLine(const char* what, const char* file) {
    std::string line = std::string("tarn: ") + what + " is not built yet";
    if (file) line += std::string(" (file \"") + file + "\")";
    return line + "\n";
}

std::string joined(const std::vector<std::string>& words) {
    std::string s;
    for (const std::string& w : words) s += w + " ";
    return s;
}

TEST(CommandLineTest, modeIsChosenByFlagWhereverItStands) {
    const char* text = "the text editor";
    const char* diagram = "the block-diagram editor";
    struct Row {
        std::vector<std::string> words;
        std::string out;
    };
    const Row rows[] = {
        {{}, modeLine("the command panel", 0)},
        {{"file"}, modeLine("the command panel", 0)},
        {{"-text"}, modeLine(text, "")},
        {{"-text", "a"}, modeLine(text, "a")},
        {{"a", "-text"}, modeLine(text, "a")},
        // -blockDiagram is tried first; the -text left behind is a file name.
        {{"-blockDiagram", "-text"}, modeLine(diagram, "-text")},
        {{"-text", "-blockDiagram"}, modeLine(diagram, "-text")},
        {{"m.bdg", "-blockDiagram"}, modeLine(diagram, "m.bdg")},
        {{"-text", "-interpreter"}, modeLine("the interpreter", 0)},
        {{"-robustControlDesign", "-text"}, modeLine("the robust control design panel", 0)},
        {{"-interpreter", "-robustControlDesign"}, modeLine("the interpreter", 0)},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(joined(row.words));
        RunResult r = runTarn(row.words);
        EXPECT_EQ(r.status, 0);
        EXPECT_EQ(r.out, row.out);
        EXPECT_EQ(r.err, "");
    }
}

TEST(CommandLineTest, twoFileNamesAreAUsageError) {
    const std::vector<std::string> rows[] = {
        {"-text", "a", "b"},
        {"a", "b", "-text"},
        {"-blockDiagram", "a", "b"},
        {"-blockDiagram", "-text", "a"},
    };
    for (const std::vector<std::string>& words : rows) {
        SCOPED_TRACE(joined(words));
        RunResult r = runTarn(words);
        EXPECT_EQ(r.status, 1);
        EXPECT_EQ(r.err, usageLine());
        EXPECT_EQ(r.out, "");
    }
}

// The environment options leave the store as they are read: every one of them
// must be gone, value included, before the text mode counts its file names,
// or it would see more than one and refuse. What the -env assignments put into
// the environment, and in which order, is checked in process by the tests of
// the start-up, since no mode of this build prints its environment.
TEST(CommandLineTest, environmentOptionsAreConsumedWithTheirValues) {
    const std::vector<std::string> rows[] = {
        {"-env", "X=1", "-text", "-env", "Y=%X%", "f", "-env", "Z=%Y%"},
        {"-JV_PATH", "/j", "f", "-CC_PATH", "/c", "-text", "-DS_PATH", "/d", "-IDE_PATH", "/i"},
        {"-text", "f", "-JV_PATH"},
        {"-CC_PATH", "-text", "-text", "f"},
        {"-deleteGlobals", "-text", "f"},
    };
    for (const std::vector<std::string>& words : rows) {
        SCOPED_TRACE(joined(words));
        RunResult r = runTarn(words);
        EXPECT_EQ(r.status, 0);
        EXPECT_EQ(r.out, modeLine("the text editor", "f"));
        EXPECT_EQ(r.err, "");
    }
}

// -env takes the next word whatever it is: here the -text that follows it.
TEST(CommandLineTest, envIsReadBeforeTheModeFlags) {
    RunResult r = runTarn({"-env", "-text", "a"});
    EXPECT_EQ(r.status, 0);
    EXPECT_EQ(r.out, modeLine("the command panel", 0));
}

TEST(CommandLineTest, printClassesListsTheSortedClassNames) {
    RunResult r = runTarn({"-text", "-printClasses"});
    EXPECT_EQ(r.status, 0);
    const std::string head = "Classes linked: OrderedCltn[";
    std::string::size_type at = r.out.find(head);
    ASSERT_NE(at, std::string::npos) << r.out;
    std::string::size_type close = r.out.find("]\n", at);
    ASSERT_NE(close, std::string::npos) << r.out;
    std::vector<std::string> names;
    std::stringstream list(r.out.substr(at + head.size(), close - at - head.size()));
    for (std::string name; std::getline(list, name, ',');)
        names.push_back(name.substr(name.find_first_not_of(' ')));
    EXPECT_TRUE(std::is_sorted(names.begin(), names.end()));
    for (const char* name : {"Class", "Collection", "Integer", "Nil", "Object", "OrderedCltn", "String",
                             "Symbol", "TarnException"}) {
        EXPECT_NE(std::find(names.begin(), names.end(), name), names.end()) << name;
    }
    EXPECT_NE(r.out.find(modeLine("the text editor", "")), std::string::npos) << r.out;
}

TEST(CommandLineTest, helpListsEveryOptionAndExitsZero) {
    for (const std::vector<std::string>& words :
         {std::vector<std::string>{"-help"}, std::vector<std::string>{"-text", "a", "b", "-help"}}) {
        SCOPED_TRACE(joined(words));
        RunResult r = runTarn(words);
        EXPECT_EQ(r.status, 0);
        EXPECT_EQ(r.err, "");
        for (const char* option :
             {"-blockDiagram", "-interpreter", "-robustControlDesign", "-text", "-env", "-JV_PATH",
              "-CC_PATH", "-DS_PATH", "-IDE_PATH", "-printClasses", "-deleteGlobals", "-traceOn", "-traceOff",
              "-traceFile", "-traceLevel", "-dumpTrace", "-help"}) {
            EXPECT_NE(r.out.find(std::string("\n  ") + option + " "), std::string::npos) << option << "\n"
                                                                                         << r.out;
        }
    }
}

}  // namespace
