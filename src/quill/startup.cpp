// Library start and stop, the consuming argument store and the program entry.
#include "quill/startup.h"

#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string>
#include <vector>

#include "quill/objalloc.h"
#include "quill/qclass.h"
#include "quill/quillerr.h"
#include "quill/quillsig.h"
#include "quill/quillstr.h"
#include "quill/random.h"
#include "quill/symbol.h"
#include "quill/trace.h"

int Argc = 0;
char** Argv = 0;

bool deleteGlobalsAtExit = false;
bool signalsInstalled = false;
bool stopping = false;

ToolkitHook toolkitInitHook = 0;
ToolkitHook toolkitTermHook = 0;
EventDispatchHook eventDispatchHook = 0;
EventPendingHook eventPendingHook = 0;
SleepHook sleepHook = 0;

namespace {

const unsigned MAX_EXPANSION = 1023;

// Index of name in Argv[1..Argc-1], or 0 when it is absent.
int findArg(const char* name) {
    if (!name) return 0;
    for (int i = 1; i < Argc; i++)
        if (std::strcmp(Argv[i], name) == 0) return i;
    return 0;
}

void removeArg(int i) {
    for (int j = i; j < Argc - 1; j++) Argv[j] = Argv[j + 1];
    Argc--;
}

// The global tables that -deleteGlobals frees at stop, in this order.
void deleteGlobals() {
    deleteDefaultRandom();
    deleteSymbolTable();
    deleteTraceNames();
    deleteClassDictionary();
    deleteErrorTable();
}

[[noreturn]] void fatalExit(const char* message) {
    reportError(SEV_FATAL, message);
    quillAbort(0);
}

}  // namespace

// The argument store

int getArgc() { return Argc; }

char** getArgv() { return Argv; }

const char* getArg(int i) {
    QASSERT_TEXT(i < Argc, "args < Argc");
    return Argv[i];
}

void setArgs(int argc, char** argv) {
    Argc = argc;
    Argv = argv;
}

bool findFlag(const char* name) {
    int i = findArg(name);
    if (i == 0) return false;
    removeArg(i);
    return true;
}

bool findOption(const char* name, String& value) {
    int i = findArg(name);
    if (i == 0) return false;
    removeArg(i);
    if (i >= Argc) {
        value = "";
        return true;
    }
    value = Argv[i];
    removeArg(i);
    return true;
}

// Start and stop

namespace {

// -memoryLimit MiB: the largest single object; a bad value keeps the default.
void readMemoryLimit() {
    String value;
    if (!findOption("-memoryLimit", value)) return;
    char* end = 0;
    double mib = std::strtod(value.asCharPointer(), &end);
    if (end == value.asCharPointer() || *end || !(mib >= 1))
        std::cerr << "tarn: -memoryLimit wants a number of MiB, not \"" << value.asCharPointer() << "\""
                  << std::endl;
    else
        setAllocationLimit(mib >= 1e12 ? SIZE_MAX : size_t(mib * 1024 * 1024));
}

}  // namespace

int quillStart(int argc, char** argv, int installSignals) {
    if (classesInitialized) return -1;
    signalsInstalled = installSignals != 0;
    if (signalsInstalled) installSignalHandlers();
    installNewHandler();
    setArgs(argc, argv);
    createErrorTable();
    deleteGlobalsAtExit = findFlag("-deleteGlobals");
    readMemoryLimit();
    chooseHeadlessPlatform();
    if (toolkitInitHook) toolkitInitHook();
    readTraceOptions();
    Class::initialize();
    return 0;
}

int quillStop(int code) {
    if (stopping) return code;
    stopping = true;
    Class::terminate();
    if (toolkitTermHook) toolkitTermHook();
    disableTrace();
    removeNewHandler();
    if (signalsInstalled) {
        signalsInstalled = false;
        removeSignalHandlers();
    }
    if (deleteGlobalsAtExit) {
        deleteGlobalsAtExit = false;
        deleteGlobals();
    }
    return code;
}

void quillAbort(int code) {
    resetAbortSignal();
    quillStop(code);
    std::exit(code);
}

int tarnEntry(int argc, char** argv, MainFunction run) {
    int result = 0;
    std::string fatal;
    try {
        quillStart(argc, argv, 1);
        result = run();
    } catch (TarnException* e) {
        errorInProgress = 0;
        fatal = e->what();
        delete e;
        fatalExit(fatal.c_str());
    } catch (...) {
        fatalExit("Unhandled C++ exception ");
    }
    return quillStop(result);
}

// Platform and environment

void chooseHeadlessPlatform() {
    if (std::getenv("DISPLAY") || std::getenv("WAYLAND_DISPLAY")) return;
    if (std::getenv("QT_QPA_PLATFORM")) return;
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
}

String expandEnvironment(const char* text) {
    std::string out;
    const char* p = text ? text : "";
    while (*p && out.size() < MAX_EXPANSION) {
        const char* close = *p == '%' ? std::strchr(p + 1, '%') : 0;
        if (close && close > p + 1) {
            std::string name(p + 1, close);
            if (const char* value = std::getenv(name.c_str())) {
                out += value;
                p = close + 1;
                continue;
            }
            // An unknown name is copied as written; its closing '%' may open the next one.
            out.append(p, close);
            p = close;
            continue;
        }
        out += *p++;
    }
    if (out.size() > MAX_EXPANSION) out.resize(MAX_EXPANSION);
    return String(out.c_str());
}

void putEnvironment(const char* assignment) {
    String expanded = expandEnvironment(assignment);
    if (!std::strchr(expanded.asCharPointer(), '=')) return;
    // putenv keeps the text itself: each one stays alive to the end of the process.
    static std::vector<char*>* kept = new std::vector<char*>;
    char* text = strdup(expanded.asCharPointer());
    kept->push_back(text);
    putenv(text);
}

void consumeEnvOptions() {
    String value;
    while (findOption("-env", value)) putEnvironment(value.asCharPointer());
}
