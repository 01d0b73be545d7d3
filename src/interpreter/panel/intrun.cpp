// InterpreterPanel: the run of the source and the statement handler that pauses it.
#include <algorithm>

#include "interpreter/codepars.h"
#include "interpreter/executer.h"
#include "interpreter/panel/intpanel.h"
#include "interpreter/panel/varpane.h"
#include "interpreter/statemnt.h"
#include "quill/cback.h"
#include "quill/quillerr.h"
#include "trellis/ask.h"
#include "trellis/dispatch.h"

namespace {

// How often a run that doesn't stop lets the window handle its events.
const std::chrono::milliseconds EVENT_PERIOD(30);

const char* const SAVE_NOW = "\nPlease save NOW if file is changed and exit.";

}  // namespace

// Runs the source, compiled again only when its text changed, and comes back
// to editing; the messages of the parser and of the run are shown.
void InterpreterPanel::run() {
    if (!compile()) {
        setState(EDITING);
        return;
    }
    showExecution();
    Executer* own = new Executer(parser);
    watch(*own);
    String message;
    int stopped = 0;
    String failure = errorTextOf([&] { own->run(message, stopped); });
    if (failure.size() > 0) message = failure + SAVE_NOW;
    if (message.size() == 0)
        setStatus(state_ == EDITING ? "Program execution interrupted." : "Program execution terminated.");
    else
        showMessage(message.asCharPointer(), "Error", MESSAGE_ERROR);
    unwatch();
    delete own;
    executer = 0;
    setState(state_ == CLOSING ? CLOSING : EDITING);
    currentLine_ = lastLine = markedLine = -1;
    savedMark = "";
    frameLines.clear();
    panes_->clear();
    showSource();
    if (message.size() > 0) setStatus(message.asCharPointer());
}

// The text is parsed when it isn't the one compiled last; a message from the
// parser is shown and empties the compiled text.
bool InterpreterPanel::compile() {
    String text = getText();
    if (text == compiledText) return true;
    compiledText = text;
    setStatus("Analyzing the source code...");
    ++compilations_;
    String message = parser->parseText(text, 1);
    if (message.size() == 0) {
        setStatus("");
        return true;
    }
    compiledText = "";
    setStatus(message.asCharPointer());
    showMessage(message.asCharPointer(), "Error", MESSAGE_ERROR);
    return false;
}

void InterpreterPanel::watch(Executer& watched) {
    executer = &watched;
    executer->addCback(TRACE_EXEC, cbackMethod<&InterpreterPanel::statementReached>, *this);
}

void InterpreterPanel::unwatch() {
    executer->removeCback(TRACE_EXEC, cbackMethod<&InterpreterPanel::statementReached>, *this);
}

// Each statement reached: a breakpoint, a step or a Break pauses on its line,
// once for a line of several statements (the line of the notification before
// is the same); Stop and close end the run.
void InterpreterPanel::statementReached(Cback& cb) {
    currentLine_ = static_cast<Statement*>(cb.callData->asObject())->getLine();
    int depth = executer->frameCount();
    frameLines.resize(std::size_t(depth));
    if (depth > 0) frameLines.back() = currentLine_;
    if (state_ == RUNNING) {
        if (hasBreakpoint(currentLine_))
            setState(PAUSED);
        else
            handleEventsNow();
    } else if (state_ == STEPPING || state_ == BREAKING) {
        setState(PAUSED);
    }
    if (state_ == PAUSED && currentLine_ == lastLine)
        handleEventsNow();
    else if (state_ == PAUSED)
        pause();
    lastLine = currentLine_;
    // Stop Debugging ends the run; a closed window ends its own run, while a module's goes on
    // without its debugger.
    if (state_ == EDITING || (state_ == CLOSING && ownsParser)) executer->stop();
}

// The line shown with its arrow and the panes filled; the nested loop runs until a command leaves it.
void InterpreterPanel::pause() {
    showCurrentLine();
    panes_->refresh(*executer, frameLines);
    nested = true;
    mainLoop();
}

// Pending events, no more often than every EVENT_PERIOD: a long run stays fast and can still be broken.
void InterpreterPanel::handleEventsNow() {
    std::chrono::steady_clock::time_point now = std::chrono::steady_clock::now();
    if (now - lastEvents < EVENT_PERIOD) return;
    lastEvents = now;
    dispatchPending();
}
