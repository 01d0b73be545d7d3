// The resident interpreter window: lines run one at a time, errors that change nothing, "RE DO ALL",
// the File menu and its file cycle.
#include "interpreter/panel/mainlib.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <fstream>
#include <sstream>
#include <string>

#include "../trellis/trltest.h"
#include "interpreter/panel/varlist.h"
#include "quill/cback.h"
#include "quill/startup.h"
#include "trellis/list.h"
#include "trellis/menu.h"
#include "trellis/text.h"

namespace {

class MainLibEnvironment : public ::testing::Environment {
public:
    void SetUp() override {
        static char name[] = "debugger_tests";
        static char* argv[] = {name, 0};
        quillStart(1, argv, 0);
    }
};

::testing::Environment* const environment = ::testing::AddGlobalTestEnvironment(new MainLibEnvironment);

std::string str(const String& s) { return s.asCharPointer(); }

// The output lists the predefined globals (s, z, cout, endl) before those of the lines.
void expectValuesLast(const std::string& values, const CppText& output) {
    std::string text = str(output.getText());
    EXPECT_TRUE(text.size() >= values.size() &&
                text.compare(text.size() - values.size(), values.size(), values) == 0)
        << text;
}

int exits = 0;
void countExit(Cback&) { ++exits; }

class MainLibTest : public ::testing::Test {
protected:
    void SetUp() override {
        lib = new MainLib;
        lib->globalText().setText("int sq(int v) { return v * v; }\n");
        for (const char* line : {"int x = 2;", "x = sq(x) + 2 ;;", "float y = x / 4.0"})
            EXPECT_EQ("", str(lib->execute(line))) << line;
    }
    std::string history() const {
        std::string items;
        for (int i = 0; i < lib->command().itemCount(); ++i) items += str(lib->command().itemText(i)) + "|";
        return items;
    }

    void TearDown() override { delete lib; }

    MainLib* lib = 0;
};

TEST_F(MainLibTest, LinesDeclareAndUseVariables) {
    EXPECT_EQ("int x = 2;\nx = sq(x) + 2;\nfloat y = x / 4.0;\n", str(lib->mainText().getText()));
    EXPECT_EQ("float y = x / 4.0|x = sq(x) + 2|int x = 2|", history());
    expectValuesLast("\nx = \"6\"\ny = \"1.5\"\n", lib->output());
    // A line run again goes back to the head of the history, once.
    lib->execute("int x = 2");
    EXPECT_EQ("int x = 2|float y = x / 4.0|x = sq(x) + 2|", history());
    EXPECT_TRUE(lib->isChanged());
}

// A failing line leaves the main text, the history and the values as they were, even those it
// assigned before its fault; only the output tells.
TEST_F(MainLibTest, ErrorLineChangesNothing) {
    const std::string text = str(lib->mainText().getText()), items = history(),
                      values = str(lib->output().getText());
    for (const char* line :
         {"int w = nothere", "x = sq(", "int a[2]; a[2] = 1", "x = 100; int a[2]; a[2] = 1"}) {
        SCOPED_TRACE(line);
        std::string message = str(lib->execute(line));
        EXPECT_NE("", message);
        EXPECT_EQ(message, str(lib->output().getText()));
        EXPECT_EQ(text, str(lib->mainText().getText()));
        EXPECT_EQ(items, history());
        EXPECT_EQ("x = \"6\"", str(lib->interpreter().printVariable("x")));
        EXPECT_EQ(nullptr, lib->interpreter().getVariable("w", 1));
        EXPECT_EQ(nullptr, lib->interpreter().getVariable("a", 1));
    }
    lib->redoAll();
    EXPECT_EQ(values, str(lib->output().getText()));
}

TEST_F(MainLibTest, RedoAllStartsAfresh) {
    const std::string values = str(lib->output().getText());
    // Values that drifted away from the main text, and a global that it never declared.
    lib->interpreter().evaluate(lib->globalText().getText(), "x = 100; int stray = 1");
    lib->redoButton().press();
    EXPECT_EQ(values, str(lib->output().getText()));
    EXPECT_EQ(nullptr, lib->interpreter().getVariable("stray", 1));
    // A line of the main text that fails is reported, and the others still run.
    lib->mainText().append("int z = nothere;\nint k = x + 1;\n");
    lib->redoAll();
    std::string output = str(lib->output().getText());
    EXPECT_EQ(0u, output.find("[PARSE ERROR]")) << output;
    EXPECT_NE(std::string::npos, output.find("\nx = \"6\"\ny = \"1.5\"\nk = \"7\"\n")) << output;
}

TEST_F(MainLibTest, VariablesDialogShowsTheChosenValue) {
    lib->showVariables();
    VariablesDialog& dialog = *lib->variablesDialog();
    CppList& names = dialog.names();
    ASSERT_EQ("y", str(names.itemText(names.itemCount() - 1)));
    names.select(names.itemCount() - 1);
    EXPECT_EQ("y = \"1.5\"", str(dialog.value().getText()));
    dialog.closeButton().press();
    EXPECT_FALSE(dialog.isUp());
}

TEST(MainLibMenu, FileEntriesAndKeys) {
    MainLib lib;
    const struct {
        const char* name;
        const char* keys;
    } entries[] = {{"New", "Alt+N"},
                   {"Open Global...", "F2"},
                   {"Append Global...", "F3"},
                   {"Open Main...", "F4"},
                   {"Save", "F5"},
                   {"Save Global As...", "Alt+S"},
                   {"Save Main As...", "Alt+V"},
                   {"Exit", "Alt+X"},
                   {"Quit", "Alt+Q"}};
    EXPECT_EQ(9, lib.fileMenu().choiceCount());
    for (const auto& entry : entries) {
        SCOPED_TRACE(entry.name);
        EXPECT_TRUE(lib.fileMenu().hasChoice(entry.name));
        EXPECT_EQ(entry.keys, str(lib.fileMenu().keysOf(entry.name)));
    }
    EXPECT_EQ("Interpreter", str(lib.shell().title()));
}

// Saving through the dialogues, reading back, and Exit asking first when the work changed.
TEST(MainLibFiles, SaveOpenAndExit) {
    char pattern[] = "/tmp/tarn_mainlib_XXXXXX";
    std::string directory = mkdtemp(pattern);
    Answers answers;
    MainLib lib;
    lib.addCback(MainLibExit, countExit);
    lib.globalText().setText("int twice(int v) { return 2 * v; }\n");
    lib.execute("int n = twice(4)");
    answers.file = directory + "/global.cxx";
    ASSERT_TRUE(lib.saveGlobalAs());
    answers.file = directory + "/main.cxx";
    ASSERT_TRUE(lib.saveMainAs());
    EXPECT_EQ((std::vector<std::string>{"Save File Selection", "Save File Selection"}), answers.dialogues);
    std::ifstream in(directory + "/main.cxx");
    EXPECT_EQ("int n = twice(4);\n", std::string(std::istreambuf_iterator<char>(in), {}));

    MainLib other;
    answers.file = directory + "/global.cxx";
    ASSERT_TRUE(other.openGlobal());
    ASSERT_TRUE(other.openMain((directory + "/main.cxx").c_str()));
    other.redoAll();
    expectValuesLast("\nn = \"8\"\n", other.output());
    EXPECT_EQ("Load File Selection", answers.dialogues.back());

    lib.execute("n = 1");
    answers.replies = {false};
    exits = 0;
    EXPECT_TRUE(lib.exit());
    EXPECT_EQ(std::vector<std::string>{"Save work before exit ?"}, answers.questions);
    EXPECT_EQ(1, exits);
    std::system(("rm -rf " + directory).c_str());
}

}  // namespace
