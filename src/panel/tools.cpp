// Starting the tools, and their scripts.
#include "panel/tools.h"

#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "panel/config.h"
#include "quill/quillstr.h"
#include "trellis/ask.h"

extern char** environ;

namespace {

// The tools that ended are reaped at the next start.
void reapEnded() {
    while (waitpid(-1, 0, WNOHANG) > 0) {
    }
}

// A value quoted for the shell.
std::string quoted(const char* value) {
    std::string text = "'";
    for (const char* c = value ? value : ""; *c; ++c)
        text += *c == '\'' ? std::string("'\\''") : std::string(1, *c);
    return text + "'";
}

bool writeScript(const std::string& path, const std::string& last) {
    std::ofstream out(path);
    out << "#!/bin/sh\n";
    for (const char* name : {"PATH", "INCLUDE", "LIB", "TARN_PATH", "SYS_FLAGS"}) {
        const char* value = std::getenv(name);
        if (value || std::string(name) != "SYS_FLAGS")
            out << "export " << name << "=" << quoted(value) << "\n";
    }
    out << last << "\n";
    out.close();
    return out && chmod(path.c_str(), 0755) == 0;
}

}  // namespace

bool startCommand(const std::vector<std::string>& words) {
    reapEnded();
    std::vector<char*> argv;
    std::string command;
    for (const std::string& word : words) {
        argv.push_back(const_cast<char*>(word.c_str()));
        command += (command.empty() ? "" : " ") + word;
    }
    argv.push_back(0);
    pid_t pid;
    if (!words.empty() && posix_spawnp(&pid, argv[0], 0, 0, argv.data(), environ) == 0) return true;
    showMessage(("Error on exec command\n\n" + command).c_str(), "Tarn Panel", MESSAGE_ERROR);
    return false;
}

bool writeToolScripts(const std::string& folder) {
    return writeScript(folder + "/tarn_make.sh", "exec make \"$@\"") &&
           writeScript(folder + "/tarn_term.sh", "exec \"${TERMINAL:-xterm}\"");
}

std::string toolFolder() {
    std::string folder = configurationFolder();
    if (!folder.empty()) return folder;
    const char* home = std::getenv("HOME");
    folder = std::string(home ? home : ".") + "/.config/Tarn";
    std::error_code ignored;
    std::filesystem::create_directories(folder, ignored);
    return folder;
}
