// BaseCmndPanel: the window, its menus, the work directory and the open editors.
#include "panel/basepane.h"

#include <unistd.h>

#include <climits>
#include <cstdio>

#include "editor/textshow.h"
#include "panel/config.h"
#include "quill/cback.h"
#include "quill/quillerr.h"
#include "trellis/ask.h"
#include "trellis/dispatch.h"
#include "trellis/form.h"
#include "trellis/label.h"
#include "trellis/menu.h"
#include "trellis/shell.h"

DEFINE_ABSTRACT_CLASS(BaseCmndPanel, Object, 1, 0)

Symbol CmndPanelClosed("CmndPanelClosed");

namespace {

const int WIDTH = 560;
const int HEIGHT = 420;
const int GAP = 4;
const unsigned EDITOR_CAPACITY = 16;
const char* const DIRECTORY_PROMPT = "Work Directory > ";

String currentDirectory() {
    char buffer[PATH_MAX];
    return String(getcwd(buffer, sizeof buffer) ? buffer : ".");
}

}  // namespace

BaseCmndPanel::BaseCmndPanel(const char* title, const char* variable)
    : window(new CppShell("CmndPanel", topLevelWidget, title)),
      variable(variable),
      editorTable(EDITOR_CAPACITY),
      batchWindow(0),
      outputWindow(0),
      open(true) {
    layout = new CppForm("CmndPanelForm", window);
    bar = new MenuBar("MenuBar", layout);
    layout->attachAt(*bar, 0, 0);
    layout->attachHorizontal(bar, layout, 0);
    dirLabel = new CppLabel("DirLabel", layout, "");
    layout->attachHorizontal(layout, dirLabel, GAP);
    layout->attachHorizontal(dirLabel, layout, GAP);
    layout->attachVertical(bar, dirLabel, GAP);
    buildMenus();
    chDir(".");
    window->resize(WIDTH, HEIGHT);
    applyGeometry(configuration.geometry);
    window->addCback(WindowManagerCloseRequest, cbackMethod<&BaseCmndPanel::closeRequested>, *this);
    window->addCback(FilesDropped, cbackMethod<&BaseCmndPanel::filesDropped>, *this);
}

BaseCmndPanel::~BaseCmndPanel() noexcept(false) {
    destroyEditors();
    deleteClosed();
    delete batchWindow;
    delete outputWindow;
    if (validObject(window)) delete window;
}

void BaseCmndPanel::buildMenus() {
    commands = new PulldownMenu("CommandMenu", bar, "Command");
    commands->addCback(MenuPressed, cbackMethod<&BaseCmndPanel::commandChosen>, *this);
    PulldownMenu* help = new PulldownMenu("HelpMenu", bar, "&Help");
    help->addChoice("&About");
    help->addCback(MenuPressed, cbackMethod<&BaseCmndPanel::helpChosen>, *this);
}

// The configuration's "WIDTHxHEIGHT+X+Y", each part optional after the size.
void BaseCmndPanel::applyGeometry(const std::string& geometry) {
    int width, height, x, y;
    int parts = std::sscanf(geometry.c_str(), "%dx%d+%d+%d", &width, &height, &x, &y);
    if (parts >= 2 && width > 0 && height > 0) window->resize(width, height);
    if (parts == 4) window->move(x, y);
}

void BaseCmndPanel::start() {
    addToolEntries();
    window->realize();
}

void BaseCmndPanel::run() {
    if (!topLevelWidget->isRealized()) topLevelWidget->realize();
    while (open) {
        try {
            dispatchOne();
        } catch (TarnException* e) {
            showMessage(e->what(), "Error", MESSAGE_ERROR);
            delete e;
        }
    }
    exitLoop(0);
}

void BaseCmndPanel::commandChosen(Cback& cb) { menuCommand(commands->choiceOf(cb).asCharPointer()); }

void BaseCmndPanel::helpChosen(Cback&) { about(); }

void BaseCmndPanel::about() {
    String text(aboutText());
    text += "\n\nBuilt with the Tarn libraries; sources, examples and help come with the program.";
    showMessage(text.asCharPointer(), "About");
}

bool BaseCmndPanel::chDir(const char* name) {
    if (access(name, F_OK) != 0 || chdir(name) != 0) {
        showMessage((String("Directory does not exist\n\n") + name).asCharPointer(), "Change Dir...",
                    MESSAGE_ERROR);
        return false;
    }
    directory = currentDirectory();
    dirLabel->setText((String(DIRECTORY_PROMPT) + directory).asCharPointer());
    return true;
}

void BaseCmndPanel::dropFile(const char*) {}

void BaseCmndPanel::filesDropped(Cback& cb) {
    OrderedCltn* names = CAST(OrderedCltn, cb.callData->asObject());
    for (int i = 0; i < (int)names->size(); ++i) dropFile(names->at(i)->asCharPointer());
}

bool BaseCmndPanel::quit() {
    if (editorTable.size() > 0 &&
        !askQuestion("Some editor is open\nIf you continue it will be destroyed.\n\n Continue ?"))
        return false;
    destroyEditors();
    window->close();
    open = false;
    cbackOn(CmndPanelClosed);
    return true;
}

void BaseCmndPanel::closeRequested(Cback&) { quit(); }

void BaseCmndPanel::addEditor(Object& editor, const Symbol& closing) {
    editorTable.add(editor);
    editor.addCback(closing, cbackMethod<&BaseCmndPanel::editorClosed>, *this);
}

void BaseCmndPanel::removeEditor(Object& editor) { editorTable.removeSame(editor); }

// The editor raised its closing event from inside its own code: it lives until the next command.
void BaseCmndPanel::editorClosed(Cback& cb) {
    if (editorTable.indexOfSame(*cb.owner) < 0) return;
    removeEditor(*cb.owner);
    closedEditors.add(*cb.owner);
}

void BaseCmndPanel::destroyEditors() {
    while (editorTable.size() > 0) delete editorTable.removeLast();
}

void BaseCmndPanel::deleteClosed() {
    while (closedEditors.size() > 0) delete closedEditors.removeLast();
}
