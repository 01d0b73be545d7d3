// The trace options, the "g__trace" file, GlobalTracer and the library's version texts.
#include "quill/trace.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>

#include "quill/quillerr.h"
#include "quill/quillstr.h"
#include "quill/safefile.h"
#include "quill/set.h"
#include "quill/startup.h"

int traceLevel = TRACE_LEVEL_START;
std::ostream* traceStream = &std::cout;
bool allFunctions = false;
bool dumpTrace = false;
int traceDepth = 0;

namespace {

const char* const TRACE_FILE_NAME = "g__trace";
const int VERSION_MAJOR = 2, VERSION_MINOR = 4, VERSION_PATCH = 0;

Set* names = 0;
// The -traceFile file, written beside the old one and put in its place when
// the trace ends or goes elsewhere.
SafeFile* ownedTraceFile = 0;

void useStandardOutput() {
    traceStream = &std::cout;
    if (!ownedTraceFile) return;
    String failure = ownedTraceFile->commitOrMessage();
    if (failure.size() > 0) std::cerr << failure.asCharPointer() << std::endl;
    delete ownedTraceFile;
    ownedTraceFile = 0;
}

void clearTraceNames() {
    if (names) names->deleteContents();
}

// -traceFile: only a file that exists already takes the output.
void openTraceFile(const char* fileName) {
    if (!std::ifstream(fileName)) return;
    if (errorTextOf([fileName] { ownedTraceFile = new SafeFile(fileName); }).size() > 0) return;
    traceStream = &ownedTraceFile->stream();
}

// Reads a level from text; answers false when text holds no number.
bool parseLevel(const std::string& text, int& level) {
    if (text.empty()) return false;
    char* end = 0;
    long value = std::strtol(text.c_str(), &end, 10);
    if (end == text.c_str()) return false;
    level = static_cast<int>(value);
    return true;
}

// A directive is a word and, for the level, a number behind it.
void applyDirective(const std::string& text) {
    std::istringstream words(text);
    std::string word, value;
    words >> word >> value;
    int level;
    if (word == "level" || word == "tracelevel") {
        if (traceLevel == TRACE_LEVEL_START && parseLevel(value, level)) traceLevel = level;
    } else if (word == "allfunction" || word == "allfunctions" || word == "disabled" || word == "disable") {
        allFunctions = true;
    }
}

std::string trimmed(const std::string& line) {
    const char* blanks = " \t\r\n";
    size_t first = line.find_first_not_of(blanks);
    if (first == std::string::npos) return "";
    return line.substr(first, line.find_last_not_of(blanks) - first + 1);
}

// Empty lines are skipped; "#" and "/" open comments that may carry a
// directive behind that first character; any other line is a name and may
// be a directive too.
void readTraceFile(std::istream& in) {
    std::string line;
    while (std::getline(in, line)) {
        std::string text = trimmed(line);
        if (text.empty()) continue;
        if (text[0] == '#' || text[0] == '/') {
            applyDirective(text.substr(1));
            continue;
        }
        addTraceName(text.c_str());
        applyDirective(text);
    }
}

void readTraceNamesFile() {
    std::ifstream in(TRACE_FILE_NAME);
    if (!in) {
        allFunctions = true;
        if (traceLevel == TRACE_LEVEL_START) traceLevel = 0;
        return;
    }
    readTraceFile(in);
    if (traceLevel != TRACE_LEVEL_START) return;
    bool nothingAsked = traceNames().isEmpty() && !allFunctions;
    traceLevel = nothingAsked ? TRACE_DISABLED : 0;
}

bool isTraced(const char* name) {
    return traceLevel == TRACE_EVERYTHING || allFunctions || isTraceName(name);
}

}  // namespace

Set& traceNames() {
    if (!names) names = new Set;
    return *names;
}

void addTraceName(const char* name) {
    if (isTraceName(name)) return;
    traceNames().add(*new String(name));
}

bool isTraceName(const char* name) { return names && names->includes(String(name)); }

void deleteTraceNames() {
    if (!names) return;
    names->deleteContents();
    delete names;
    names = 0;
}

void readTraceOptions() {
    traceLevel = TRACE_LEVEL_START;
    allFunctions = false;
    dumpTrace = false;
    clearTraceNames();
    useStandardOutput();

    String value;
    if (findOption("-traceFile", value)) openTraceFile(value.asCharPointer());
    bool off = findFlag("-traceOff");
    bool levelGiven = findOption("-traceLevel", value);
    bool on = findFlag("-traceOn");
    bool dump = findFlag("-dumpTrace");

    if (off)
        traceLevel = TRACE_DISABLED;
    else if (levelGiven)
        traceLevel = std::atoi(value.asCharPointer());
    else if (on)
        traceLevel = TRACE_EVERYTHING;

    if (traceLevel < TRACE_DISABLED && traceLevel != TRACE_EVERYTHING) readTraceNamesFile();
    dumpTrace = dump;
}

void disableTrace() {
    traceLevel = TRACE_DISABLED;
    useStandardOutput();
}

GlobalTracer::GlobalTracer(const char* name, int level) : name_(name), written_(false) {
    if (traceLevel > TRACE_LEVEL_START) return;
    if (isTraced(name) && level >= traceLevel) {
        *traceStream << traceDepth << " TarnTRACE, Begin  " << name << std::endl;
        traceDepth++;
        written_ = true;
    }
    if (dumpTrace) addTraceName(name);
}

GlobalTracer::~GlobalTracer() {
    if (!written_) return;
    traceDepth--;
    if (errorInProgress || traceLevel > TRACE_LEVEL_START) return;
    *traceStream << traceDepth << " TarnTRACE, End    " << name_ << std::endl;
}

const char* libraryDate() { return "21 Aug 2006"; }

const char* libraryVersion() {
    static char text[32];
    std::snprintf(text, sizeof text, "%d.%d.%d", VERSION_MAJOR, VERSION_MINOR, VERSION_PATCH);
    return text;
}
