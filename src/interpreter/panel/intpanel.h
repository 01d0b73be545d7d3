// InterpreterPanel: the source-level debugger of one source file, an editor that runs it, stops and shows the
// line.
#ifndef INTERPRETER_PANEL_INTPANEL_H
#define INTERPRETER_PANEL_INTPANEL_H

#include <chrono>
#include <cstdint>
#include <vector>

#include "editor/fileedt.h"
#include "quill/orderedc.h"

class CodeParser;
class CppCommand;
class DebugPanes;
class Executer;
class PulldownMenu;
class ButtonBox;

extern Class class_InterpreterPanel;

class InterpreterPanel : public FileEditor {
    DECLARE_MEMBERS(InterpreterPanel)
public:
    enum State {
        CLOSING = 0,   // the panel's loop ends
        EDITING = 1,   // nothing runs
        RUNNING = 2,   // stops at breakpoints
        STEPPING = 3,  // stops at the next line
        PAUSED = 4,    // a nested loop on the current line
        BREAKING = 5   // Break asked: stops at the next line
    };

    // The debugger of a file, with a parser and executers of its own; runLoop shows it.
    InterpreterPanel(const char* fileName, CppWidget* parent = 0);
    // The debugger of a module's run: the parser and executer stay the
    // module's. It watches the executer from now on, stopping at the first
    // line unless go, and has no loop of its own.
    InterpreterPanel(CodeParser& parser, Executer& executer, const char* fileName, bool go);
    ~InterpreterPanel() noexcept(false) override;

    // Handles events until the panel is closed, running the program whenever Go or Step asks.
    void runLoop();

    // The commands of the menu "Command" and of the toolbar.
    void go();
    void stepInto();
    void breakRun();
    void stopDebugging();
    // Toggles the breakpoint of the cursor's line.
    void toggleBreakpoint();
    void removeAllBreakpoints();
    void quickWatch();
    // In the paused state as Stop Debugging; otherwise the panel closes.
    void close();

    int state() const { return state_; }
    int currentLine() const { return currentLine_; }
    // Paused in the nested loop, waiting for a command.
    bool isWaiting() const { return nested; }
    const OrderedCltn& breakpoints() const { return breakpoints_; }
    bool hasBreakpoint(int line) const;
    // A breakpoint on line (from 1) of the execution display, set or removed.
    void toggleBreakpointAt(int line);
    // The line (from 1) of the execution display at a character position.
    int lineAt(int position) const;
    // The position where a line (from 1) of the execution display begins.
    int lineStart(int line) const;
    // The number of times the source was compiled.
    int compilations() const { return compilations_; }
    CppCommand& button(const char* name) const;
    PulldownMenu& commandMenu() const { return *commandMenu_; }
    DebugPanes& panes() const { return *panes_; }

protected:
    // While the numbered copy is shown, Save writes the source.
    String textToSave() override;
    void textChanged(Cback& cb) override;

private:
    void build();
    void buildToolbar();
    void buildCommandMenu();
    void commandChosen(Cback& cb);
    void buttonPressed(Cback& cb);
    void closeAsked(Cback& cb);
    void quitAsked(Cback& cb);
    // The state, with the buttons and menu entries it allows.
    void setState(int state);
    void leaveNestedLoop();

    // The run (intrun.cpp).
    void run();
    bool compile();
    void statementReached(Cback& cb);
    void pause();
    void handleEventsNow();
    void watch(Executer& watched);
    void unwatch();

    // The execution display (execdisp.cpp).
    void showExecution();
    void showSource();
    void setMark(int line, const char* mark);
    void showCurrentLine();
    void clearCurrentLine();

    std::int32_t state_;
    ButtonBox* toolbar;
    PulldownMenu* commandMenu_;
    String fileText;
    String editingTitle;  // the title before the run
    std::int32_t currentLine_;
    std::int32_t lastLine;  // the line of the notification before
    String savedMark;
    std::int32_t markedLine;
    String compiledText;
    CodeParser* parser;
    Executer* executer;
    std::int32_t ownsParser;
    OrderedCltn lineStarts;    // Integer: where each line begins in the display
    OrderedCltn breakpoints_;  // Integer: line numbers, ascending
    DebugPanes* panes_;
    std::vector<int> frameLines;  // the line each call under way has reached, outermost first
    bool nested;                  // the nested loop of a pause runs
    bool executing;               // the display shows the numbered copy
    int compilations_;
    std::chrono::steady_clock::time_point lastEvents;
};

// The name a QuickWatch examines: the selection stripped on the left of blanks,
// digits and punctuation other than '_', and on the right of the same but digits.
String watchedName(const String& selection);

// The hook by which a module's run gets its debugger.
Object* makeModuleDebugger(CodeParser& parser, Executer& executer, const char* fileName, bool go);

#endif
