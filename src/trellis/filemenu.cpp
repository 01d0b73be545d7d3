// FileMenu: its entries, the title rules, and new, open, save with ".tmp" and ".bak", save as, exit, print.
#include "trellis/filemenu.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "quill/cback.h"
#include "quill/orderedc.h"
#include "trellis/ask.h"
#include "trellis/filetest.h"
#include "trellis/help.h"
#include "trellis/menu.h"
#include "trellis/printdlg.h"
#include "trellis/shell.h"

DEFINE_ABSTRACT_CLASS(FileMenu, Object, 1, 0)

Symbol FileMenuNew("FileMenuNew");
Symbol FileMenuLoad("FileMenuLoad");
Symbol FileMenuSave("FileMenuSave");
Symbol FileMenuSaveAs("FileMenuSaveAs");
Symbol FileMenuExit("FileMenuExit");
Symbol FileMenuQuit("FileMenuQuit");
Symbol FileMenuKill("FileMenuKill");
Symbol FileMenuPrint("FileMenuPrint");
Symbol FileMenuHelp("FileMenuHelp");
Symbol FileMenuChDir("FileMenuChDir");

namespace {

const char* const NO_FILE = "no-file";
const unsigned WHOLE_TITLE = 51;

const char* const fileEntries[] = {"New         | Alt+N", "Open...     |    F2", "&Save       |    F4",
                                   "Save &As... | Alt+S", "E&xit       | Alt+X", 0};
const char* const restoreEntries[] = {"&Restore |    F2", "&Save    |    F4", "E&xit    | Alt+X", 0};

bool exists(const char* name) {
    struct stat info;
    return stat(name, &info) == 0;
}

}  // namespace

FileMenu::FileMenu(Object& owner, CppShell& shell, CppWidget& menuParent, const char* titlePrefix,
                   const char* extension, int mode, int extras)
    : owner(owner),
      shell(shell),
      pulldown(new PulldownMenu("FileMenu", &menuParent, "&File")),
      name(NO_FILE),
      extension(extension ? extension : ""),
      prefix(titlePrefix ? titlePrefix : ""),
      changed(false),
      mode(mode),
      openTitle("File Selection"),
      openPrompt("FileName"),
      saveTitle("File Selection"),
      savePrompt("FileName"),
      settings(new PrintOptions) {
    for (const char* const* entry = mode == RESTORE_ONLY ? restoreEntries : fileEntries; *entry; ++entry)
        pulldown->addChoice(*entry);
    if (extras & PRINT) pulldown->addChoice("Print | Ctrl+P");
    if (extras & CHDIR) pulldown->addChoice("chDir");
    if (extras & QUIT) pulldown->addChoice("&Quit | Alt+Q");
    pulldown->addCback(MenuPressed, cbackMethod<&FileMenu::menuPressed>, *this);
    shell.addCback(WindowManagerCloseRequest, cbackMethod<&FileMenu::closeRequested>, *this);
    showTitle();
}

FileMenu::~FileMenu() noexcept(false) {
    if (validObject(&shell)) shell.removeCbacks(WindowManagerCloseRequest, this);
    delete settings;
}

void FileMenu::menuPressed(Cback& cb) {
    String choice = pulldown->choiceOf(cb);
    if (!mayAct(choice)) return;
    if (choice == "New")
        newFile();
    else if (choice == "Open..." || choice == "Restore")
        openFile();
    else if (choice == "Save")
        save();
    else if (choice == "Save As...")
        saveAs();
    else if (choice == "Exit")
        exit();
    else if (choice == "Print")
        print();
    else if (choice == "Quit")
        quit();
    else if (choice == "chDir")
        changeDirectory();
}

void FileMenu::closeRequested(Cback&) {
    if (mayAct(String())) kill();
}

bool FileMenu::mayAct(const String&) { return true; }

void FileMenu::raise(const Symbol& event, const char* text) {
    CallData data(text);
    owner.cbackOn(event, text ? &data : 0);
}

String FileMenu::titleFor(const char* prefix, const char* fileName, bool changed) {
    String shown(fileName ? fileName : "");
    if (shown.size() == 0 || shown == NO_FILE)
        shown = "(No name)";
    else if (shown.size() >= WHOLE_TITLE)
        shown = shown.left(10) + "..." + shown.right(37);
    String title(changed ? "(changed)  " : "");
    title += prefix;
    title += shown;
    return title;
}

void FileMenu::showTitle() {
    shell.setTitle(titleFor(prefix.asCharPointer(), name.asCharPointer(), changed).asCharPointer());
}

void FileMenu::setFileName(const char* fileName) {
    name = fileName && *fileName ? fileName : NO_FILE;
    showTitle();
}

bool FileMenu::hasFile() const { return name.size() > 0 && name != NO_FILE; }

void FileMenu::setChanged(bool flag) {
    if (changed == flag) return;
    changed = flag;
    showTitle();
}

void FileMenu::setDialogTexts(const char* openTitle_, const char* openPrompt_, const char* saveTitle_,
                              const char* savePrompt_) {
    openTitle = openTitle_;
    openPrompt = openPrompt_;
    saveTitle = saveTitle_;
    savePrompt = savePrompt_;
}

bool FileMenu::mayDropWork() { return !changed || askQuestion("Work does not yet saved\n\nContinue ?"); }

bool FileMenu::newFile() {
    if (!mayDropWork()) return false;
    setFileName(NO_FILE);
    setChanged(false);
    raise(FileMenuNew, 0);
    return true;
}

bool FileMenu::openFile(const char* fileName) {
    if (!mayDropWork()) return false;
    String chosen(fileName ? fileName : "");
    if (!fileName && !askFileName(chosen, openTitle.asCharPointer(), openPrompt.asCharPointer(),
                                  extension.asCharPointer(), false))
        return false;
    if (chosen.size() == 0) {
        showMessage("One file must be specified", "Error", MESSAGE_ERROR);
        return false;
    }
    const char* path = chosen.asCharPointer();
    if (!isExistingFile(path) || !isReadableFile(path)) return false;
    setFileName(path);
    raise(FileMenuLoad, path);
    setChanged(false);
    return true;
}

bool FileMenu::changeDirectory(const char* directory) {
    String chosen(directory ? directory : "");
    if (!directory && !askDirectory(chosen, "Directory Selection", "Directory")) return false;
    if (chosen.size() == 0) {
        showMessage("One directory must be specified", "Error", MESSAGE_ERROR);
        return false;
    }
    const char* path = chosen.asCharPointer();
    if (!isDirectoryUsable(path)) return false;
    if (chdir(path) != 0) {
        showMessage(formatText("%s, %s", path, std::strerror(errno)), "Error", MESSAGE_ERROR);
        return false;
    }
    raise(FileMenuChDir, path);
    return true;
}

bool FileMenu::save() {
    if (!hasFile()) return saveAs();
    const char* path = name.asCharPointer();
    if (!isWritableFile(path, true)) return false;
    String temporary = name + ".tmp", backup = name + ".bak";
    std::remove(temporary.asCharPointer());
    raise(FileMenuSave, temporary.asCharPointer());
    if (!exists(temporary.asCharPointer())) {
        showMessage((String("Write error on ") + name).asCharPointer(), "Error", MESSAGE_ERROR);
        return false;
    }
    // The backup is a second name of the old file, so that the file's own name
    // never goes missing: the rename below replaces it in one step.
    if (exists(path)) {
        std::remove(backup.asCharPointer());
        if (link(path, backup.asCharPointer()) != 0 && std::rename(path, backup.asCharPointer()) != 0) {
            showMessage(formatText("Write error on file %s, %s", path, std::strerror(errno)), "Error",
                        MESSAGE_ERROR);
            return false;
        }
    }
    if (std::rename(temporary.asCharPointer(), path) != 0) {
        showMessage(formatText("Write error on file %s, %s", path, std::strerror(errno)), "Error",
                    MESSAGE_ERROR);
        return false;
    }
    setChanged(false);
    return true;
}

bool FileMenu::saveAs(const char* fileName) {
    String chosen(fileName ? fileName : (hasFile() ? name.asCharPointer() : ""));
    if (!fileName && !askFileName(chosen, saveTitle.asCharPointer(), savePrompt.asCharPointer(),
                                  extension.asCharPointer(), true))
        return false;
    if (chosen.size() == 0) {
        showMessage("One file must be specified", "Error", MESSAGE_ERROR);
        return false;
    }
    if (chosen != name && !askOverwrite(chosen.asCharPointer())) return false;
    setFileName(chosen.asCharPointer());
    raise(FileMenuSaveAs, chosen.asCharPointer());
    return save();
}

bool FileMenu::exit() {
    if (changed && mode == WITH_SAVE && askQuestion("Save work before exit ?") && !save()) return false;
    raise(FileMenuExit, 0);
    return true;
}

void FileMenu::quit() { raise(FileMenuQuit, 0); }

bool FileMenu::kill() {
    if (changed && mode == WITH_SAVE && askQuestion("Save work before exit ?") && !save()) return false;
    raise(FileMenuKill, 0);
    return true;
}

bool FileMenu::print() {
    PrintDialog dialog(&shell, *settings);
    if (!dialog.ask(*settings)) return false;
    CallData data(settings, true);
    data.setNotOwn();
    owner.cbackOn(FileMenuPrint, &data);
    return true;
}

void FileMenu::help(const char* keyword) {
    raise(FileMenuHelp, keyword);
    showHelp(keyword);
}
