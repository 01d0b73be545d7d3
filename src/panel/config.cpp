// The configuration: the file's lines, its folder, the tools' environment and directory.
#include "panel/config.h"

#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <fstream>

#include "panel/start.h"
#include "quill/quillstr.h"
#include "quill/startup.h"

const char* const configurationFile = "/config.tarn";

Configuration configuration;

namespace {

std::string variableValue(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

bool holds(const std::string& directory, const char* file) {
    return !directory.empty() && access((directory + file).c_str(), F_OK) == 0;
}

// The value goes to the field the key names, unless the command line set it already.
void takeKey(const std::string& key, const std::string& value, Configuration& values) {
    if (key == "env") {
        putEnvironment(value.c_str());
        return;
    }
    std::string* field = key == "cc_path"    ? &values.ccPath
                         : key == "jv_path"  ? &values.jvPath
                         : key == "ds_path"  ? &values.dsPath
                         : key == "ide_path" ? &values.idePath
                         : key == "geometry" ? &values.geometry
                         : key == "bin"      ? &values.bin
                                             : 0;
    if (field && field->empty()) *field = value;
}

// The words TARN_BIN=<value> and BIN_PATH=<value> of the command line.
void takeBinArguments(Configuration& values) {
    for (int i = 1; i < Argc; ++i)
        for (const char* prefix : {"TARN_BIN=", "BIN_PATH="}) {
            std::string word = Argv[i];
            if (word.compare(0, std::string(prefix).size(), prefix) == 0)
                values.bin = word.substr(std::string(prefix).size());
        }
}

// NAME=<root><folder>:<old value>, for each root given.
void prependFolders(const char* name, const char* folder, const Configuration& values) {
    std::string value;
    for (const std::string* root : {&values.ccPath, &values.jvPath, &values.dsPath, &values.idePath})
        if (!root->empty()) value += *root + folder + ":";
    if (name == std::string("PATH") && !values.idePath.empty()) value += values.idePath + "/sharedIde/bin:";
    if (value.empty()) return;
    setenv(name, (value + variableValue(name)).c_str(), 1);
}

}  // namespace

void readConfiguration(std::istream& in, Configuration& values) {
    std::string line;
    while (std::getline(in, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (line.empty() || line[0] == '#' || line[0] == ';') continue;
        std::string::size_type equal = line.find('=');
        if (equal == std::string::npos) continue;
        std::string key = line.substr(0, equal);
        std::transform(key.begin(), key.end(), key.begin(), [](unsigned char c) { return std::tolower(c); });
        takeKey(key, line.substr(equal + 1), values);
    }
}

std::string configurationFolder() {
    std::string home = variableValue("HOME");
    for (const std::string& folder :
         {variableValue("TARN_PATH"), home.empty() ? home : home + "/.config/Tarn"})
        if (!folder.empty() && access((folder + configurationFile).c_str(), R_OK | W_OK) == 0) return folder;
    return "";
}

void environmentSetUp(const Configuration& options) {
    configuration = options;
    takeBinArguments(configuration);
    std::string folder = configurationFolder();
    if (!folder.empty()) {
        std::ifstream in(folder + configurationFile);
        readConfiguration(in, configuration);
    }
    if (configuration.ccPath.empty()) configuration.ccPath = variableValue("CC_PATH");
    prependFolders("PATH", "/bin", configuration);
    prependFolders("LIB", "/lib", configuration);
    prependFolders("INCLUDE", "/include", configuration);
    if (!configuration.bin.empty()) setenv("BIN_PATH", configuration.bin.c_str(), 1);
    if (!configuration.ccPath.empty()) setenv("CC_PATH", configuration.ccPath.c_str(), 1);
    if (!configuration.jvPath.empty()) setenv("JV_PATH", configuration.jvPath.c_str(), 1);
}

std::string binDirectory(const char* variable, const char* tool) {
    std::string root = variableValue(variable);
    std::string candidates[] = {variableValue("BIN_PATH"),
                                std::string(variable) == "TARN_PATH" ? variableValue("TARN_BIN") : "",
                                root.empty() ? root : root + "/bin",
                                programDirectory.asCharPointer(),
                                root,
                                "/bin"};
    for (const std::string& directory : candidates)
        if (holds(directory, tool)) return directory;
    return "";
}
