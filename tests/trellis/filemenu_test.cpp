// FileMenu: titles, the file tests and their messages, the save with ".tmp" and ".bak", the cycle's events.
#include "trellis/filemenu.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>

#include <fstream>
#include <sstream>

#include "../quill/testutil.h"
#include "quill/cback.h"
#include "quill/integer.h"
#include "quill/point.h"
#include "trellis/filetest.h"
#include "trellis/menu.h"
#include "trellis/shell.h"
#include "trltest.h"

namespace {

std::string str(const String& s) { return s.asCharPointer(); }

bool exists(const std::string& name) {
    struct stat info;
    return stat(name.c_str(), &info) == 0;
}

TEST(FileMenuTitleTest, namesUpToFiftyStandWhole) {
    std::string fifty(50, 'a'), fiftyOne = std::string(10, 'b') + std::string(4, 'x') + std::string(37, 'c');
    EXPECT_EQ("Edit: " + fifty, str(FileMenu::titleFor("Edit: ", fifty.c_str(), false)));
    EXPECT_EQ("Edit: bbbbbbbbbb..." + std::string(37, 'c'),
              str(FileMenu::titleFor("Edit: ", fiftyOne.c_str(), false)));
    EXPECT_EQ("(changed)  Edit: x.txt", str(FileMenu::titleFor("Edit: ", "x.txt", true)));
    EXPECT_EQ("Edit: (No name)", str(FileMenu::titleFor("Edit: ", "no-file", false)));
    EXPECT_EQ("(No name)", str(FileMenu::titleFor("", "", false)));
}

// A temporary directory, and an owner that writes its text when the menu saves.
class FileMenuTest : public ::testing::Test {
protected:
    void SetUp() override {
        directory = "/tmp/tarn_filemenu_testXXXXXX";
        directory = mkdtemp(&directory[0]);
        file = directory + "/work.txt";
        std::ofstream(file) << "old";
        owner = new Integer;
        shell = new CppShell("Shell", 0);
        bar = new MenuBar("Bar", shell);
        menu = new FileMenu(*owner, *shell, *bar, "Edit: ", ".txt", FileMenu::WITH_SAVE,
                            FileMenu::PRINT | FileMenu::QUIT | FileMenu::CHDIR);
        events.clear();
        for (const Symbol* e : {&FileMenuNew, &FileMenuLoad, &FileMenuSave, &FileMenuSaveAs, &FileMenuExit,
                                &FileMenuQuit, &FileMenuKill, &FileMenuChDir})
            owner->addCback(*e, record);
    }
    void TearDown() override {
        delete menu;
        delete shell;
        delete owner;
        chmod(directory.c_str(), 0755);
        std::system(("rm -rf " + directory).c_str());
    }

    // Each event with its text; a save writes "new" into the name given.
    static void record(Cback& cb) {
        std::string text = cb.callData ? cb.callData->asCharPointer() : "";
        events.push_back(std::string(cb.event.name().asCharPointer()) + (text.empty() ? "" : " " + text));
        if (cb.event == FileMenuSave) std::ofstream(text) << "new";
    }

    static std::vector<std::string> events;
    std::string directory;
    std::string file;
    Integer* owner;  // a member object would make the destructor throw
    CppShell* shell;
    MenuBar* bar;
    FileMenu* menu;
};

std::vector<std::string> FileMenuTest::events;

TEST_F(FileMenuTest, entriesOfTheFileKindWithPrintAndQuit) {
    PulldownMenu& m = menu->menu();
    for (const char* name : {"New", "Open...", "Save", "Save As...", "Exit", "Print", "Quit"})
        EXPECT_TRUE(m.hasChoice(name)) << name;
    EXPECT_EQ("F2", str(m.keysOf("Open...")));
    EXPECT_EQ("Ctrl+P", str(m.keysOf("Print")));
    EXPECT_EQ("Edit: (No name)", str(shell->title()));
}

// chDir asks for a directory and makes it the working directory; an empty answer and a missing
// directory are refused with their messages.
TEST_F(FileMenuTest, chDirChangesTheWorkingDirectory) {
    EXPECT_TRUE(menu->menu().hasChoice("chDir"));
    char here[4096];
    std::string previous = getcwd(here, sizeof here);
    Answers answers;
    answers.file = directory;
    ASSERT_TRUE(menu->changeDirectory());
    EXPECT_EQ(directory, std::string(getcwd(here, sizeof here)));
    EXPECT_EQ((std::vector<std::string>{"Directory Selection"}), answers.dialogues);
    EXPECT_EQ((std::vector<std::string>{"FileMenuChDir " + directory}), events);
    EXPECT_FALSE(menu->changeDirectory(""));
    EXPECT_FALSE(menu->changeDirectory((directory + "/absent").c_str()));
    ASSERT_EQ(2u, answers.messages.size());
    EXPECT_EQ("Error: One directory must be specified", answers.messages[0]);
    ASSERT_EQ(0, chdir(previous.c_str()));
}

TEST_F(FileMenuTest, saveKeepsTheOldFileAsBak) {
    ASSERT_TRUE(menu->openFile(file.c_str()));
    EXPECT_EQ("Edit: " + file, str(shell->title()));
    menu->setChanged(true);
    EXPECT_EQ("(changed)  Edit: " + file, str(shell->title()));
    EXPECT_TRUE(menu->save());
    EXPECT_EQ("new", fileText(file));
    EXPECT_EQ("old", fileText(file + ".bak"));
    EXPECT_FALSE(exists(file + ".tmp"));
    EXPECT_FALSE(menu->isChanged());
    EXPECT_EQ((std::vector<std::string>{"FileMenuLoad " + file, "FileMenuSave " + file + ".tmp"}), events);
}

TEST_F(FileMenuTest, readOnlyTmpRefusesTheSaveBeforeAnythingIsWritten) {
    menu->setFileName(file.c_str());
    std::ofstream(file + ".tmp") << "stale";
    chmod((file + ".tmp").c_str(), 0444);
    Answers answers;
    EXPECT_FALSE(menu->save());
    EXPECT_TRUE(events.empty());
    EXPECT_EQ("old", fileText(file));
    EXPECT_FALSE(exists(file + ".bak"));
    ASSERT_EQ(1u, answers.messages.size());
    EXPECT_EQ("Error: " + file + ".tmp\n\n The file cannot be written", answers.messages[0]);
}

TEST_F(FileMenuTest, ownerThatWritesNothingGetsTheWriteError) {
    menu->setFileName(file.c_str());
    owner->removeCbacks(FileMenuSave);
    Answers answers;
    EXPECT_FALSE(menu->save());
    EXPECT_EQ(std::vector<std::string>{"Error: Write error on " + file}, answers.messages);
    EXPECT_EQ("old", fileText(file));
}

TEST_F(FileMenuTest, changedWorkAsksBeforeItIsDropped) {
    menu->setChanged(true);
    Answers answers;
    answers.replies = {false, true};
    EXPECT_FALSE(menu->newFile());
    EXPECT_TRUE(events.empty());
    EXPECT_TRUE(menu->newFile());
    EXPECT_EQ(std::vector<std::string>{"FileMenuNew"}, events);
    EXPECT_EQ(2u, answers.questions.size());
    EXPECT_EQ("Work does not yet saved\n\nContinue ?", answers.questions[0]);
    EXPECT_FALSE(menu->isChanged());
}

TEST_F(FileMenuTest, openGoesThroughTheDialogueAndTheTests) {
    Answers answers;
    EXPECT_FALSE(menu->openFile());
    EXPECT_EQ(std::vector<std::string>{"File Selection"}, answers.dialogues);
    answers.file = directory + "/absent.txt";
    EXPECT_FALSE(menu->openFile());
    EXPECT_EQ("Error: " + answers.file + "\n\n The file does not exist", answers.messages.back());
    answers.file = file;
    menu->menu().choose("Open...");
    EXPECT_EQ(std::vector<std::string>{"FileMenuLoad " + file}, events);
}

TEST_F(FileMenuTest, saveAsAsksBeforeOverwriting) {
    std::string other = directory + "/other.txt";
    std::ofstream(other) << "other";
    Answers answers;
    answers.replies = {false};
    EXPECT_FALSE(menu->saveAs(other.c_str()));
    EXPECT_EQ(std::vector<std::string>{other + " already exists\n\nOverwrite it ?"}, answers.questions);
    EXPECT_EQ("other", fileText(other));
    answers.replies = {true};
    EXPECT_TRUE(menu->saveAs(other.c_str()));
    EXPECT_EQ("new", fileText(other));
    EXPECT_EQ((std::vector<std::string>{"FileMenuSaveAs " + other, "FileMenuSave " + other + ".tmp"}),
              events);
}

TEST_F(FileMenuTest, exitQuitAndTheWindowsClose) {
    menu->setFileName(file.c_str());
    menu->setChanged(true);
    Answers answers;
    answers.replies = {false};
    menu->menu().choose("Exit");
    menu->menu().choose("Quit");
    answers.replies = {true};
    shell->closeRequested();
    EXPECT_EQ((std::vector<std::string>{"FileMenuExit", "FileMenuQuit", "FileMenuSave " + file + ".tmp",
                                        "FileMenuKill"}),
              events);
    EXPECT_EQ(2u, answers.questions.size());
    EXPECT_EQ("Save work before exit ?", answers.questions[0]);
}

TEST_F(FileMenuTest, fileTestsAppendTheirMessages) {
    String message;
    EXPECT_FALSE(isExistingFile((directory + "/none").c_str(), message));
    EXPECT_TRUE(isReadableFile(file.c_str(), message));
    chmod(file.c_str(), 0222);
    EXPECT_FALSE(isReadableFile(file.c_str(), message));
    chmod(file.c_str(), 0444);
    EXPECT_FALSE(isWritableFile(file.c_str(), false, message));
    chmod(directory.c_str(), 0555);
    EXPECT_FALSE(isDirectoryUsable(directory.c_str(), message));
    chmod(directory.c_str(), 0444);
    EXPECT_FALSE(isDirectoryUsable(directory.c_str(), message));
    EXPECT_FALSE(isDirectoryUsable((directory + "/none").c_str(), message));
    EXPECT_EQ(
        "\n\n The file does not exist\n\n The file cannot be read\n\n The file cannot be written"
        "\n\n Cannot write in the directory\n\n The exec bit of the directory is not set"
        "\n\n The directory does not exist",
        str(message));
}

TEST_F(FileMenuTest, objectsReadFromFilesAndStringsCheckTheirClass) {
    String text, message;
    FloatPoint point(1.5, 2);
    ASSERT_TRUE(writeObjectToString(point, text, 1000, message));
    EXPECT_FALSE(writeObjectToString(point, text, 5, message));
    Object* back = readObjectFromString(text.asCharPointer(), &class_FloatPoint, message);
    ASSERT_TRUE(back);
    EXPECT_TRUE(back->isEqual(point));
    delete back;
    EXPECT_EQ(nullptr, readObjectFromString(text.asCharPointer(), &class_Integer, message));
    std::ofstream(file) << text.asCharPointer();
    back = readObject(file.c_str(), &class_FloatPoint, message);
    ASSERT_TRUE(back);
    delete back;
    std::ofstream(file) << "garbage";
    EXPECT_EQ(nullptr, readObject(file.c_str(), 0, message));
    EXPECT_EQ("Object too big to write on string" +
                  std::string("Read bad class\n\nexpected class Integer\n\nread class FloatPoint") +
                  "\n\n Read error on the file\n\n" + file + "\n\n Bad file",
              str(message));
}

}  // namespace
