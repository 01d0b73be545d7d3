// MainLib: its life, and the file cycle of the global functions and the main text.
#include "interpreter/panel/mainlib.h"

#include <fstream>
#include <sstream>

#include "interpreter/panel/varlist.h"
#include "quill/cback.h"
#include "quill/safefile.h"
#include "trellis/ask.h"
#include "trellis/filetest.h"
#include "trellis/list.h"
#include "trellis/shell.h"
#include "trellis/text.h"

DEFINE_ABSTRACT_CLASS(MainLib, Object, 1, 0)

Symbol MainLibExit("MainLibExit");

namespace {

const char* const EXTENSION = ".cxx";

bool askLoadName(String& name) {
    return askFileName(name, "Load File Selection", "File name to Load", EXTENSION, false);
}

}  // namespace

MainLib::MainLib(CppWidget* parent)
    : executer(&parser),
      window(new CppShell("Interpreter", parent ? parent : topLevelWidget, "Interpreter")),
      variables(0),
      changed(false),
      settingText(false) {
    buildWindow();
    window->realize();
    commandBox->setFocus();
}

MainLib::~MainLib() noexcept(false) {
    if (validObject(window)) delete window;
}

bool MainLib::newWork() {
    if (changed && !askQuestion("Work does not yet saved\n\nContinue ?")) return false;
    settingText = true;
    globalPane->setText("");
    mainPane->setText("");
    outputPane->setText("");
    settingText = false;
    globalFile = "";
    mainFile = "";
    executer.clear();
    changed = false;
    showFileNames();
    return true;
}

bool MainLib::openGlobal(const char* name) { return loadInto(*globalPane, globalFile, name, false); }

bool MainLib::appendGlobal(const char* name) { return loadInto(*globalPane, globalFile, name, true); }

bool MainLib::openMain(const char* name) { return loadInto(*mainPane, mainFile, name, false); }

// Reads the file into the pane, which then names that file, or behind its text.
bool MainLib::loadInto(CppText& pane, String& fileName, const char* name, bool append) {
    String chosen(name ? name : "");
    if (!name && !askLoadName(chosen)) return false;
    if (!isReadableFile(chosen.asCharPointer())) return false;
    std::ifstream in(chosen.asCharPointer(), std::ios::binary);
    std::ostringstream content;
    content << in.rdbuf();
    if (append)
        pane.append(content.str().c_str());
    else {
        settingText = true;
        pane.setText(content.str().c_str());
        settingText = false;
    }
    changed = changed || append;
    if (!append) fileName = chosen;
    showFileNames();
    return true;
}

// An empty pane without a file is left out.
bool MainLib::save() {
    for (CppText* pane : {globalPane, mainPane}) {
        String& fileName = pane == globalPane ? globalFile : mainFile;
        if (fileName.size() == 0 && pane->getText().size() == 0) continue;
        if (!writePane(*pane, fileName, fileName.size() > 0 ? fileName.asCharPointer() : 0)) return false;
    }
    changed = false;
    return true;
}

bool MainLib::saveGlobalAs(const char* name) { return writePane(*globalPane, globalFile, name); }

bool MainLib::saveMainAs(const char* name) { return writePane(*mainPane, mainFile, name); }

// Writes the pane whole or not at all; a null name is asked for, and an
// existing file other than the pane's own needs leave to be overwritten.
bool MainLib::writePane(CppText& pane, String& fileName, const char* name) {
    String chosen(name ? name : fileName.asCharPointer());
    if (!name) {
        if (!askFileName(chosen, "Save File Selection", "File name to Save", EXTENSION, true)) return false;
        if (chosen.size() == 0) {
            showMessage("One file must be specified", "Error", MESSAGE_ERROR);
            return false;
        }
    }
    const char* path = chosen.asCharPointer();
    if (chosen != fileName && !askOverwrite(path)) return false;
    if (!isWritableFile(path, false)) return false;
    String content = pane.getText();
    String message = writeSafely(
        path, [&content](std::ostream& out) { out.write(content.asCharPointer(), content.size()); });
    if (message.size() > 0) {
        showMessage(message.asCharPointer(), "Error", MESSAGE_ERROR);
        return false;
    }
    fileName = chosen;
    showFileNames();
    return true;
}

bool MainLib::exit() {
    if (changed && askQuestion("Save work before exit ?") && !save()) return false;
    leave();
    return true;
}

void MainLib::quit() { leave(); }

void MainLib::leave() {
    if (variables) variables->popdown();
    window->close();
    cbackOn(MainLibExit);
}

void MainLib::showVariables() {
    if (!variables) variables = new VariablesDialog(window, executer);
    variables->fill();
    variables->popup();
}
