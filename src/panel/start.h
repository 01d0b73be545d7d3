// The start every mode shares, and the one mode that runs without the window layer.
#ifndef PANEL_START_H
#define PANEL_START_H

#include <iosfwd>
#include <string>

class String;

// Absolute directory of the executable; the data files lie there.
extern String programDirectory;

// The tool roots given on the command line, empty when absent; the
// configuration reader gives them priority over its file.
extern String jvPathOption;
extern String ccPathOption;
extern String dsPathOption;
extern String idePathOption;

// The entries of the command panel's tool menu, an empty one between groups, a null at the end; the
// panel's language has them among its texts.
extern const char* const panelToolEntries[];

// The directory of the executable that the argument store's first word names.
std::string executableDirectory();

// On the argument store that quillStart has set: programDirectory, the environment (-env, the
// tool roots, the configuration file), then the panel's language.
void startEnvironment();

// -run: the start, then the program of the option run on the console. Answers the exit status.
int runFromCommandLine();

// True when a word after argv[0] is the word given; unlike findFlag it leaves the words in place.
bool hasArgument(int argc, char** argv, const char* word);

// Writes the list of the command-line options.
void printUsage(std::ostream& os);

#endif
