// Menus: the entry grammar to key sequences, the entries of a menu and what it reports.
#include "trellis/menu.h"

#include <gtest/gtest.h>

#include "quill/cback.h"
#include "trellis/entry.h"
#include "trellis/handles.h"
#include "trellis/shell.h"
#include "trltest.h"

namespace {

std::string str(const String& s) { return s.asCharPointer(); }

TEST(EntryTest, grammarToTranslationAndKeys) {
    struct Row {
        const char* entry;
        const char* label;
        const char* identity;
        const char* accelerator;
        const char* translation;
        const char* keys;
    };
    const Row rows[] = {
        {"New         | Alt+N", "New", "New", "Alt+N", "Meta<Key>N", "Alt+N"},
        {"Open...     |    F2", "Open...", "Open...", "F2", "<Key>F2", "F2"},
        {"Save &As... | Alt+S", "Save &As...", "Save As...", "Alt+S", "Meta<Key>S", "Alt+S"},
        {"Print | Ctrl+P", "Print", "Print", "Ctrl+P", "Ctrl<Key>P", "Ctrl+P"},
        {"Label|13%F9", "Label", "Label", "F9", "<Key>F9", "F9"},
        {"Step | Shift+Ctrl+F9", "Step", "Step", "Shift+Ctrl+F9", "Shift Ctrl<Key>F9", "Ctrl+Shift+F9"},
        {"Back | shift+tab", "Back", "Back", "shift+tab", "Shift<Key>tab", "Shift+Tab"},
        {"Zoom 10:&10 | Alt+0", "Zoom 10:&10", "Zoom 10:10", "Alt+0", "Meta<Key>0", "Alt+0"},
        {"E&xit", "E&xit", "Exit", "", "", ""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.entry);
        EXPECT_EQ(row.label, str(entryLabel(row.entry)));
        EXPECT_EQ(row.identity, str(entryIdentity(row.entry)));
        EXPECT_EQ(row.accelerator, str(entryAccelerator(row.entry)));
        String translation = acceleratorTranslation(entryAccelerator(row.entry).asCharPointer());
        EXPECT_EQ(row.translation, str(translation));
        EXPECT_EQ(row.keys, str(translationKeys(translation.asCharPointer())));
    }
    EXPECT_EQ("Alt+B", str(translationKeys("Meta<Key>B")));
}

class MenuTest : public ::testing::Test {
protected:
    void SetUp() override {
        shell = new CppShell("MenuShell", 0);
        bar = new MenuBar("MenuBar", shell);
        menu = new PulldownMenu("FileMenu", bar, "File");
    }
    void TearDown() override { delete shell; }

    CppShell* shell;
    MenuBar* bar;
    PulldownMenu* menu;
};

TEST_F(MenuTest, emptyMenuHoldsTheEmptyEntryAgainWhenTheLastGoes) {
    EXPECT_EQ(0, menu->choiceCount());
    int id = menu->addChoice("&Save       |    F4");
    EXPECT_EQ(1, menu->choiceCount());
    EXPECT_EQ("Save", str(menu->choiceName(id)));
    EXPECT_EQ("F4", str(menu->keysOf("Save")));
    menu->removeChoice("Save");
    EXPECT_EQ(0, menu->choiceCount());
    EXPECT_FALSE(menu->hasChoice("Save"));
}

TEST_F(MenuTest, choosingRaisesMenuPressedWithTheIdentifier) {
    static std::string chosen;
    struct Script {
        static void pressed(Cback& cb) { chosen = str(CAST(MotifMenu, cb.owner)->choiceOf(cb)); }
    };
    menu->addChoice("New         | Alt+N");
    menu->addSeparator();
    menu->addChoice("E&xit       | Alt+X");
    menu->addCback(MenuPressed, Script::pressed);
    menu->choose("Exit");
    EXPECT_EQ("Exit", chosen);
    menu->disableChoice("Exit");
    chosen = "";
    menu->choose("Exit");
    EXPECT_EQ("", chosen);
    EXPECT_FALSE(menu->isEnabled("Exit"));
    menu->enableChoice("Exit");
    EXPECT_TRUE(menu->isEnabled("Exit"));
}

TEST_F(MenuTest, unknownEntriesAreReportedAndTheMenuGoesOn) {
    menu->addChoice("New | Alt+N");
    CerrCapture cerr;
    menu->disableChoice("Nothing");
    menu->modifyChoice("Nothing", "Else");
    menu->removeChoice("Nothing");
    EXPECT_EQ(
        "bad choice to disable > Nothing\n"
        "bad choice to modify > Nothing\n"
        "Button Nothing not present in menu FileMenu\n",
        cerr.str());
    menu->modifyChoice("New", "Renew | Ctrl+R");
    EXPECT_TRUE(menu->hasChoice("Renew"));
    EXPECT_EQ("Ctrl+R", str(menu->keysOf("Renew")));
}

TEST_F(MenuTest, submenuIsAnEntryOfItsMenu) {
    PulldownMenu* sub = new PulldownMenu("Sub", menu, "More");
    sub->addChoice("Deep");
    EXPECT_EQ(1, sub->choiceCount());
    EXPECT_EQ(menu, sub->parent());
    EXPECT_EQ(sub, menuOfHandle(sub->handle()));
}

}  // namespace
