// The function-level trace read from the options at start-up, and the library's version texts.
#ifndef QUILL_TRACE_H
#define QUILL_TRACE_H

#include <iosfwd>

class Set;

// Trace state, process-wide.
const int TRACE_LEVEL_START = 0x7FFFFFFE;  // until the options are read
const int TRACE_DISABLED = 0x7FFFFFFF;     // no output at all
const int TRACE_EVERYTHING = -1;           // every traced function, whatever its name

extern int traceLevel;
extern std::ostream* traceStream;  // standard output unless -traceFile named an existing file
extern bool allFunctions;          // every name matches, not only those of traceNames
extern bool dumpTrace;             // every name met is recorded in traceNames
extern int traceDepth;             // nesting of the traced calls now running

// The names of the traced functions, Strings owned by the set; made on first use.
Set& traceNames();
void addTraceName(const char* name);
bool isTraceName(const char* name);
// Frees the set and its names; the next use makes a new one.
void deleteTraceNames();

// Reads -traceFile, -traceOff, -traceLevel, -traceOn and -dumpTrace from the
// argument store, consuming them, and the file "g__trace" of the current
// directory. Starts from a clean state each time: level, names, flags and
// stream are set anew.
void readTraceOptions();
// Turns all output off for good: the level becomes 2147483647.
void disableTrace();

// Records a traced call: "<traceDepth> TarnTRACE, Begin  <name>" at entry and
// "<traceDepth> TarnTRACE, End    <name>" at exit, when the name is traced and
// level is at or above traceLevel. No end record is written while a raised
// error travels.
class GlobalTracer {
public:
    GlobalTracer(const char* name, int level);
    ~GlobalTracer();
    GlobalTracer(const GlobalTracer&) = delete;
    GlobalTracer& operator=(const GlobalTracer&) = delete;

private:
    const char* name_;
    bool written_;
};

// The library's release date, "21 Aug 2006", and its number, "major.minor.patch".
const char* libraryDate();
const char* libraryVersion();

#endif
