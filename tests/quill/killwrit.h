// The killed-writer check shared by the tests of every writer of files: a
// writer stopped part-way, by death or by a failed write, leaves the old file.
#ifndef TESTS_QUILL_KILLWRIT_H
#define TESTS_QUILL_KILLWRIT_H

#include <dirent.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <functional>
#include <string>

#include "testutil.h"

// The names in path's directory that begin with the file's hidden temporary
// prefix; with remove set, they go.
inline int temporariesOf(const std::string& path, bool remove = false) {
    std::string directory = path.substr(0, path.find_last_of('/'));
    std::string prefix = "." + path.substr(path.find_last_of('/') + 1) + ".";
    int count = 0;
    if (DIR* dir = opendir(directory.c_str())) {
        while (dirent* entry = readdir(dir)) {
            std::string name = entry->d_name;
            if (name.rfind(prefix, 0) != 0) continue;
            ++count;
            if (remove) unlink((directory + "/" + name).c_str());
        }
        closedir(dir);
    }
    return count;
}

// Runs writer in a child process whose files may not grow past limit bytes.
// With killed set the child dies of SIGXFSZ on the first write past it;
// otherwise that write fails with EFBIG and the writer goes on to its end.
// Answers the child's wait status.
inline int writeUnderLimit(const std::function<void()>& writer, size_t limit, bool killed) {
    pid_t pid = fork();
    if (pid == 0) {
        signal(SIGXFSZ, killed ? SIG_DFL : SIG_IGN);
        struct rlimit size = {limit, limit};
        setrlimit(RLIMIT_FSIZE, &size);
        writer();
        _exit(0);
    }
    int status = 0;
    waitpid(pid, &status, 0);
    return status;
}

// Checks that writer, which replaces path with more than limit bytes, leaves
// path as old whether it is killed part-way or its writes fail; a failed
// writer also leaves no temporary behind. Answers a text that names what went
// wrong, empty when all held.
inline std::string oldFileSurvives(const std::string& path, const std::function<void()>& writer,
                                   size_t limit = 64) {
    const std::string old = "the old file, which must survive\n";
    for (bool killed : {true, false}) {
        std::ofstream(path) << old;
        int status = writeUnderLimit(writer, limit, killed);
        const char* how = killed ? "killed" : "failing";
        if (killed && !(WIFSIGNALED(status) && WTERMSIG(status) == SIGXFSZ))
            return std::string("the writer was not killed by the size limit: ") + std::to_string(status);
        if (fileText(path) != old)
            return std::string("a ") + how + " writer changed the file: " + fileText(path);
        if (!killed && temporariesOf(path) != 0) return "a failing writer left its temporary";
        temporariesOf(path, true);
    }
    return "";
}

#endif
