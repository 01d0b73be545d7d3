// Modules: values with state of their own over one compiled file, the reports, and the debugger hook.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>
#include <set>
#include <string>
#include <vector>

#include "../control/ctltest.h"
#include "interpreter/modvar.h"
#include "quill/startup.h"
#include "runtext.h"

namespace {

// Module files in a scratch working directory.
class ModuleTest : public ScratchTest {
protected:
    void SetUp() override {
        ScratchTest::SetUp();
        const char* files[][2] = {
            {"counter",
             "int count = 0;\nint add(int by) { count += by; return count; }\n"
             "int at(int i) { int a[2]; return a[i]; }\n"
             "int main() { cout << \"start \"; count = 10; return 0; }\n"},
            {"looper",
             "int count = 0;\nint add(int n) { for (int i = 0; i < n; i++) count = count + 1; "
             "return count; }\nint main() { return 0; }\n"},
            {"nomain", "int f() { return 1; }\n"},
            {"failing", "int main() { int a[1]; a[3] = 1; return 0; }\n"},
            {"self", "Module<\"self\"> again;\nint main() { return 0; }\n"}};
        for (auto& file : files) std::ofstream(std::string(file[0]) + ".cxx") << file[1];
        ASSERT_EQ(mkdir("folder.cxx", 0755), 0);
    }
};

TEST_F(ModuleTest, twoValuesKeepGlobalsOfTheirOwn) {
    ProgramRun run = runText(
        std::string("Module<\"counter\"> a, b;\n"
                    "int main() { a.add(1); a.add(2); cout << a.add(3) << \" \" << b.add(5); return 0; }\n"));
    EXPECT_EQ(run.message, "");
    EXPECT_EQ(run.out, "start start 16 15");
}

// The plans of the compiled file are shared by the values, the variables they find are each value's own.
TEST_F(ModuleTest, valuesRunTheSameLoopsOnTheirOwnGlobals) {
    ProgramRun run = runText(std::string(
        "Module<\"looper\"> a, b;\n"
        "int main() { cout << a.add(3) << \" \" << b.add(5) << \" \" << a.add(2) << \" \" << b.add(1); "
        "return 0; }\n"));
    EXPECT_EQ(run.message, "");
    EXPECT_EQ(run.out, "3 5 5 6");
}

TEST_F(ModuleTest, eachReportNamesItsCause) {
    const char* const unnamed = "a Module template must be initialized with a const string filename";
    const char* rows[][2] = {
        {"Module m;", "The type Module is a template"},
        {"Module<\"\"> m;", unnamed},
        {"Module<3> m;", unnamed},
        {"Module<\"missing\"> m;", "filename missing.cxx does not exist"},
        {"Module<\"folder.cxx\"> m;", "filename folder.cxx cannot be read"},
        {"Module<\"self\"> m;", "filename self.cxx is a module of itself"},
        {"Module<\"nomain\"> m;", "In Module<nomain> m main function not found"},
        {"Module<\"failing\"> m;", "In Module<failing> m [PARSE ERROR] Run time error, index 3"},
        {"Module<\"counter\"> c;\nint k = c.at(2);", "In Module<counter> c [PARSE ERROR] Run"},
        {"Module<\"counter\"> c;\nint k = c.add();", "Unknown method add for object Module<"},
    };
    for (auto& row : rows) {
        std::string message = runText(std::string(row[0]) + "\nint main() { return 0; }\n").message;
        EXPECT_NE(message.find(row[1]), std::string::npos) << row[0] << "\n" << message;
    }
}

// The debugger hook's calls as "file go|step globals-made", the parsers and executers it saw, the panels
// deleted.
struct HookRecord {
    std::vector<std::string> calls;
    std::set<const void*> parsers, executers;
    int panelsDeleted = 0;
} hook;

struct PanelStub : String {
    ~PanelStub() override { ++hook.panelsDeleted; }
};

Object* recordingDebugger(CodeParser& parser, Executer& executer, const char* fileName, bool go) {
    hook.parsers.insert(&parser);
    hook.executers.insert(&executer);
    hook.calls.push_back(fileName + std::string(go ? " go " : " step ") +
                         std::to_string(executer.getGlobals().size()));
    return new PanelStub;
}

// The flags as the start-up reads them from the command line "tarn flag".
void readFlag(std::string flag) {
    int oldArgc = getArgc();
    char** oldArgv = getArgv();
    char name[] = "tarn";
    char* argv[] = {name, &flag[0]};
    setArgs(flag.empty() ? 1 : 2, argv);
    readModuleOptions();
    setArgs(oldArgc, oldArgv);
}

TEST_F(ModuleTest, theFlagsOpenADebuggerOnEachValueBeforeItsRun) {
    std::string program = "Module<\"counter\"> a, b;\nint main() { return 0; }\n";
    ModuleDebugger former = setModuleDebugger(recordingDebugger);
    const char* rows[][2] = {{"", ""}, {"-debugModule", " step 0"}, {"-debugModuleGo", " go 0"}};
    for (auto& row : rows) {
        readFlag(row[0]);
        hook = HookRecord();
        EXPECT_EQ(runText(program).message, "");
        std::vector<std::string> expected(*row[0] ? 2 : 0, "counter.cxx" + std::string(row[1]));
        EXPECT_EQ(hook.calls, expected) << row[0];
        EXPECT_EQ(hook.panelsDeleted, int(expected.size()));
        EXPECT_EQ(hook.parsers.size(), expected.empty() ? 0u : 1u);  // one compiled tree
        EXPECT_EQ(hook.executers.size(), expected.size());
    }
    setModuleDebugger(former);
    readFlag("");
}

}  // namespace
