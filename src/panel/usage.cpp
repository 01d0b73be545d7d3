// The list of the command-line options that -help prints.
#include <ostream>
#include <string>

#include "panel/start.h"

namespace {

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
