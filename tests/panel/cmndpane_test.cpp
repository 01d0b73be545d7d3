// The command panel: the four applications from its menu, their end, the panel's end with
// editors open, dropped files, the recent files and the examples.
#include "panel/cmndpane.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <string>

#include "../trellis/trltest.h"
#include "editor/fileedt.h"
#include "editor/graphedt.h"
#include "editor/semantic.h"
#include "gui/dynwin.h"
#include "gui/rcpanel.h"
#include "interpreter/panel/mainlib.h"
#include "panel/rundlg.h"
#include "panel/tools.h"
#include "quill/cback.h"
#include "trellis/button.h"
#include "trellis/list.h"
#include "trellis/menu.h"
#include "trellis/shell.h"
#include "trellis/text.h"

namespace {

int panelsClosed = 0;
void countClosed(Cback&) { ++panelsClosed; }

// A panel in a fresh work directory that holds a diagram, a program and a note.
class CmndPanelTest : public ::testing::Test {
protected:
    void SetUp() override {
        char pattern[] = "/tmp/tarn_cmndXXXXXX";
        directory = mkdtemp(pattern);
        former = getcwd(buffer, sizeof buffer);
        ASSERT_EQ(0, chdir(directory.c_str()));
        std::ifstream diagram(std::string(TARN_EXAMPLES) + "/discrete.bdg");
        std::ofstream(directory + "/a.bdg") << diagram.rdbuf();
        std::ofstream(directory + "/b.cxx") << "int x = 1;\n";
        std::ofstream(directory + "/c.txt") << "a note\n";
        panel = new CmndPanel(TARN_EXAMPLES, directory + "/recent.tarn");
        panel->addCback(CmndPanelClosed, countClosed);
    }
    void TearDown() override {
        delete panel;
        EXPECT_EQ(0, chdir(former.c_str()));
        std::string command = "rm -rf " + directory;
        EXPECT_EQ(0, system(command.c_str()));
    }
    template <class T>
    T* editor(int i) const {
        return dynamic_cast<T*>(panel->editors().at(i));
    }

    char buffer[4096];
    std::string directory, former;
    CmndPanel* panel;
    Answers answers;
};

TEST_F(CmndPanelTest, eachEntryOpensItsApplicationInThisProcess) {
    panel->commandMenu().choose("Interpreter");
    panel->commandMenu().choose("Interpreter");
    panel->commandMenu().choose("Robust Control Design");
    answers.file = directory + "/c.txt";
    panel->commandMenu().choose("Textual...");
    answers.file = directory + "/no-name.bdg";
    panel->commandMenu().choose("Block Diagram Editor...");
    ASSERT_EQ(5u, panel->editors().size());
    EXPECT_TRUE(editor<MainLib>(0) && editor<MainLib>(1) && editor<GraphMainLib>(2));
    ASSERT_TRUE(editor<FileEditor>(3));
    EXPECT_EQ("a note\n", std::string(editor<FileEditor>(3)->getText().asCharPointer()));
    EXPECT_TRUE(editor<GraphEditor>(4));
    EXPECT_EQ((std::vector<std::string>{"Textual", "Block Diagram Editor"}), answers.dialogues);
    // "no-name" is a new document, which no list remembers.
    EXPECT_EQ(std::vector<std::string>{directory + "/c.txt"},
              RecentFiles(directory + "/recent.tarn").names());
    EXPECT_EQ(0, panelsClosed);
}

TEST_F(CmndPanelTest, aCancelledDialogueOpensNothing) {
    panel->commandMenu().choose("Textual...");
    EXPECT_EQ(0u, panel->editors().size());
}

TEST_F(CmndPanelTest, anApplicationThatEndsLeavesThePanelRunning) {
    panel->commandMenu().choose("Interpreter");
    panel->commandMenu().choose("Robust Control Design");
    panel->dropFile("b.cxx");
    editor<MainLib>(0)->quit();
    editor<GraphMainLib>(0)->window()->closeRequested();
    CAST(FileEditor, panel->editors().at(0))->getShell().closeRequested();
    EXPECT_EQ(0u, panel->editors().size());
    EXPECT_EQ(0, panelsClosed);
    panel->commandMenu().choose("Interpreter");
    EXPECT_EQ(1u, panel->editors().size());
}

TEST_F(CmndPanelTest, quitAsksWhileEditorsAreOpen) {
    panel->dropFile("a.bdg");
    panel->commandMenu().choose("Interpreter");
    answers.replies = {false};
    panel->commandMenu().choose("Quit");
    EXPECT_EQ(2u, panel->editors().size());
    EXPECT_EQ(0, panelsClosed);
    answers.replies = {true};
    EXPECT_TRUE(panel->quit());
    EXPECT_EQ(0u, panel->editors().size());
    EXPECT_EQ(1, panelsClosed);
    EXPECT_EQ((std::vector<std::string>{
                  "Some editor is open\nIf you continue it will be destroyed.\n\n Continue ?",
                  "Some editor is open\nIf you continue it will be destroyed.\n\n Continue ?"}),
              answers.questions);
}

TEST_F(CmndPanelTest, aDroppedFileOpensByItsExtensionWithoutADialogue) {
    panel->dropFile("a.bdg");
    panel->dropFile("c.txt");
    EXPECT_TRUE(editor<GraphEditor>(0));
    EXPECT_TRUE(editor<FileEditor>(1));
    panel->dropFile("new.stg");
    ASSERT_TRUE(editor<GraphEditor>(2));
    EXPECT_EQ("StateGraphSem", std::string(editor<GraphEditor>(2)->semantic().className()));
    CAST(Editor, panel->editors().at(2))->getShell().closeRequested();
    EXPECT_TRUE(answers.dialogues.empty());
    chmod("c.txt", 0);
    panel->dropFile("c.txt");
    EXPECT_EQ(2u, panel->editors().size());
    EXPECT_EQ(1u, answers.messages.size());
}

TEST_F(CmndPanelTest, examplesAndRecentFilesOpenWithADoubleClick) {
    ASSERT_EQ(2, panel->exampleList().itemCount());
    EXPECT_EQ("a.bdg", std::string(panel->exampleList().itemText(0).asCharPointer()));
    panel->exampleList().activate(1);
    ASSERT_TRUE(editor<FileEditor>(0));
    ASSERT_EQ(1, panel->recentList().itemCount());
    panel->recentList().activate(0);
    EXPECT_TRUE(editor<FileEditor>(1));
    EXPECT_EQ(1, panel->recentList().itemCount());
    // Another work directory shows its own examples.
    ASSERT_EQ(0, mkdir((directory + "/sub").c_str(), 0755));
    std::ofstream(directory + "/sub/d.cxx") << "\n";
    answers.file = directory + "/sub";
    panel->commandMenu().choose("Change Dir...");
    ASSERT_EQ(1, panel->exampleList().itemCount());
    EXPECT_EQ("d.cxx", std::string(panel->exampleList().itemText(0).asCharPointer()));
}

TEST_F(CmndPanelTest, toolsUnderTarnPathReportWhatIsMissing) {
    const char* former = getenv("TARN_PATH");
    std::string saved = former ? former : "";
    unsetenv("TARN_PATH");
    panel->menuCommand("Start Tarn Animator");
    setenv("TARN_PATH", directory.c_str(), 1);
    panel->menuCommand("Lumen on Tarn Library");
    setenv("TARN_PATH", saved.c_str(), 1);
    if (!former) unsetenv("TARN_PATH");
    EXPECT_EQ((std::vector<std::string>{
                  "Tarn Panel: TARN_PATH environment variable not found",
                  "Tarn Panel: Error on exec command\n\n" + directory + "/bin/lumen cppTarn.lum"}),
              answers.messages);
}

// The text of the script after writing both; SYS_FLAGS is written only when it is set.
std::string scriptText(const std::string& folder, const char* script) {
    EXPECT_TRUE(writeToolScripts(folder));
    EXPECT_EQ(0, access((folder + script).c_str(), X_OK));
    std::ifstream in(folder + script);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

TEST_F(CmndPanelTest, theScriptsCarryTheEnvironmentAndRunTheirTool) {
    setenv("SYS_FLAGS", "it's", 1);
    std::string make = scriptText(directory, "/tarn_make.sh");
    unsetenv("SYS_FLAGS");
    EXPECT_NE(std::string::npos, make.find("export PATH='" + std::string(getenv("PATH")) + "'\n"));
    EXPECT_NE(std::string::npos, make.find("export SYS_FLAGS='it'\\''s'\n"));
    EXPECT_NE(std::string::npos, make.find("\nexec make \"$@\"\n"));
    std::string terminal = scriptText(directory, "/tarn_term.sh");
    EXPECT_EQ(std::string::npos, terminal.find("SYS_FLAGS"));
    EXPECT_NE(std::string::npos, terminal.find("\nexec \"${TERMINAL:-xterm}\"\n"));
}

TEST(RunDialogTest, theFieldsGiveTheCommandAndBrowseFillsTheFile) {
    Answers answers;
    answers.file = "prog";
    RunDialog dialog(topLevelWidget);
    EXPECT_TRUE(dialog.command().empty());
    dialog.browseButton().press();
    EXPECT_EQ(std::vector<std::string>{"./prog"}, dialog.command());
    dialog.fileField().setText("/bin/true");
    dialog.traceOff().setState(true);
    EXPECT_EQ((std::vector<std::string>{"/bin/true", "-traceOff"}), dialog.command());
    EXPECT_EQ(std::vector<std::string>{"Run file"}, answers.dialogues);
}

TEST(RecentFilesTest, keepsTheLastTenOnceEachTheNewestFirst) {
    std::string path = std::string("/tmp/tarn_recent_") + std::to_string(getpid()) + "/list";
    RecentFiles files(path);
    for (int i = 0; i < 12; ++i) files.add("f" + std::to_string(i));
    files.add("f5");
    std::vector<std::string> names = RecentFiles(path).names();
    ASSERT_EQ(10u, names.size());
    EXPECT_EQ("f5", names[0]);
    EXPECT_EQ("f11", names[1]);
    EXPECT_EQ("f2", names[9]);
    std::string command = "rm -rf " + path.substr(0, path.rfind('/'));
    EXPECT_EQ(0, system(command.c_str()));
}

}  // namespace
