// BaseCmndPanel, the launcher's window: the work directory, the menus, the open editors and
// their end with the panel.
#ifndef PANEL_BASEPANE_H
#define PANEL_BASEPANE_H

#include <string>

#include "quill/orderedc.h"
#include "quill/quillstr.h"

class Cback;
class CppForm;
class CppLabel;
class CppShell;
class MenuBar;
class PulldownMenu;
class TextShower;

extern Class class_BaseCmndPanel;

// Raised on the panel when its window has closed.
extern Symbol CmndPanelClosed;

class BaseCmndPanel : public Object {
    DECLARE_MEMBERS(BaseCmndPanel)
public:
    BaseCmndPanel(const BaseCmndPanel&) = delete;
    BaseCmndPanel& operator=(const BaseCmndPanel&) = delete;
    ~BaseCmndPanel() noexcept(false) override;

    // The panel's loop until it is quit. Each pass over the events runs in a catch frame: an
    // error that escapes a command is reported, and the panel goes on.
    void run();
    // The entry of the "Command" menu, without "&" and what follows "|".
    virtual void menuCommand(const char* label);
    // A file dropped on the window; the base knows no kind of file.
    virtual void dropFile(const char* name);
    // Asks first while editors are open; a yes destroys them, and the window closes.
    bool quit();
    // The work directory becomes name, and its label shows it.
    bool chDir(const char* name);
    void about();

    // The editor joins the open editors until it raises closing.
    void addEditor(Object& editor, const Symbol& closing);
    void removeEditor(Object& editor);
    const OrderedCltn& editors() const { return editorTable; }

    CppShell& shell() const { return *window; }
    PulldownMenu& commandMenu() const { return *commands; }

protected:
    // The window titled title; variable names the environment variable of the tools' root.
    BaseCmndPanel(const char* title, const char* variable);
    // Shows the window, once the subclass added its entries and widgets.
    void start();
    CppForm& form() const { return *layout; }
    // The lowest widget so far, under which a subclass attaches its own.
    CppLabel& directoryLabel() const { return *dirLabel; }
    // The first lines of the about box.
    virtual const char* aboutText() const = 0;

private:
    // --- The tools (basecmd.cpp) ---
    void addToolEntries();
    void make();
    void terminal();
    void runProgram();
    void batchProcessing();
    void showStandardOutput();
    // The shower made at its first use with that title, then shown again with text.
    void showText(TextShower*& shower, const char* title, const char* text);
    void showerClosing(Cback& cb);
    void applyGeometry(const std::string& geometry);
    void startFromRoot(const char* tool, const char* argument);
    void changeDirectory();

    void buildMenus();
    void commandChosen(Cback& cb);
    void helpChosen(Cback& cb);
    void closeRequested(Cback& cb);
    void filesDropped(Cback& cb);
    void editorClosed(Cback& cb);
    void destroyEditors();
    void deleteClosed();

    CppShell* window;
    CppForm* layout;
    MenuBar* bar;
    PulldownMenu* commands;
    CppLabel* dirLabel;
    String directory;
    String variable;
    OrderedCltn editorTable;
    OrderedCltn closedEditors;  // closed from their own events: deleted at the next command
    TextShower* batchWindow;    // made at the first batch, hidden when closed
    TextShower* outputWindow;   // the same for the standard output
    bool open;
};

#endif
