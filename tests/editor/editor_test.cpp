// The text editors: search, replace, go to line, the dirty state, the file cycle and the window's layout.
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>

#include "../quill/killwrit.h"
#include "../trellis/trltest.h"
#include "editor/fileedt.h"
#include "editor/textshow.h"
#include "quill/cback.h"
#include "trellis/filemenu.h"
#include "trellis/form.h"
#include "trellis/menu.h"
#include "trellis/shell.h"
#include "trellis/text.h"

namespace {

std::string str(const String& s) { return s.asCharPointer(); }

void writeFile(const std::string& name, const std::string& text) { std::ofstream(name) << text; }

bool exists(const std::string& name) {
    struct stat info;
    return stat(name.c_str(), &info) == 0;
}

std::vector<std::string> journal;
void note(Cback& cb) { journal.push_back(cb.event.name().asCharPointer()); }

class EditorTest : public ::testing::Test {
protected:
    void SetUp() override {
        directory = "/tmp/tarn_editor_testXXXXXX";
        directory = mkdtemp(&directory[0]);
        file = directory + "/notes.txt";
        writeFile(file, "alpha beta\ngamma beta\ndelta\n");
        journal.clear();
    }
    void TearDown() override {
        delete editor;
        std::system(("rm -rf " + directory).c_str());
    }
    FileEditor& open(const std::string& name) {
        editor = new FileEditor("TextEditor", 0, name.c_str());
        for (const Symbol* event : {&LoadEditor, &SaveEditor, &SaveAsEditor, &NewEditor, &FileEdtQuit})
            editor->addCback(*event, note);
        return *editor;
    }
    std::string selection() const { return str(editor->textWidget().selectedText()); }

    std::string directory;
    std::string file;
    FileEditor* editor = 0;
};

TEST_F(EditorTest, windowFillsItsShell) {
    FileEditor& e = open(file);
    int x, y, w, h, sx, sy, sw, sh;
    e.getShell().getGeometry(sx, sy, sw, sh);
    e.form().getGeometry(x, y, w, h);
    EXPECT_EQ(sw, w);
    EXPECT_EQ(sh, h);
    e.form().childNamed("TextViewport")->getGeometry(x, y, w, h);
    EXPECT_EQ(sw, w);
    EXPECT_GT(h, sh / 2);
    e.getShell().resize(500, 400);
    e.form().childNamed("TextViewport")->getGeometry(x, y, w, h);
    EXPECT_EQ(500, w);
}

TEST_F(EditorTest, searchSelectsEachHitThenWrapsOnce) {
    FileEditor& e = open(file);
    EXPECT_TRUE(e.search("beta"));
    EXPECT_EQ(6, e.textWidget().selectionStart());
    EXPECT_TRUE(e.search("beta"));
    EXPECT_EQ(17, e.textWidget().selectionStart());
    EXPECT_TRUE(e.search("beta"));
    EXPECT_EQ(6, e.textWidget().selectionStart());
    EXPECT_EQ("beta", selection());
    // Case counts, and a failed search leaves the selection.
    EXPECT_FALSE(e.search("BETA"));
    EXPECT_EQ(6, e.textWidget().selectionStart());
    EXPECT_EQ("\"BETA\" not found", str(e.status()));
    // An empty text does nothing.
    EXPECT_FALSE(e.search(""));
    EXPECT_EQ("beta", selection());
}

TEST_F(EditorTest, replaceTakesTheMatchingSelectionThenSearchesOn) {
    FileEditor& e = open(file);
    // Nothing selected yet: the first replace only finds.
    EXPECT_TRUE(e.replace("beta", "BETA"));
    EXPECT_EQ("alpha beta\ngamma beta\ndelta\n", str(e.getText()));
    EXPECT_TRUE(e.replace("beta", "BETA"));
    EXPECT_EQ("alpha BETA\ngamma beta\ndelta\n", str(e.getText()));
    EXPECT_EQ(17, e.textWidget().selectionStart());
    EXPECT_FALSE(e.replace("beta", "BETA"));
    EXPECT_EQ("alpha BETA\ngamma BETA\ndelta\n", str(e.getText()));
    EXPECT_TRUE(e.isModified());
}

TEST_F(EditorTest, goToLineCountsNewlinesAndStopsAtTheLast) {
    FileEditor& e = open(file);
    e.setText("one\ntwo\nthree");
    struct Row {
        int line;
        int caret;
    };
    for (const Row& row : {Row{1, 0}, Row{2, 4}, Row{3, 8}, Row{99, 8}, Row{0, 0}}) {
        SCOPED_TRACE(row.line);
        e.goToLine(row.line);
        EXPECT_EQ(row.caret, e.textWidget().caret());
    }
}

TEST_F(EditorTest, fieldsAndButtonsDriveTheSameOperations) {
    FileEditor& e = open(file);
    e.searchField().setText("gamma");
    static_cast<CppCommand*>(e.form().childNamed("SearchTextButton"))->press();
    EXPECT_EQ("gamma", selection());
    e.gotoField().setText("3");
    static_cast<CppCommand*>(e.form().childNamed("GotoTextButton"))->press();
    EXPECT_EQ(22, e.textWidget().caret());
}

TEST_F(EditorTest, dirtyAfterAChangeCleanAfterLoadAndSave) {
    FileEditor& e = open(file);
    EXPECT_FALSE(e.isModified());
    EXPECT_EQ("Text Editor - " + file, str(e.getShell().title()));
    e.textWidget().setCaret(0);
    e.textWidget().replaceSelection("new ");
    EXPECT_TRUE(e.isModified());
    EXPECT_EQ("(changed)  Text Editor - " + file, str(e.getShell().title()));
    EXPECT_TRUE(e.save());
    EXPECT_FALSE(e.isModified());
    EXPECT_EQ("new alpha beta\ngamma beta\ndelta\n", fileText(file));
    EXPECT_EQ("alpha beta\ngamma beta\ndelta\n", fileText(file + ".bak"));
    EXPECT_FALSE(exists(file + ".tmp"));
    e.textWidget().undo();
    EXPECT_TRUE(e.isModified());
    e.reLoad();
    EXPECT_FALSE(e.isModified());
    EXPECT_EQ("new alpha beta\ngamma beta\ndelta\n", str(e.getText()));
    EXPECT_EQ((std::vector<std::string>{"SaveEditor", "LoadEditor"}), journal);
}

TEST_F(EditorTest, aKilledSaveLeavesTheOldFile) {
    FileEditor& e = open(file);
    e.setText(std::string(100000, 'x').c_str());
    testing::internal::CaptureStderr();
    EXPECT_EQ(oldFileSurvives(file, [&] { e.save(); }), "");
    EXPECT_NE(testing::internal::GetCapturedStderr().find("Write error on " + file), std::string::npos);
}

TEST_F(EditorTest, closingAnUnchangedFileAsksNothing) {
    FileEditor& e = open(file);
    Answers answers;
    e.getShell().closeRequested();
    EXPECT_TRUE(answers.questions.empty());
    EXPECT_EQ(std::vector<std::string>{"FileEdtQuit"}, journal);
}

TEST_F(EditorTest, closingAChangedFileAsksToSaveAndSaves) {
    FileEditor& e = open(file);
    e.setText("replaced\n");
    e.textWidget().append("more\n");
    Answers answers;
    answers.replies = {true};
    e.getShell().closeRequested();
    EXPECT_EQ(std::vector<std::string>{"Save work before exit ?"}, answers.questions);
    EXPECT_EQ("replaced\nmore\n", fileText(file));
    EXPECT_EQ("FileEdtQuit", journal.back());
}

TEST_F(EditorTest, newFileNameIsCreatedBySave) {
    std::string fresh = directory + "/fresh.txt";
    FileEditor& e = open(fresh);
    EXPECT_EQ(fresh, str(e.fileName()));
    EXPECT_FALSE(exists(fresh));
    e.setText("first words\n");
    EXPECT_TRUE(e.save());
    EXPECT_EQ("first words\n", fileText(fresh));
    EXPECT_FALSE(exists(fresh + ".bak"));
}

TEST_F(EditorTest, unreadableFileKeepsTheEditorOpenWithItsMessage) {
    FileEditor& e = open("");
    EXPECT_EQ("Text Editor - (No name)", str(e.getShell().title()));
    Answers answers;
    EXPECT_FALSE(e.load((directory + "/missing.txt").c_str()));
    ASSERT_EQ(1u, answers.messages.size());
    EXPECT_EQ("Error: " + directory + "/missing.txt\n\n The file does not exist", answers.messages[0]);
    // Save without a name goes through the save dialogue, titled for this editor.
    answers.file = directory + "/named.txt";
    e.setText("kept\n");
    EXPECT_TRUE(e.save());
    EXPECT_EQ(std::vector<std::string>{"Save File Selection"}, answers.dialogues);
    EXPECT_EQ("kept\n", fileText(directory + "/named.txt"));
    EXPECT_EQ((std::vector<std::string>{"SaveAsEditor", "SaveEditor"}), journal);
}

TEST_F(EditorTest, editMenuActsOnTheTextByFirstWord) {
    FileEditor& e = open(file);
    e.textWidget().select(0, 6);
    e.editMenu().choose("Cut");
    EXPECT_EQ("beta\ngamma beta\ndelta\n", str(e.getText()));
    e.editMenu().choose("Undo");
    EXPECT_EQ("alpha beta\ngamma beta\ndelta\n", str(e.getText()));
    e.textWidget().select(0, 6);
    e.editMenu().choose("Copy");
    e.textWidget().setCaret(int(e.getText().size()));
    e.editMenu().choose("Paste");
    EXPECT_EQ("alpha beta\ngamma beta\ndelta\nalpha ", str(e.getText()));
}

TEST(TextShowerTest, showsAndAppendsButOnlyCopies) {
    TextShower shower("Panel cout / cerr", 0, "cout / cerr");
    shower.show("first\n");
    shower.append("second\n");
    EXPECT_EQ("first\nsecond\n", str(shower.getText()));
    EXPECT_TRUE(shower.textWidget().isReadOnly());
    EXPECT_EQ(1, shower.editMenu().choiceCount());
    EXPECT_TRUE(shower.editMenu().hasChoice("Copy"));
    EXPECT_EQ("cout / cerr", str(shower.getShell().title()));
}

TEST(EditorBaseTest, reLoadIsEachEditorsOwn) {
    struct Plain : public Editor {
        Plain() : Editor("Plain", 0) {}
    } plain;
    EXPECT_NE(std::string::npos, raisedText([&] { plain.reLoad(); }).find("reLoad"));
}

}  // namespace
