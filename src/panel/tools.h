// The panel's tools: programs started without waiting, and the scripts of make and the terminal.
#ifndef PANEL_TOOLS_H
#define PANEL_TOOLS_H

#include <string>
#include <vector>

// Starts words[0] (looked for in PATH) with the other words, without waiting for it. A start that
// fails shows "Error on exec command\n\n" and the command, and answers false.
bool startCommand(const std::vector<std::string>& words);

// Writes "tarn_make.sh" and "tarn_term.sh" into folder, each setting PATH, INCLUDE, LIB, TARN_PATH
// (and SYS_FLAGS when set) to the values in force before it runs make or the terminal. Answers
// false when a script can't be written.
bool writeToolScripts(const std::string& folder);

// The folder of the scripts: the configuration folder, or "$HOME/.config/Tarn", made when missing.
std::string toolFolder();

#endif
