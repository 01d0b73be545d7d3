// Modules: values with state of their own over one compiled file, the reports, methods, and the debugger
// hook.
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <string>
#include <vector>

#include "interpreter/modvar.h"
#include "quill/startup.h"
#include "runtext.h"

namespace {

::testing::AssertionResult contains(const std::string& text, const std::string& part) {
    if (text.find(part) != std::string::npos) return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "\"" << text << "\" lacks \"" << part << "\"";
}

const char* const COUNTER =
    "int count = 0;\n"
    "int add(int by) { count += by; return count; }\n"
    "int at(int i) { int a[2]; return a[i]; }\n"
    "int main() { cout << \"start \"; count = 10; return 0; }\n";

// A folder of module files for one test.
class ModuleTest : public ::testing::Test {
protected:
    void SetUp() override {
        char pattern[] = "/tmp/modtestXXXXXX";
        ASSERT_TRUE(mkdtemp(pattern));
        dir = pattern;
        write("counter.cxx", COUNTER);
    }
    void TearDown() override { (void)system(("rm -rf " + dir).c_str()); }
    void write(const std::string& name, const std::string& text) { std::ofstream(dir + "/" + name) << text; }
    // Source text with every @ replaced by the folder.
    std::string in(std::string text) const {
        for (std::string::size_type at; (at = text.find('@')) != std::string::npos;) text.replace(at, 1, dir);
        return text;
    }
    std::string dir;
};

TEST_F(ModuleTest, twoValuesShareTheCompiledFileAndKeepSeparateGlobals) {
    CapturedStreams streams;
    CodeParser parser;
    Executer executer(&parser);
    std::string source =
        in("Module<\"@/counter\"> a;\n"
           "Module<\"@/counter.cxx\"> b;\n"
           "int main() { a.add(1); a.add(2); cout << a.add(3) << \" \" << b.add(5); return 0; }\n");
    ASSERT_EQ(parser.parseText(source.c_str(), 1).asCharPointer(), std::string());
    // The run needs the compiled tree only, not the file.
    ASSERT_EQ(unlink((dir + "/counter.cxx").c_str()), 0);
    String message;
    int stopped = 0;
    executer.run(message, stopped);
    EXPECT_EQ(message.asCharPointer(), std::string());
    EXPECT_EQ(streams.out.str(), "start start 16 15");
}

TEST_F(ModuleTest, eachReportNamesItsCause) {
    write("nomain.cxx", "int f() { return 1; }\n");
    write("broken.cxx", "int x = ;\nint main() { return 0; }\n");
    write("failing.cxx", "int main() { int a[1]; a[3] = 1; return 0; }\n");
    write("self.cxx", in("Module<\"@/self\"> again;\nint main() { return 0; }\n"));
    ASSERT_EQ(mkdir((dir + "/folder.cxx").c_str(), 0755), 0);
    struct Row {
        const char* declarations;
        const char* report;
    } rows[] = {
        {"Module m;", "The type Module is a template"},
        {"Module<\"\"> m;", "a Module template must be initialized with a const string filename"},
        {"Module<3> m;", "a Module template must be initialized with a const string filename"},
        {"Module<\"a\", \"b\"> m;", "a Module template must be initialized with a const string filename"},
        {"Module<\"@/missing\"> m;", "filename @/missing.cxx does not exist"},
        {"Module<\"@/folder.cxx\"> m;", "filename @/folder.cxx cannot be read"},
        {"Module<\"@/broken\"> m;", "at line 1 on token ;"},
        {"Module<\"@/self\"> m;", "filename @/self.cxx is a module of itself"},
        {"Module<\"@/nomain\"> m;", "In Module<@/nomain> m main function not found"},
        {"Module<\"@/failing\"> m;",
         "In Module<@/failing> m [PARSE ERROR] Run time error, index 3 out of range"},
        {"Module<\"@/counter\"> c;\nint k = c.at(2);",
         "In Module<@/counter> c [PARSE ERROR] Run time error, index 2"},
        {"Module<\"@/counter\"> c;\nint k = c.add();",
         "Unknown method add for object Module<@/counter> without args"},
        {"Module<\"@/counter\"> c;\nint k = c.add(\"one\");",
         "Unknown method add for object Module<@/counter> from args (string)"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.declarations);
        ProgramRun run = runText(in(row.declarations) + "\nint main() { return 0; }\n");
        EXPECT_TRUE(contains(run.message, in(row.report)));
    }
}

TEST_F(ModuleTest, aFileWithoutReadPermissionCannotBeRead) {
    if (geteuid() == 0) GTEST_SKIP() << "the super-user reads every file";
    ASSERT_EQ(chmod((dir + "/counter.cxx").c_str(), 0), 0);
    EXPECT_TRUE(contains(runText(in("Module<\"@/counter\"> m;\nint main() { return 0; }\n")).message,
                         in("filename @/counter.cxx cannot be read")));
}

// What the debugger hook was given, and whether its panels went with their values.
struct HookRecord {
    std::vector<const CodeParser*> parsers;
    std::vector<const Executer*> executers;
    std::vector<std::string> files;
    std::vector<bool> goes;
    std::vector<unsigned> globalsAtCall;
    int panelsDeleted = 0;
} record;

struct PanelStub : String {
    ~PanelStub() override { ++record.panelsDeleted; }
};

Object* recordingDebugger(CodeParser& parser, Executer& executer, const char* fileName, bool go) {
    record.parsers.push_back(&parser);
    record.executers.push_back(&executer);
    record.files.push_back(fileName);
    record.goes.push_back(go);
    record.globalsAtCall.push_back(executer.getGlobals().size());
    return new PanelStub;
}

// The flags as the start-up reads them from a command line.
void readFlags(std::vector<std::string> words) {
    int oldArgc = getArgc();
    char** oldArgv = getArgv();
    words.insert(words.begin(), "tarn");
    std::vector<char*> argv;
    for (std::string& word : words) argv.push_back(&word[0]);
    argv.push_back(0);
    setArgs(int(words.size()), argv.data());
    readModuleOptions();
    setArgs(oldArgc, oldArgv);
}

TEST_F(ModuleTest, theFlagsOpenADebuggerOnEachValueBeforeItsRun) {
    std::string program = in("Module<\"@/counter\"> a, b;\nint main() { return 0; }\n");
    struct Row {
        std::vector<std::string> flags;
        bool debug, go;
    } rows[] = {{{}, false, false}, {{"-debugModule"}, true, false}, {{"-debugModuleGo"}, true, true}};
    ModuleDebugger former = setModuleDebugger(recordingDebugger);
    for (const Row& row : rows) {
        SCOPED_TRACE(row.flags.empty() ? "no flag" : row.flags[0]);
        readFlags(row.flags);
        EXPECT_EQ(debugModule, row.debug);
        EXPECT_EQ(debugModuleGo, row.go);
        record = HookRecord();
        EXPECT_EQ(runText(program).message, "");
        ASSERT_EQ(record.files.size(), row.debug ? 2u : 0u);
        EXPECT_EQ(record.panelsDeleted, int(record.files.size()));
        if (!row.debug) continue;
        EXPECT_EQ(record.parsers[0], record.parsers[1]);
        EXPECT_NE(record.executers[0], record.executers[1]);
        EXPECT_EQ(record.files[0], dir + "/counter.cxx");
        EXPECT_EQ(record.goes, std::vector<bool>(2, row.go));
        EXPECT_EQ(record.globalsAtCall, std::vector<unsigned>(2, 0u));
    }
    setModuleDebugger(0);
    ProgramRun headless = runText(program);
    EXPECT_EQ(headless.message, "");
    EXPECT_TRUE(contains(headless.err, in("-debugModule is ignored for Module<@/counter>")));
    setModuleDebugger(former);
    readFlags({});
}

}  // namespace
