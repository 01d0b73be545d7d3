// The start every mode shares, windows or none: the program's directory, the environment, the
// panel's language; and the run of an interpreted program, the one mode that needs no window.
#include "panel/start.h"

#include <unistd.h>

#include <climits>
#include <cstdlib>
#include <cstring>
#include <string>

#include "interpreter/runner.h"
#include "panel/config.h"
#include "quill/language.h"
#include "quill/quillstr.h"
#include "quill/startup.h"

String programDirectory;
String jvPathOption;
String ccPathOption;
String dsPathOption;
String idePathOption;

const char* const panelToolEntries[] = {"&Make | Alt+M",
                                        "&Terminal | Alt+T",
                                        "&Run Program| Alt+P",
                                        "&Show standard output | Alt+S",
                                        "&Batch processing | Alt+B",
                                        "",
                                        "Change &Dir...  | Alt+D",
                                        "&Copy file...   | Alt+C",
                                        "&Move file...   | Alt+V",
                                        "&Remove file... | Alt+R",
                                        "",
                                        "Lumen on Tarn Library",
                                        "Start Tarn Animator",
                                        "",
                                        "&Quit | Alt+Q",
                                        0};

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
    if (language->load("panel_") == 0) {
        language->loadDefaults(englishTexts);
        language->loadDefaults(panelToolEntries);
    }
    Language::setCurrent(language);
}

}  // namespace

std::string executableDirectory() {
    std::string path = executablePath(getArg(0));
    std::string::size_type slash = path.rfind('/');
    return path.substr(0, slash == 0 ? 1 : slash);
}

void startEnvironment() {
    programDirectory = executableDirectory().c_str();
    environmentFirstPass();
    defaultHeaderPs();
    loadPanelLanguage();
}

int runFromCommandLine() {
    startEnvironment();
    String program;
    findOption("-run", program);
    return runProgram(program);
}

bool hasArgument(int argc, char** argv, const char* word) {
    for (int i = 1; i < argc; ++i)
        if (std::strcmp(argv[i], word) == 0) return true;
    return false;
}
