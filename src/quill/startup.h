// The library's start and stop, the argument store and the hooks the toolkit fills in.
#ifndef QUILL_STARTUP_H
#define QUILL_STARTUP_H

class String;

// The argument store. Options are removed as they are read, so what remains
// after all consumers have run are the positional arguments; Argv[0] is the
// program's path.
extern int Argc;
extern char** Argv;

int getArgc();
char** getArgv();
// Raises ASSERTFLD "args < Argc" when i is not below Argc.
const char* getArg(int i);
void setArgs(int argc, char** argv);

// True when the flag stands anywhere after Argv[0]; removes it.
bool findFlag(const char* name);
// True when the option stands anywhere after Argv[0]; removes it and the word
// after it, which becomes value whatever it looks like. An option in the last
// place is still found, with an empty value.
bool findOption(const char* name, String& value);

// Process-wide flags of the start-up.
extern bool deleteGlobalsAtExit;  // -deleteGlobals: free the global tables at stop
extern bool signalsInstalled;     // the signal handlers are in place
extern bool stopping;             // quillStop has run

// Hooks the toolkit sets: its start and end, and the window system's
// dispatch for the library's wait loops. All null by default.
typedef void (*ToolkitHook)();
typedef void (*EventDispatchHook)();
typedef int (*EventPendingHook)();
typedef void (*SleepHook)(int milliseconds);
extern ToolkitHook toolkitInitHook;
extern ToolkitHook toolkitTermHook;
extern EventDispatchHook eventDispatchHook;
extern EventPendingHook eventPendingHook;
extern SleepHook sleepHook;

// Starts the library: signals, argument store, error table, toolkit, classes.
// Answers 0, or -1 when the classes are already initialised.
int quillStart(int argc, char** argv, int installSignals);
// Stops the library once: terminators, toolkit, signals, globals. Answers code.
int quillStop(int code);
// Stops the library and ends the process with code.
[[noreturn]] void quillAbort(int code);

// Runs a program on the library: starts it, calls run inside a catch-all and
// stops it. An escaping error is reported at FATAL and ends the process
// through quillAbort(0). Answers run's result.
typedef int (*MainFunction)();
int tarnEntry(int argc, char** argv, MainFunction run);

// Without a display (neither DISPLAY nor WAYLAND_DISPLAY) and without a chosen
// platform, asks the toolkit for its offscreen platform.
void chooseHeadlessPlatform();

// The %NAME% references of text replaced by the environment's values, in at
// most 1023 characters. A name that is not set stays as written.
String expandEnvironment(const char* text);
// Puts NAME=VALUE, expanded, into the environment. A text without "=" is ignored.
void putEnvironment(const char* assignment);
// Consumes every -env NAME=VALUE of the store, in order, and puts each.
void consumeEnvOptions();

#endif
