// GraphMainLib: the panel's window, its menus, the events of the design, and the state kept
// between sessions.
#include "gui/rcpanel.h"

#include <sys/stat.h>
#include <unistd.h>

#include <iostream>

#include "control/askparam.h"
#include "control/workspc.h"
#include "gui/consoletee.h"
#include "gui/dynwin.h"
#include "gui/extpanel.h"
#include "quill/cback.h"
#include "quill/integer.h"
#include "quill/objio.h"
#include "trellis/ask.h"
#include "trellis/dispatch.h"
#include "trellis/formdlg.h"
#include "trellis/menu.h"
#include "trellis/text.h"

DEFINE_ABSTRACT_CLASS(GraphMainLib, Algebra, 1, 0)

Symbol GraphMainLibExit("GraphMainLibExit");

namespace {

const char* const projectFile = "project.gui";
const char* const configurationFile = "configuration";

// The controls whose text is the panel's state: choices, toggles, fields and displays.
bool isKept(const DynamicControl& c) {
    switch (c.kind()) {
        case DynamicControl::CYCLE:
        case DynamicControl::TOGGLE:
        case DynamicControl::TEXT:
        case DynamicControl::NUMBER:
        case DynamicControl::VALUE:
            return true;
        default:
            return false;
    }
}

bool isDirectory(const char* path) {
    struct stat info;
    return *path && stat(path, &info) == 0 && S_ISDIR(info.st_mode);
}

}  // namespace

GraphMainLib::GraphMainLib(const char* directory) {
    designer.setOwner(this);
    addCback(AskParameters, cbackMethod<&GraphMainLib::askParameters>, *this);
    addCback(CheckStop, cbackMethod<&GraphMainLib::checkStop>, *this);
    addCback(IterationNorm, cbackMethod<&GraphMainLib::iterationNorm>, *this);
    addCback(XTimeOut, cbackMethod<&GraphMainLib::timerRan>, *this);
    String file = String(directory) + "/RobustControl.mim", refusal;
    DynamicPanel* read = readPanel(file.asCharPointer(), refusal);
    if (!read) {
        // An empty window that can only be closed.
        message = "RobustControl.mim file is not present in the command panel directory";
        read = new DynamicPanel("RobustControl", 60, 10);
    }
    panel = new DynamicPanelWindow(read, "Robust Control Design", true);
    buildMenus();
    panel->realize();
    if (message.size() > 0) showMessage(message.asCharPointer(), "Robust Control Design", MESSAGE_ERROR);
    extended.reset(new ExtendedSystemPanel(directory, *this));
    panel->addCback(DynamicIconSelected, cbackMethod<&GraphMainLib::controlPressed>, *this);
    panel->addCback(WindowManagerCloseRequest, cbackMethod<&GraphMainLib::windowClosing>, *this);
    readProject();
    Workspace::setMatlabDirectory(".");  // until the configuration names another
    readConfiguration();
}

GraphMainLib::~GraphMainLib() noexcept(false) {
    if (timer) removeXTimeOut(timer);
    extended.reset();
    delete panel;
}

void GraphMainLib::buildMenus() {
    MenuBar& bar = *panel->menuBar();
    PulldownMenu* file = new PulldownMenu("FileMenu", &bar, "&File");
    for (const char* entry : {"&Open...  | Alt+O", "Open &Workspace...   | Alt+W", "&Close   | Alt+C"})
        file->addChoice(entry);
    file->addCback(MenuPressed, cbackMethod<&GraphMainLib::menuChosen>, *this);
    PulldownMenu* help = new PulldownMenu("HelpMenu", &bar, "&Help");
    help->addChoice("Contents");
    help->addChoice("&About");
    help->addCback(MenuPressed, cbackMethod<&GraphMainLib::menuChosen>, *this);
}

void GraphMainLib::menuChosen(Cback& cb) {
    String entry = CAST(MotifMenu, cb.owner)->choiceOf(cb);
    if (entry == "Open...")
        press("openModel");
    else if (entry == "Open Workspace...")
        extended->show();
    else if (entry == "Close")
        windowClosing(cb);
    else if (entry == "Contents")
        showMessage(helpText(), "Contents");
    else if (entry == "About")
        showMessage("Robust Control Design\nthe two-step H2 and H-infinity design of Tarn", "About");
}

const char* GraphMainLib::helpText() {
    return "Pick the model (\"openModel\", or compose an extended system under File, Open Workspace),\n"
           "set the gramian, the bound \"gamma\" and the algorithm, and press Start for each phase:\n"
           "Step 1 designs the first of control and observer, Step 2 the other, Final Results\n"
           "analyses the closed loop. Stop ends a running phase after its current iteration.";
}

// ---------------------------------------------------------------- controls

String GraphMainLib::text(const char* control) const { return panel ? panel->text(control) : String(); }

void GraphMainLib::setText(const char* control, const char* value) {
    if (panel && panel->has(control)) panel->setText(control, value);
}

// A line of the panel's own dialogue, on the console, in the panel's console and its file.
void GraphMainLib::show(const std::string& line) {
    ConsoleTee tee(panel, "console", consoleFile().asCharPointer());
    std::cout << line << std::endl;
}

String GraphMainLib::consoleFile() const {
    String name = text("coutFileName");
    return name == "none" ? String() : name;
}

void GraphMainLib::controlPressed(Cback& cb) { press(cb.callData->asString().asCharPointer()); }

// ---------------------------------------------------------------- the design's events

// A dialogue of the design, modal, answered by the person.
void GraphMainLib::askParameters(Cback& cb) {
    ParamRequest& request = *CAST(ParamRequest, cb.callData->asObject());
    ParamDialog dialog(request.title(), panel, request.title());
    for (unsigned i = 0; i < request.fieldCount(); ++i) {
        CppText& field = dialog.addRow(request.label(i), request.value(i));
        if (request.isReadOnly(i)) field.setSensitive(false);
    }
    ++openDialogs;
    request.answer = dialog.ask();
    --openDialogs;
    if (!request.answer) return;
    for (unsigned i = 0; i < request.fieldCount(); ++i)
        if (!request.isReadOnly(i)) request.setValue(i, dialog.rowText(int(i)).asCharPointer());
}

// Between iterations the window answers its events; a pressed stop ends the design there.
void GraphMainLib::checkStop(Cback&) {
    dispatchPending();
    if (!stopRequested) return;
    stopRequested = false;
    ::requestStop();
}

void GraphMainLib::iterationNorm(Cback& cb) {
    if (panel && panel->has("normTrend")) panel->addTrendPoint("normTrend", cb.callData->asDouble());
}

void GraphMainLib::timerRan(Cback&) {
    timer = 0;
    runPhase();
}

void GraphMainLib::extendedPressed(Cback& cb) { extended->press(cb.callData->asString().asCharPointer()); }

void GraphMainLib::extendedClosing(Cback&) { extended->close(); }

// The window hides and the owner hears GraphMainLibExit: the mode's loop ends, a panel forgets it.
void GraphMainLib::windowClosing(Cback&) {
    if (!close()) return;
    panel->close();
    cbackOn(GraphMainLibExit);
}

// ---------------------------------------------------------------- state between sessions

void GraphMainLib::readProject() {
    Object* read = nil;
    if (access(projectFile, R_OK) != 0 || !Algebra().readFromFile(read, "ProjectData", projectFile)) return;
    const ProjectData& saved = *CAST(ProjectData, read);
    for (unsigned i = 0; i < saved.size(); ++i) {
        const char* name = saved.at(i).name().asCharPointer();
        setText(name, saved.at(i).value().asCharPointer());
        project.set(name, saved.at(i).value().asCharPointer());
    }
    delete read;
    panel->setEnabled("gamma", is("Gramian", "H-infinite"));
}

void GraphMainLib::readConfiguration() {
    Object* read = nil;
    if (access(configurationFile, R_OK) != 0 || !Algebra().readFromFile(read, "String", configurationFile)) {
        showMessage(
            "Warning, the working directory for Matlab has not been set:\nclick on button "
            "\"Configuration\" and insert a correct path",
            "Configuration", MESSAGE_WARNING);
        return;
    }
    matlabPath = *CAST(String, read);
    delete read;
    takeMatlabPath(
        "Warning, the working directory for Matlab is uncorrect:\nclick on button \"Configuration\" "
        "and insert a correct path");
}

// The Matlab script goes to matlabPath when it is a directory; otherwise the refusal is shown.
void GraphMainLib::takeMatlabPath(const char* refusal) {
    if (isDirectory(matlabPath.asCharPointer()))
        Workspace::setMatlabDirectory(matlabPath.asCharPointer());
    else
        showMessage(refusal, "Configuration", MESSAGE_WARNING);
}

void GraphMainLib::pressConfiguration() {
    ParamDialog dialog("Configuration", panel, "Insert configuration parameters");
    dialog.addRow("Matlab path", matlabPath.asCharPointer());
    dialog.addRow("Console file (none: no copy)", text("coutFileName").asCharPointer());
    ++openDialogs;
    bool ok = dialog.ask();
    --openDialogs;
    if (!ok) return;
    String copy = dialog.rowText(1).stripBoth();
    setText("coutFileName", copy.size() ? copy.asCharPointer() : "none");
    matlabPath = dialog.rowText(0).stripBoth();
    takeMatlabPath(
        "Warning, the working directory of Matlab is uncorrect:\nclick on the button \"Configuration\" "
        "and set the correct path");
}

void GraphMainLib::saveState() {
    if (message.size() > 0) return;  // a panel that was never read keeps the saved state as it is
    const DynamicPanel& shown = panel->panel();
    for (unsigned i = 0; i < shown.size(); ++i) {
        const DynamicControl& c = shown.at(int(i));
        if (isKept(c))
            project.set(c.name().asCharPointer(), panel->text(c.name().asCharPointer()).asCharPointer());
    }
    Algebra files;
    files.storeToFile(project, projectFile);
    files.storeToFile(matlabPath, configurationFile);
}

bool GraphMainLib::close() {
    if (openDialogs > 0 || running) {
        bool leave = askQuestion(
            "Warning, close the dialog windows still open\nand conclude the process before "
            "closing the application",
            "Robust Control Design", false);
        if (!leave) return false;
        stopRequested = true;
    }
    saveState();
    return true;
}
