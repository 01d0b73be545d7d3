// The thin widgets: lists, combo boxes, toggles, the button with a menu; and the help lookup.
#include <gtest/gtest.h>
#include <stdlib.h>

#include <fstream>

#include "quill/cback.h"
#include "trellis/button.h"
#include "trellis/form.h"
#include "trellis/help.h"
#include "trellis/list.h"
#include "trellis/menu.h"
#include "trellis/shell.h"
#include "trltest.h"

namespace {

std::string str(const String& s) { return s.asCharPointer(); }

std::vector<int> indices;
void noteIndex(Cback& cb) { indices.push_back(cb.callData->asInt()); }

class WidgetsTest : public ::testing::Test {
protected:
    void SetUp() override {
        shell = new CppShell("Widgets", 0);
        form = new CppForm("Form", shell);
        indices.clear();
    }
    void TearDown() override { delete shell; }
    CppShell* shell;
    CppForm* form;
};

TEST_F(WidgetsTest, listRaisesTheIndexChosen) {
    CppList* list = new CppList("List", form);
    list->addCback(ListCback, noteIndex);
    for (const char* item : {"one", "two", "three"}) list->addItem(item);
    EXPECT_EQ(3, list->itemCount());
    list->select(2);
    EXPECT_EQ(2, list->selectedIndex());
    EXPECT_EQ("three", str(list->itemText(2)));
    EXPECT_EQ("", str(list->itemText(7)));
    list->removeAll();
    EXPECT_EQ(-1, list->selectedIndex());
    EXPECT_EQ(std::vector<int>{2}, indices);
}

TEST_F(WidgetsTest, comboBoxKeepsItemsAndTypedText) {
    ComboBox* combo = new ComboBox("Command", form);
    combo->addItem("first");
    combo->addItem("second");
    combo->setCurrentIndex(1);
    EXPECT_EQ("second", str(combo->text()));
    combo->setText("typed");
    EXPECT_EQ("typed", str(combo->text()));
    EXPECT_EQ(2, combo->itemCount());
}

TEST_F(WidgetsTest, radioTogglesOfOneParentExcludeEachOther) {
    ToggleButton* a = new ToggleButton("A", form, "A", true);
    ToggleButton* b = new ToggleButton("B", form, "B", true);
    b->addCback(ToggleButtonChanged, noteIndex);
    a->setState(true);
    b->setState(true);
    EXPECT_FALSE(a->state());
    a->setState(true);
    EXPECT_FALSE(b->state());
    EXPECT_EQ((std::vector<int>{1, 0}), indices);
}

TEST_F(WidgetsTest, buttonMenuHoldsItsMenuAndAccelerator) {
    ButtonMenu* button = new ButtonMenu("CmndMenu", form, "Open", "Meta<Key>B");
    for (const char* entry : {"Open", "Modify", "Comment", "Transform", "Link"})
        button->menu().addChoice(entry);
    EXPECT_EQ(5, button->menu().choiceCount());
    EXPECT_EQ("Open", str(button->label()));
}

TEST(HelpTest, topicsByKeywordFromTheHelpFile) {
    std::string directory = "/tmp/tarn_help_testXXXXXX";
    directory = mkdtemp(&directory[0]);
    std::ofstream(directory + "/helpfile.tarn")
        << "contents   index.html\nEditor     editor.html\nEditorial  no\n";
    std::string former = getenv("TARN_HELP_PATH") ? getenv("TARN_HELP_PATH") : "";
    setenv("TARN_HELP_PATH", directory.c_str(), 1);
    String topic, message;
    EXPECT_TRUE(helpTopic("Editor", 0, topic, message));
    EXPECT_EQ("editor.html", str(topic));
    EXPECT_TRUE(helpTopic("", 0, topic, message));
    EXPECT_EQ("index.html", str(topic));
    EXPECT_FALSE(helpTopic("Edit", 0, topic, message));
    EXPECT_EQ("No Help Present\n Keyword = Edit", str(message));
    EXPECT_FALSE(helpTopic("Editor", "missing.tarn", topic, message));
    EXPECT_EQ("Help file not found\n\n Keyword = Editor", str(message));
    Answers answers;
    showHelp("Editorial");
    EXPECT_EQ(std::vector<std::string>{"Help: no"}, answers.messages);
    setenv("TARN_HELP_PATH", former.c_str(), 1);
    std::system(("rm -rf " + directory).c_str());
}

}  // namespace
