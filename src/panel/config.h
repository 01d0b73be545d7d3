// The configuration read once at the start of every mode: the tool roots, the panel's geometry
// and the tools' directory, from the command line first and then from "config.tarn".
#ifndef PANEL_CONFIG_H
#define PANEL_CONFIG_H

#include <iosfwd>
#include <string>

// "/config.tarn", behind the configuration folder.
extern const char* const configurationFile;

struct Configuration {
    std::string ccPath, jvPath, dsPath, idePath, geometry, bin;
};

// The values in force after environmentSetUp.
extern Configuration configuration;

// The lines of a configuration file: "#" and ";" begin comments, a key is taken in lower case,
// and a value already set (by the command line) keeps its priority. An env line is put into the
// environment as -env does.
void readConfiguration(std::istream& in, Configuration& values);

// The folder that holds a readable and writable "config.tarn": TARN_PATH's directory, then
// "$HOME/.config/Tarn"; empty when neither does.
std::string configurationFolder();

// The set-up on the argument store, once -env has been applied: TARN_BIN= and BIN_PATH= words,
// the four root options (given), the file, then PATH, LIB and INCLUDE with each root's folders
// ahead of their old values.
void environmentSetUp(const Configuration& options);

// The first directory that holds tool (such as "/make.sh"): BIN_PATH, TARN_BIN when variable is
// TARN_PATH, variable's value with "/bin", the executable's directory, variable's value, "/bin";
// empty when none does.
std::string binDirectory(const char* variable, const char* tool);

#endif
