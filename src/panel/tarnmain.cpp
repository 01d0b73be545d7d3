// The program's main: program directory, environment, language and mode dispatch.
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

String programDirectory;
String jvPathOption;
String ccPathOption;
String dsPathOption;
String idePathOption;

namespace {

// The absolute path of the executable that argv0 names. A bare name was
// found through PATH, so the system tells where the file lies.
std::string executablePath(const char* argv0) {
    std::string path = argv0 ? argv0 : "";
    if (path.find('/') == std::string::npos) {
        char buffer[PATH_MAX];
        ssize_t n = readlink("/proc/self/exe", buffer, sizeof buffer - 1);
        if (n > 0) return std::string(buffer, n);
    }
    char resolved[PATH_MAX];
    if (realpath(path.c_str(), resolved)) return resolved;
    if (!path.empty() && path[0] == '/') return path;
    char cwd[PATH_MAX];
    return std::string(getcwd(cwd, sizeof cwd) ? cwd : ".") + "/" + path;
}

void computeProgramDirectory() {
    std::string path = executablePath(getArg(0));
    std::string::size_type slash = path.rfind('/');
    programDirectory = path.substr(0, slash == 0 ? 1 : slash).c_str();
}

// The environment set-up, done once: the -env assignments in the order given, the four tool
// roots, then the configuration file and the tools' environment.
void environmentFirstPass() {
    static bool done = false;
    if (done) return;
    done = true;
    consumeEnvOptions();
    findOption("-JV_PATH", jvPathOption);
    findOption("-CC_PATH", ccPathOption);
    findOption("-DS_PATH", dsPathOption);
    findOption("-IDE_PATH", idePathOption);
    environmentSetUp({ccPathOption.asCharPointer(), jvPathOption.asCharPointer(),
                      dsPathOption.asCharPointer(), idePathOption.asCharPointer(), "", ""});
}

// The PostScript drawer finds its prologue through TARN_HEADER_PS; by default
// it lies beside the executable.
void defaultHeaderPs() {
    const char* value = std::getenv("TARN_HEADER_PS");
    if (value && *value) return;
    String assignment("TARN_HEADER_PS=");
    assignment += programDirectory;
    putEnvironment(assignment.asCharPointer());
}

// The panel's texts: the table "panel_<language>.lng", looked for also beside
// the executable, becomes the current language. When no file gives an entry
// the panel's English texts stand for themselves.
void loadPanelLanguage() {
    static const char* const englishTexts[] = {
        "Tarn Command Panel",
        "Tarn Panel",
        "Work Directory > ",
        "Command",
        "Tarn Command Panel\n\nSpecial edition of the editors of the Tarn Environment\n\n"
        "Version 6.2.09 released on November 1999",
        "Textual... | Ctrl+T",
        "Robust Control Design | Ctrl+R",
        "Interpreter | Ctrl+U",
        "Block Diagram Editor... | Ctrl+B",
        "&Make | Alt+M",
        "&Terminal | Alt+T",
        "&Run Program| Alt+P",
        "&Show standard output | Alt+S",
        "&Batch processing | Alt+B",
        "Change &Dir...  | Alt+D",
        "&Copy file...   | Alt+C",
        "&Move file...   | Alt+V",
        "&Remove file... | Alt+R",
        "&Quit | Alt+Q",
        "Lumen on Tarn Library",
        "Start Tarn Animator",
        "Error on exec command\n\n",
        "TARN_PATH environment variable not found",
        "File to run",
        "Run file",
        "Run",
        "Browse",
        "Panel cout / cerr",
        "Batch Window",
        "Build Documents",
        "Build document file ",
        " not exists or cannot be read",
        "File to edit",
        "File to move",
        "Move file",
        "\n\n  The file cannot be moved.",
        "New name to move",
        "\n\n  The file cannot be overwritten.",
        "Confirm to move the file \n",
        "\n       to\n",
        "File to copy",
        "Copy file",
        "\n\n  The file cannot be copied.",
        "New name to copy",
        "Confirm to copy the file \n",
        "File to remove",
        "\n\n  The file cannot be deleted.",
        "\n\n  Confirm to delete the file ?",
        "Change Dir...",
        "Directory does not exist\n\n",
        "Some editor is open\nIf you continue it will be destroyed.\n\n Continue ?",
        0};
    Language::setProgramDirectory(programDirectory.asCharPointer());
    Language* language = new Language(currentLanguageName(1).asCharPointer());
    if (language->load("panel_") == 0) language->loadDefaults(englishTexts);
    Language::setCurrent(language);
}

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

// -run, -design, -model, -sweep and -document work without windows; the other modes plot the language's
// values in the plot window and debug its modules in the debugger.
int dispatchMode() {
    String program;
    if (findOption("-run", program)) return runProgram(program);
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

struct OptionLine {
    const char* option;
    const char* text;
};

const OptionLine optionLines[] = {
    {"-run file.cxx", "run an interpreted program: cout on standard output, errors on standard error"},
    {"-design file.dyn", "run the robust design on a model file; the options below set its parameters"},
    {"  -phase name", "\"Step 1\", \"Step 2\", \"Final Results\" or all (default: all three in turn)"},
    {"  -first name", "the design made first: Control (default) or Observer"},
    {"  -gramian H2|Hinf", "the norm minimised (default H2); -gamma x the H-infinity bound (1)"},
    {"  -gamma2 x", "the bound of the second step (default: -gamma)"},
    {"  -algorithm name", "refining (default) or approaching; -iter n iterations (20), -alfa x (0.5)"},
    {"  -minimum name", "the LMI route: \"min H2\", \"bound Hinf\", \"min Hinf\" (default none)"},
    {"  -route name", "gramian (default: the two-step iteration), lmi (its LMI minimum) or riccati"},
    {"  -compare", "after the final results, the optimal gamma of the routes side by side"},
    {"  -toll x, -minFreq x", "tolerance of the structure tests (1e-6), lowest frequency (1e-4)"},
    {"  -initialFeedback name", "\"pole placement\" (default) or zero; -noiseL x noise on the controls (0)"},
    {"  -continue", "continue the design in RobustControl.rc instead of starting anew"},
    {"  -matlab dir", "where the Matlab script TarnOut.m goes (default: the working directory)"},
    {"-model file.bdg", "check a block diagram and build its model on the console; the options below"},
    {"  -dyn file.dyn", "save the model (an extended system when the title splits its channels)"},
    {"  -matlab dir", "write the Matlab script <title>.m into dir"},
    {"  -discretize T", "discretise the model at the period T (s)"},
    {"  -poles", "print the model's poles"},
    {"-sweep plant.dyn control.dyn params.txt", "the closed loop over the plant's uncertain parameters,"},
    {"", "its worst case; params.txt declares the parameters and the entries that hang on them"},
    {"  -grid n, -samples n", "grid points per parameter (5), seeded random samples (100)"},
    {"-document kind file.edt", "write the document of a drawing beside it: html, latex, rtf or ascii"},
    {"-debug file.cxx", "open the source-level debugger on an interpreted program"},
    {"-blockDiagram [file.bdg]", "edit a block diagram"},
    {"-stateGraph [file.stg]", "edit a state transition graph"},
    {"-interpreter", "open the resident interpreter window"},
    {"-debugModule", "open a debugger on the run of each Module<\"file\"> value, stopped at its first line"},
    {"-debugModuleGo", "the same, running at once up to a breakpoint"},
    {"-robustControlDesign", "open the robust control design panel"},
    {"-text [file]", "edit a text file"},
    {"-drawing [file.edt]", "edit a drawing of nodes and links, the base kind of drawing"},
    {"-closeAfter ms", "ask every window to close after ms milliseconds (scripts, tests)"},
    {"-env NAME=VALUE", "put NAME=VALUE into the environment, %NAME% expanded; repeatable"},
    {"-JV_PATH dir", "root of the second tool chain"},
    {"-CC_PATH dir", "root of the compiler"},
    {"-DS_PATH dir", "root of the shared designer tools"},
    {"-IDE_PATH dir", "root of the shared IDE"},
    {"-printClasses", "list the linked classes, their initors and terminators"},
    {"-deleteGlobals", "free the global tables at exit"},
    {"-memoryLimit MiB", "refuse any single object above this size (default: a quarter of the memory)"},
    {"-traceOn", "trace every traced function"},
    {"-traceOff", "no trace output (wins over -traceOn)"},
    {"-traceFile file", "write the trace into an existing file"},
    {"-traceLevel n", "trace the functions of level n and above"},
    {"-dumpTrace", "record the name of every traced function met"},
    {"-help", "print this list and exit"},
};

}  // namespace

void printUsage(std::ostream& os) {
    os << "Usage: tarn [options] [file]\n"
       << "Without a mode the command panel opens. Options may stand anywhere.\n";
    for (const OptionLine& line : optionLines) {
        // A long option stands on a line of its own, its text below it.
        std::string option = line.option;
        if (option.size() >= 24) os << "  " << option << "\n", option.clear();
        option.resize(24, ' ');
        os << "  " << option << line.text << "\n";
    }
    os.flush();
}

int tarnMain() {
    computeProgramDirectory();
    environmentFirstPass();
    defaultHeaderPs();
    loadPanelLanguage();
    return dispatchMode();
}
