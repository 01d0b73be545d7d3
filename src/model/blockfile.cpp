// BlockIcon: a block read from a ".dyn" file, chosen in a window of its own that starts in the HOME folder.
#include <sys/stat.h>

#include <cstdlib>
#include <fstream>
#include <iostream>

#include "control/dynop.h"
#include "model/blockicon.h"
#include "quill/cback.h"
#include "quill/filename.h"
#include "quill/objio.h"
#include "trellis/ask.h"
#include "trellis/filemenu.h"
#include "trellis/form.h"
#include "trellis/menu.h"
#include "trellis/shell.h"

std::vector<std::string>& BlockIcon::usedNames() {
    static std::vector<std::string> names;
    return names;
}

const char* BlockIcon::loadBlockFile(const char* fileName) {
    std::ifstream is(fileName);
    String error;
    Object* read = is ? readFromChecked(error, is) : 0;
    if (!is) error = "cannot open the file";
    if (!read || read == nil)
        loadMessage = String("Error loading file ") + fileName + " : " + error;
    else if (!read->isKindOf(class_DynOp))
        loadMessage = String("Invalid class loaded ") + read->className();
    else
        loadMessage = "";
    if (loadMessage.size() > 0) {
        std::cerr << loadMessage << std::endl;
        if (read && read != nil) delete read;
        return loadMessage.asCharPointer();
    }
    String name = baseName(fileName);
    setFromOperator(*static_cast<DynOp*>(read), name.asCharPointer());
    delete read;
    blockFile_ = fileName;
    fileLoaded = 1;
    usedNames().push_back(name.asCharPointer());
    return 0;
}

namespace {

// The folder the file window opens in: HOME, or the working directory when
// HOME names no folder, which is told.
String startFolder() {
    const char* home = std::getenv("HOME");
    struct stat info;
    if (home && stat(home, &info) == 0 && S_ISDIR(info.st_mode)) return String(home) + "/";
    showMessage((String("Directory does not exist\n\n") + (home ? home : "")).asCharPointer(), "Error",
                MESSAGE_ERROR);
    return String();
}

// The loader's window: a panel with a form, a menu bar and the file menu
// that reads the chosen file into the block.
class BlockLoader {
public:
    explicit BlockLoader(BlockIcon& block)
        : block(block), panel(new CppShell("blockLoader", topLevelWidget, "Command Panel")) {
        CppForm* form = new CppForm("form", panel);
        MenuBar* bar = new MenuBar("menuBar", form);
        menu = new FileMenu(block, *panel, *bar, "Command Panel", ".dyn", FileMenu::RESTORE_ONLY);
        block.addCback(FileMenuLoad, cbackMethod<&BlockIcon::fileChosen>, block);
    }
    ~BlockLoader() {
        block.removeCback(FileMenuLoad, cbackMethod<&BlockIcon::fileChosen>, block);
        delete menu;
        delete panel;
    }
    bool open(const String& fileName) { return menu->openFile(fileName.asCharPointer()); }

private:
    BlockIcon& block;
    CppShell* panel;
    FileMenu* menu = 0;
};

}  // namespace

void BlockIcon::fileChosen(Cback& cb) { loadBlockFile(cb.callData->asCharPointer()); }

bool BlockIcon::chooseBlockFile() {
    String chosen = startFolder();
    if (!askFileName(chosen, "Load File Selection", "File name to Load", ".dyn", false)) return false;
    loadMessage = "Error loading file " + chosen;
    BlockLoader loader(*this);
    return loader.open(chosen) && loadMessage.size() == 0;
}
