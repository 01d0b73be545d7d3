// MainLib's window: the menu bar, the global and main panes, the command line, the output, and the menus'
// actions.
#include <cctype>

#include "interpreter/panel/mainlib.h"
#include "quill/cback.h"
#include "trellis/ask.h"
#include "trellis/button.h"
#include "trellis/form.h"
#include "trellis/help.h"
#include "trellis/label.h"
#include "trellis/list.h"
#include "trellis/menu.h"
#include "trellis/scrollb.h"
#include "trellis/shell.h"
#include "trellis/text.h"

namespace {

const int WIDTH = 780;
const int HEIGHT = 640;
const int GAP = 4;
const int REDO_WIDTH = 100;

const char* const fileEntries[] = {
    "New         | Alt+N",      "Open Global...     |    F2", "Append Global...     |    F3",
    "Open Main...     |    F4", "&Save       |    F5",        "Save Global &As... | Alt+S",
    "Save Main &As... | Alt+V", "E&xit       | Alt+X",        "Quit        | Alt+Q"};

// The pane's label above it, the pane in its viewport from the label down to bottomPercent.
CppText* addPane(CppForm& form, CppWidget* above, CppLabel* label, const char* name, int bottomPercent) {
    CppViewport* viewport = new CppViewport(name, &form);
    CppText* text = new CppText("Text", viewport, true, 8, 80);
    text->setFocusFlag(true);
    form.attachHorizontal(&form, label, GAP);
    form.attachHorizontal(label, &form, GAP);
    form.attachVertical(above, label, GAP);
    form.attachHorizontal(&form, viewport, GAP);
    form.attachHorizontal(viewport, &form, GAP);
    form.attachVertical(label, viewport, 2);
    form.attachBottomPercent(*viewport, bottomPercent);
    return text;
}

}  // namespace

void MainLib::buildWindow() {
    CppForm* form = new CppForm("MainLibForm", window);
    bar = new MenuBar("MenuBar", form);
    form->attachAt(*bar, 0, 0);
    form->attachHorizontal(bar, form, 0);
    buildMenus();
    buildPanes(*form);
    buildCommandLine(*form);
    window->resize(WIDTH, HEIGHT);
    window->addCback(WindowManagerCloseRequest, cbackMethod<&MainLib::closeRequested>, *this);
    showFileNames();
}

void MainLib::buildPanes(CppForm& form) {
    globalLabel = new CppLabel("GlobalLabel", &form, "");
    globalPane = addPane(form, bar, globalLabel, "GlobalViewport", 36);
    mainLabel = new CppLabel("MainLabel", &form, "");
    mainPane = addPane(form, globalPane->parent(), mainLabel, "MainViewport", 64);
    globalPane->addCback(CppTextChanged, cbackMethod<&MainLib::textEdited>, *this);
    mainPane->addCback(CppTextChanged, cbackMethod<&MainLib::textEdited>, *this);
}

// The row "Command" with its button under the main pane, and the output pane below it to the bottom.
void MainLib::buildCommandLine(CppForm& form) {
    CppWidget* above = mainPane->parent();
    CppLabel* label = new CppLabel("CommandLabel", &form, "Command");
    commandBox = new ComboBox("Command", &form);
    redo = new CppCommand("RedoAllButton", &form, "RE DO ALL");
    form.attachHorizontal(&form, label, GAP);
    form.attachVertical(above, label, GAP + 4);
    form.attachHorizontal(label, commandBox, GAP);
    form.attachVertical(above, commandBox, GAP);
    form.attachLeftFromRight(*redo, REDO_WIDTH + GAP);
    form.attachHorizontal(redo, &form, GAP);
    form.attachRightToSibling(*commandBox, *redo, GAP);
    form.attachVertical(above, redo, GAP);
    CppViewport* viewport = new CppViewport("OutputViewport", &form);
    outputPane = new CppText("Text", viewport, true, 6, 80);
    outputPane->setReadOnly(true);
    form.attachHorizontal(&form, viewport, GAP);
    form.attachHorizontal(viewport, &form, GAP);
    form.attachVertical(commandBox, viewport, GAP);
    form.attachVertical(viewport, &form, GAP);
    commandBox->setFocusFlag(true);
    commandBox->addCback(ComboBoxChanged, cbackMethod<&MainLib::commandEntered>, *this);
    redo->addCback(CppCommandPressed, cbackMethod<&MainLib::redoPressed>, *this);
}

void MainLib::buildMenus() {
    files = new PulldownMenu("FileMenu", bar, "&File");
    for (const char* entry : fileEntries) files->addChoice(entry);
    files->addCback(MenuPressed, cbackMethod<&MainLib::fileChosen>, *this);
    PulldownMenu* reference = new PulldownMenu("ReferenceMenu", bar, "&Reference");
    reference->addChoice("global functions");
    reference->addChoice("types");
    reference->addCback(MenuPressed, cbackMethod<&MainLib::referenceChosen>, *this);
    PulldownMenu* variableMenu = new PulldownMenu("VariablesMenu", bar, "&Variables");
    variableMenu->addChoice("List of variables");
    variableMenu->addCback(MenuPressed, cbackMethod<&MainLib::variablesChosen>, *this);
    PulldownMenu* help = new PulldownMenu("HelpMenu", bar, "&Help");
    help->addChoice("&Contents");
    help->addChoice("&About");
    help->addCback(MenuPressed, cbackMethod<&MainLib::helpChosen>, *this);
}

void MainLib::fileChosen(Cback& cb) {
    String entry = files->choiceOf(cb);
    if (entry == "New")
        newWork();
    else if (entry == "Open Global...")
        openGlobal();
    else if (entry == "Append Global...")
        appendGlobal();
    else if (entry == "Open Main...")
        openMain();
    else if (entry == "Save")
        save();
    else if (entry == "Save Global As...")
        saveGlobalAs();
    else if (entry == "Save Main As...")
        saveMainAs();
    else if (entry == "Exit")
        exit();
    else if (entry == "Quit")
        quit();
}

// The help topic "Interpreter_" and the entry's words run together, each word after the first
// capitalised: "global functions" is "Interpreter_globalFunctions".
void MainLib::referenceChosen(Cback& cb) {
    String entry = CAST(MotifMenu, cb.owner)->choiceOf(cb);
    String word;
    bool wordStart = false;
    for (const char* c = entry.asCharPointer(); *c; ++c) {
        if (*c == ' ') {
            wordStart = word.size() > 0;
            continue;
        }
        word += wordStart ? char(std::toupper(static_cast<unsigned char>(*c))) : *c;
        wordStart = false;
    }
    if (word.size() == 0) word = "globalFunctions";
    showHelp((String("Interpreter_") + word).asCharPointer());
}

void MainLib::variablesChosen(Cback&) { showVariables(); }

void MainLib::helpChosen(Cback& cb) {
    String entry = CAST(MotifMenu, cb.owner)->choiceOf(cb);
    if (entry == "Contents")
        showHelp("contents");
    else
        showMessage(
            "Interpreter\nthe resident window of Tarn's language: one line at a time\n"
            "against a text of global functions",
            "About");
}

void MainLib::closeRequested(Cback&) { exit(); }

void MainLib::textEdited(Cback&) {
    if (!settingText) changed = true;
}

void MainLib::showFileNames() {
    globalLabel->setText(
        (String("Global functions: ") + (globalFile.size() ? globalFile : String("(No name)")))
            .asCharPointer());
    mainLabel->setText(
        (String("Main: ") + (mainFile.size() ? mainFile : String("(No name)"))).asCharPointer());
}
