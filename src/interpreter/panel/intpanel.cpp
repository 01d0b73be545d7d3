// InterpreterPanel: the window with its toolbar and menu "Command", the states and what each allows, the
// commands.
#include "interpreter/panel/intpanel.h"

#include "interpreter/codepars.h"
#include "interpreter/executer.h"
#include "interpreter/panel/varpane.h"
#include "quill/cback.h"
#include "trellis/button.h"
#include "trellis/dispatch.h"
#include "trellis/entry.h"
#include "trellis/form.h"
#include "trellis/menu.h"
#include "trellis/shell.h"
#include "trellis/text.h"

DEFINE_ABSTRACT_CLASS(InterpreterPanel, FileEditor, 1, 0)

namespace {

const int GAP = 4;
const int SOURCE_WIDTH_PERCENT = 62;
const int WIDTH = 1100;
const int HEIGHT = 700;

// Each command, its menu entry and its toolbar button.
struct Command {
    const char* entry;
    const char* button;
    void (InterpreterPanel::*action)();
};

const Command commands[] = {
    {"Go|13%F5", "Go", &InterpreterPanel::go},
    {"Step Into|13%F11", "Step", &InterpreterPanel::stepInto},
    {"Break", "Break", &InterpreterPanel::breakRun},
    {"Stop Debugging|13%Shift+F5", "Stop", &InterpreterPanel::stopDebugging},
    {"Insert/Remove Breakpoint|13%F9", 0, &InterpreterPanel::toggleBreakpoint},
    {"Remove All Breakpoints|13%Shift+Ctrl+F9", 0, &InterpreterPanel::removeAllBreakpoints},
    {"QuickWatch|13%Shift+F9", 0, &InterpreterPanel::quickWatch},
};

// What each state allows: Go, Step, Break, and the rest (Stop, the breakpoints, QuickWatch).
// A state that leaves a control as it was holds -1 there.
struct Allowed {
    int go, step, breakRun, paused;
};

const Allowed allowed[] = {
    {0, 0, 0, 0},    // closing
    {1, 1, 0, 0},    // editing
    {0, 0, 1, 0},    // running
    {0, 0, 0, 0},    // stepping
    {1, 1, 0, 1},    // paused
    {-1, -1, 0, -1}  // break asked
};

}  // namespace

InterpreterPanel::InterpreterPanel(const char* fileName, CppWidget* parent)
    : FileEditor("InterpreterPanel", parent, fileName),
      state_(EDITING),
      parser(new CodeParser),
      executer(0),
      ownsParser(1) {
    // The built-ins are known to a parser once an Executer has been made on it.
    Executer registration(parser);
    build();
}

InterpreterPanel::InterpreterPanel(CodeParser& moduleParser, Executer& moduleExecuter, const char* fileName,
                                   bool goOn)
    : FileEditor("InterpreterPanel", 0, fileName),
      state_(EDITING),
      parser(&moduleParser),
      executer(&moduleExecuter),
      ownsParser(0) {
    build();
    compiledText = getText();
    showExecution();
    watch(moduleExecuter);
    setState(goOn ? RUNNING : STEPPING);
}

InterpreterPanel::~InterpreterPanel() noexcept(false) {
    if (executer && validObject(executer)) unwatch();
    if (ownsParser) delete parser;
    delete panes_;
    lineStarts.deleteContents();
    breakpoints_.deleteContents();
}

void InterpreterPanel::build() {
    currentLine_ = lastLine = markedLine = -1;
    nested = executing = false;
    compilations_ = 0;
    panes_ = 0;
    lastEvents = std::chrono::steady_clock::now();
    buildCommandMenu();
    buildToolbar();
    CppForm& f = form();
    CppWidget& viewport = *f.childNamed("TextViewport");
    f.attachVertical(toolbar, &viewport, GAP);
    f.attachRightPercent(viewport, SOURCE_WIDTH_PERCENT);
    panes_ = new DebugPanes(f, viewport, *toolbar, *f.childNamed("StatusLabel"));
    getShell().resize(WIDTH, HEIGHT);
    f.doLayout();
    f.realize();
    getShell().fitChildren();
    getShell().addCback(WindowManagerCloseRequest, cbackMethod<&InterpreterPanel::closeAsked>, *this);
    addCback(FileEdtQuit, cbackMethod<&InterpreterPanel::quitAsked>, *this);
    setState(EDITING);
}

void InterpreterPanel::buildCommandMenu() {
    commandMenu_ = new PulldownMenu("CommandMenu", &menuBar(), "Command");
    for (const Command& command : commands) commandMenu_->addChoice(command.entry);
    commandMenu_->addCback(MenuPressed, cbackMethod<&InterpreterPanel::commandChosen>, *this);
}

void InterpreterPanel::buildToolbar() {
    CppForm& f = form();
    toolbar = new ButtonBox("ExecutionToolbar", &f);
    f.attachHorizontal(&f, toolbar, GAP);
    f.attachVertical(&searchField(), toolbar, GAP);
    for (const Command& command : commands) {
        if (!command.button) continue;
        CppCommand* b = new CppCommand(command.button, toolbar, command.button);
        b->addCback(CppCommandPressed, cbackMethod<&InterpreterPanel::buttonPressed>, *this);
    }
    // The form around it is laid out already: the bar takes the size of its buttons now.
    toolbar->doLayout();
    toolbar->resize(toolbar->width(), toolbar->height());
}

CppCommand& InterpreterPanel::button(const char* name) const {
    return *CAST(CppCommand, toolbar->childNamed(name));
}

void InterpreterPanel::commandChosen(Cback& cb) {
    String name = commandMenu_->choiceOf(cb);
    for (const Command& command : commands)
        if (name == entryIdentity(command.entry)) (this->*command.action)();
}

void InterpreterPanel::buttonPressed(Cback& cb) {
    String label = CAST(CppCommand, cb.owner)->label();
    for (const Command& command : commands)
        if (command.button && label == command.button) (this->*command.action)();
}

void InterpreterPanel::setState(int state) {
    state_ = state;
    const Allowed& a = allowed[state];
    struct Control {
        int on;
        const char* entry;
        const char* button;
    };
    const Control controls[] = {
        {a.go, "Go", "Go"},
        {a.step, "Step Into", "Step"},
        {a.breakRun, "Break", "Break"},
        {a.paused, "Stop Debugging", "Stop"},
        {a.paused, "Insert/Remove Breakpoint", 0},
        {a.paused, "Remove All Breakpoints", 0},
        {a.paused, "QuickWatch", 0},
    };
    for (const Control& c : controls) {
        if (c.on < 0) continue;
        if (c.on)
            commandMenu_->enableChoice(c.entry);
        else
            commandMenu_->disableChoice(c.entry);
        if (c.button) button(c.button).setSensitive(c.on != 0);
    }
}

void InterpreterPanel::leaveNestedLoop() {
    if (!nested) return;
    nested = false;
    exitLoop(0);
}

void InterpreterPanel::go() {
    if (state_ != EDITING && state_ != PAUSED) return;
    clearCurrentLine();
    setState(RUNNING);
    leaveNestedLoop();
}

void InterpreterPanel::stepInto() {
    if (state_ != EDITING && state_ != PAUSED) return;
    setState(STEPPING);
    leaveNestedLoop();
}

void InterpreterPanel::breakRun() {
    if (state_ == RUNNING) setState(BREAKING);
}

void InterpreterPanel::stopDebugging() {
    if (state_ != PAUSED) return;
    setState(EDITING);
    leaveNestedLoop();
}

void InterpreterPanel::close() {
    if (state_ == PAUSED) {
        stopDebugging();
        return;
    }
    if (executer && state_ != EDITING && ownsParser) executer->stop();
    setState(CLOSING);
    leaveNestedLoop();
    getShell().close();
}

void InterpreterPanel::closeAsked(Cback&) { close(); }

// Exit and Quit of the file menu have closed the window already: the run ends with it.
void InterpreterPanel::quitAsked(Cback&) {
    if (executer && state_ != EDITING) executer->stop();
    setState(CLOSING);
    leaveNestedLoop();
}

void InterpreterPanel::runLoop() {
    while (state_ != CLOSING) {
        dispatchOne();
        if (state_ == RUNNING || state_ == STEPPING) run();
    }
}

void InterpreterPanel::textChanged(Cback& cb) {
    if (!executing) FileEditor::textChanged(cb);
}

Object* makeModuleDebugger(CodeParser& parser, Executer& executer, const char* fileName, bool go) {
    return new InterpreterPanel(parser, executer, fileName, go);
}
