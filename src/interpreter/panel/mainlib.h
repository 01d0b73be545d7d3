// MainLib, the resident interpreter window: one command line at a time run against a text of
// global functions, the lines that worked collected in the main text.
#ifndef INTERPRETER_PANEL_MAINLIB_H
#define INTERPRETER_PANEL_MAINLIB_H

#include "interpreter/codepars.h"
#include "interpreter/executer.h"
#include "quill/quillstr.h"

class Cback;
class ComboBox;
class CppCommand;
class CppForm;
class CppLabel;
class CppShell;
class CppText;
class CppWidget;
class MenuBar;
class PulldownMenu;
class VariablesDialog;

extern Class class_MainLib;

// Raised on the MainLib when its window has been left by Exit, Quit or a close.
extern Symbol MainLibExit;

class MainLib : public Object {
    DECLARE_MEMBERS(MainLib)
public:
    // The window "Interpreter" under parent (the top level without one), shown at once.
    explicit MainLib(CppWidget* parent = 0);
    MainLib(const MainLib&) = delete;
    MainLib& operator=(const MainLib&) = delete;
    ~MainLib() noexcept(false) override;

    // Runs one command line as the user types it (trailing ";" dropped). A
    // message goes to the output pane and changes nothing else; on success the
    // line joins the main text and the history, and the output pane lists the
    // globals. Answers the message, empty on success.
    String execute(const char* command);
    // The main text run again line by line from a fresh state; the output pane
    // holds the messages of the lines that failed, then the globals.
    void redoAll();

    // The file cycle of the File menu. A null name is asked for in the file dialogue.
    bool newWork();
    bool openGlobal(const char* name = 0);
    bool appendGlobal(const char* name = 0);
    bool openMain(const char* name = 0);
    // Writes both texts to their files, asking a name for a text without one.
    bool save();
    bool saveGlobalAs(const char* name = 0);
    bool saveMainAs(const char* name = 0);
    // Asks "Save work before exit ?" when the work changed, then leaves; a failed save stays.
    bool exit();
    void quit();
    bool isChanged() const { return changed; }

    void showVariables();

    CppShell& shell() const { return *window; }
    MenuBar& menuBar() const { return *bar; }
    PulldownMenu& fileMenu() const { return *files; }
    CppText& globalText() const { return *globalPane; }
    CppText& mainText() const { return *mainPane; }
    CppText& output() const { return *outputPane; }
    ComboBox& command() const { return *commandBox; }
    CppCommand& redoButton() const { return *redo; }
    Executer& interpreter() { return executer; }
    VariablesDialog* variablesDialog() const { return variables; }
    const String& globalFileName() const { return globalFile; }
    const String& mainFileName() const { return mainFile; }

private:
    // --- The window and its menus (mlwindow.cpp) ---
    void buildWindow();
    void buildPanes(CppForm& form);
    void buildCommandLine(CppForm& form);
    void buildMenus();
    void fileChosen(Cback& cb);
    void referenceChosen(Cback& cb);
    void variablesChosen(Cback& cb);
    void helpChosen(Cback& cb);
    void closeRequested(Cback& cb);
    void textEdited(Cback& cb);
    void showFileNames();

    // --- The command line and its history (mlcmd.cpp) ---
    String runLine(const String& command);
    String runMainText();
    void restoreGlobals();
    String globalsListing();
    void remember(const String& command);
    void commandEntered(Cback& cb);
    void redoPressed(Cback& cb);

    // --- Files (mainlib.cpp) ---
    bool loadInto(CppText& pane, String& fileName, const char* name, bool append);
    bool writePane(CppText& pane, String& fileName, const char* name);
    void leave();

    CodeParser parser;
    Executer executer;  // on parser
    CppShell* window;
    MenuBar* bar;
    PulldownMenu* files;
    CppLabel* globalLabel;
    CppLabel* mainLabel;
    CppText* globalPane;
    CppText* mainPane;
    CppText* outputPane;
    ComboBox* commandBox;
    CppCommand* redo;
    VariablesDialog* variables;  // made when first asked for
    String globalFile;
    String mainFile;
    bool changed;
    bool settingText;  // the program writes a pane: no change of the work
};

#endif
