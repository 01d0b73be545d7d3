// FileMenu: the file menu of every editor window, with the cycle of new, open, save, print and exit.
#ifndef TRELLIS_FILEMENU_H
#define TRELLIS_FILEMENU_H

#include "quill/quillstr.h"
#include "quill/symbol.h"

class CppShell;
class CppWidget;
class PrintOptions;
class PulldownMenu;

extern Class class_FileMenu;

// Raised on the owner. FileMenuLoad carries the name to read, FileMenuSave
// the name to write the work into (a ".tmp" that the menu then puts in
// place), FileMenuSaveAs the new name, FileMenuPrint the PrintOptions.
extern Symbol FileMenuNew;
extern Symbol FileMenuLoad;
extern Symbol FileMenuSave;
extern Symbol FileMenuSaveAs;
extern Symbol FileMenuExit;
extern Symbol FileMenuQuit;
extern Symbol FileMenuKill;
extern Symbol FileMenuPrint;
extern Symbol FileMenuHelp;
extern Symbol FileMenuChDir;  // the call data holds the new working directory

class FileMenu : public Object {
    DECLARE_MEMBERS(FileMenu)
public:
    enum Mode { WITH_SAVE = 0, RESTORE_ONLY = 1 };
    enum Extras { PRINT = 1, QUIT = 2, CHDIR = 4 };

    // The menu "File" in menuParent (a menu bar or a menu). The shell's
    // title follows the file's name; closing the shell asks as Exit does.
    FileMenu(Object& owner, CppShell& shell, CppWidget& menuParent, const char* titlePrefix,
             const char* extension = "", int mode = WITH_SAVE, int extras = 0);
    ~FileMenu() noexcept(false) override;

    PulldownMenu& menu() const { return *pulldown; }
    void setFileName(const char* name);
    const String& fileName() const { return name; }
    // False for no name and for "no-file".
    bool hasFile() const;
    void setChanged(bool flag);
    bool isChanged() const { return changed; }
    // The titles and prompts of the file dialogues.
    void setDialogTexts(const char* openTitle, const char* openPrompt, const char* saveTitle,
                        const char* savePrompt);

    // Each asks "Work does not yet saved\n\nContinue ?" first when the work
    // changed, and answers whether it went through.
    bool newFile();
    // A null name is asked for in the open dialogue.
    bool openFile(const char* fileName = 0);
    // Makes the directory (asked for when null) the working directory and raises FileMenuChDir.
    bool changeDirectory(const char* directory = 0);
    // Writes into name + ".tmp", keeps the old file as name + ".bak" and
    // puts the new one in its place. Without a name, saveAs.
    bool save();
    // A null name is asked for; an existing file needs leave to be overwritten.
    bool saveAs(const char* fileName = 0);
    // Asks "Save work before exit ?" when the work changed, then
    // FileMenuExit; a failed save stays.
    bool exit();
    void quit();
    // The window is closing: the question of exit, then FileMenuKill.
    bool kill();
    // The print dialogue, then FileMenuPrint with its settings.
    bool print();
    // FileMenuHelp with the keyword, then its topic.
    void help(const char* keyword);

    // The shell's title: "(changed)  " when changed, the prefix, the name
    // ("(No name)" for none; one of 51 characters or more cut to its first
    // ten, "..." and its last 37).
    static String titleFor(const char* prefix, const char* fileName, bool changed);

protected:
    // Asked before a chosen entry (by its name) or the window's close (an
    // empty name) acts: false leaves it undone. All go on here.
    virtual bool mayAct(const String& entry);

private:
    void menuPressed(Cback& cb);
    void closeRequested(Cback& cb);
    void showTitle();
    bool mayDropWork();
    void raise(const Symbol& event, const char* text);

    Object& owner;
    CppShell& shell;
    PulldownMenu* pulldown;
    String name;
    String extension;
    String prefix;
    bool changed;
    int mode;
    String openTitle;
    String openPrompt;
    String saveTitle;
    String savePrompt;
    PrintOptions* settings;
};

#endif
