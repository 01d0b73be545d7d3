// BaseCmndPanel's commands: the tools, the batch processing and the file operations.
#include <unistd.h>

#include <cstdlib>
#include <string>

#include "editor/textshow.h"
#include "panel/basepane.h"
#include "panel/batch.h"
#include "panel/fileops.h"
#include "panel/rundlg.h"
#include "panel/start.h"
#include "panel/tools.h"
#include "quill/cback.h"
#include "trellis/ask.h"
#include "trellis/console.h"
#include "trellis/menu.h"
#include "trellis/shell.h"

namespace {

// The script in the tools' folder, written afresh so that it carries the environment in force.
std::string toolScript(const char* name) {
    std::string folder = toolFolder();
    writeToolScripts(folder);
    return folder + name;
}

}  // namespace

void BaseCmndPanel::addToolEntries() {
    commands->addSeparator();
    for (const char* const* entry = panelToolEntries; *entry; ++entry)
        if (**entry)
            commands->addChoice(*entry);
        else
            commands->addSeparator();
}

void BaseCmndPanel::menuCommand(const char* label) {
    deleteClosed();
    String entry(label);
    if (entry == "Make")
        make();
    else if (entry == "Terminal")
        terminal();
    else if (entry == "Run Program")
        runProgram();
    else if (entry == "Show standard output")
        showStandardOutput();
    else if (entry == "Batch processing")
        batchProcessing();
    else if (entry == "Change Dir...")
        changeDirectory();
    else if (entry == "Copy file...")
        copyFile();
    else if (entry == "Move file...")
        moveFile();
    else if (entry == "Remove file...")
        removeFile();
    else if (entry == "Lumen on Tarn Library")
        startFromRoot("/bin/lumen", "cppTarn.lum");
    else if (entry == "Start Tarn Animator")
        startFromRoot("/motionpane", 0);
    else if (entry == "Quit")
        quit();
}

// The makefile of the work directory, or a ".mak" file asked for.
void BaseCmndPanel::make() {
    String file("makefile");
    if (access("makefile", R_OK) != 0 && access("Makefile", R_OK) != 0 &&
        !askFileName(file, "Make", "Make file", ".mak", false))
        return;
    if (access(file.asCharPointer(), R_OK) != 0) file = "Makefile";
    startCommand({toolScript("/tarn_make.sh"), "-f", file.asCharPointer()});
}

void BaseCmndPanel::terminal() { startCommand({toolScript("/tarn_term.sh")}); }

void BaseCmndPanel::runProgram() {
    RunDialog dialog(window);
    std::vector<std::string> words = dialog.askCommand();
    if (!words.empty()) startCommand(words);
}

// The ".bdc" list asked for, its documents written, and the log in the "Batch Window".
void BaseCmndPanel::batchProcessing() {
    String list;
    if (!askFileName(list, "Build Documents", "Build list", ".bdc", false) || list.size() == 0) return;
    std::string log;
    buildDocuments(list.asCharPointer(), "html", log);
    showText(batchWindow, "Batch Window", log.c_str());
}

// What the program wrote on cout and cerr, as the console holds it.
void BaseCmndPanel::showStandardOutput() {
    showText(outputWindow, "Panel cout / cerr", console ? console->text().asCharPointer() : "");
}

void BaseCmndPanel::showText(TextShower*& shower, const char* title, const char* text) {
    if (!shower) {
        shower = new TextShower("TextShower", 0, title);
        shower->getShell().addCback(WindowManagerCloseRequest, cbackMethod<&BaseCmndPanel::showerClosing>,
                                    *this);
    }
    shower->show(text);
    shower->getShell().realize();
    shower->getShell().raise();
}

void BaseCmndPanel::showerClosing(Cback& cb) { CAST(CppShell, cb.owner)->close(); }

// A tool under the root that the panel's variable names.
void BaseCmndPanel::startFromRoot(const char* tool, const char* argument) {
    const char* root = std::getenv(variable.asCharPointer());
    if (!root || !*root) {
        showMessage("TARN_PATH environment variable not found", "Tarn Panel", MESSAGE_ERROR);
        return;
    }
    std::vector<std::string> words = {std::string(root) + tool};
    if (argument) words.push_back(argument);
    startCommand(words);
}

void BaseCmndPanel::changeDirectory() {
    String name(directory);
    if (askDirectory(name, "Change Dir...", "Change Dir...")) chDir(name.asCharPointer());
}
