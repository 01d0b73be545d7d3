// The program's main with windows: the shared start, then the mode dispatch.
#include "panel/tarnmain.h"

#include <unistd.h>

#include <climits>
#include <cstdlib>
#include <iostream>
#include <string>

#include "editor/drawfile.h"
#include "editor/fileedt.h"
#include "editor/graphdrv.h"
#include "gui/plot.h"
#include "gui/rcpanel.h"
#include "interpreter/algvar.h"
#include "interpreter/modvar.h"
#include "interpreter/panel/intpanel.h"
#include "interpreter/panel/mainlib.h"
#include "interpreter/runner.h"
#include "panel/cmndpane.h"
#include "panel/config.h"
#include "panel/designcl.h"
#include "panel/modelcl.h"
#include "panel/sweepcl.h"
#include "quill/cback.h"
#include "quill/language.h"
#include "quill/quillstr.h"
#include "quill/startup.h"
#include "trellis/dispatch.h"
#include "trellis/shell.h"

namespace {

int usageError() {
    std::cerr << "Syntax error: usage " << Argv[0] << " <filename>" << std::endl;
    return 1;
}

// The file named by the only positional argument, or empty.
const char* fileArgument() { return Argc > 1 ? Argv[1] : ""; }

// The command panel until it is quit; the applications opened from it close with it.
int runCommandPanel() {
    CmndPanel panel(programDirectory.asCharPointer());
    panel.run();
    return 0;
}

int runBlockDiagram() { return runGraphEditor("StateTransSem", "Block Diagram Editor - ", Argc, Argv); }

int runStateGraph() { return runGraphEditor("StateGraphSem", "State Graph Editor - ", Argc, Argv); }

// The design panel until its window closes; its state is saved in the working directory.
int runRobustControlDesign() {
    GraphMainLib panel(programDirectory.asCharPointer());
    panel.addCback(GraphMainLibExit, quitCallback);
    runMainLoop();
    return panel.startMessage().size() > 0 ? 1 : 0;
}

// The resident interpreter window until it is left.
int runInterpreter() {
    MainLib window;
    window.addCback(MainLibExit, quitCallback);
    runMainLoop();
    return 0;
}

int runTextEditor() {
    if (Argc >= 3) return usageError();
    FileEditor* editor = new FileEditor("TextEditor", topLevelWidget, fileArgument());
    editor->addCback(FileEdtQuit, quitCallback);
    runMainLoop();
    delete editor;
    return 0;
}

// The debugger on one file, until its window is closed.
int runDebugger(const String& fileName) {
    if (fileName.size() == 0 || Argc >= 2) return usageError();
    InterpreterPanel panel(fileName.asCharPointer(), topLevelWidget);
    panel.runLoop();
    return 0;
}

// The document of a drawing written beside it, without a window.
int runDocument(const String& kind) {
    if (Argc != 2) return usageError();
    String message = writeDrawingDocument(kind.asCharPointer(), fileArgument());
    if (message.size() == 0) return 0;
    std::cerr << message << std::endl;
    return 1;
}

// -design, -model, -sweep and -document show no window; the other modes plot the language's values in
// the plot window and debug its modules in the debugger. -run never reaches here (runFromCommandLine).
int dispatchMode() {
    String program;
    if (findOption("-design", program)) return runDesign(program);
    if (findOption("-model", program)) return runModel(program);
    if (findOption("-sweep", program)) return runSweep(program);
    if (findOption("-document", program)) return runDocument(program);
    setPlotOpener(openPlotWindow);
    setModuleDebugger(makeModuleDebugger);
    if (findOption("-debug", program)) return runDebugger(program);
    if (findFlag("-blockDiagram")) return runBlockDiagram();
    if (findFlag("-stateGraph")) return runStateGraph();
    if (findFlag("-interpreter")) return runInterpreter();
    if (findFlag("-robustControlDesign")) return runRobustControlDesign();
    if (findFlag("-text")) return runTextEditor();
    if (findFlag("-drawing")) return runGraphEditor("Semantic", "Graphic Editor - ", Argc, Argv);
    return runCommandPanel();
}

}  // namespace

int tarnMain() {
    startEnvironment();
    return dispatchMode();
}
