// The program's main: environment set-up and the choice of the mode to run.
#ifndef PANEL_TARNMAIN_H
#define PANEL_TARNMAIN_H

#include <iosfwd>

class String;

// Absolute directory of the executable; the data files lie there.
extern String programDirectory;

// The tool roots given on the command line, empty when absent; the
// configuration reader gives them priority over its file.
extern String jvPathOption;
extern String ccPathOption;
extern String dsPathOption;
extern String idePathOption;

// Runs on the argument store that quillStart has set: environment, language,
// then the mode the flags select. Answers the process's exit code.
int tarnMain();

// Writes the list of the command-line options.
void printUsage(std::ostream& os);

#endif
