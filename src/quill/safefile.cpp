// SafeFile: the temporary beside the target, its sync and its rename.
#include "quill/safefile.h"

#include <fcntl.h>
#include <libgen.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <string>

#include "quill/quillerr.h"

namespace {

// The file a symbolic link names; the name itself for anything else.
std::string resolvedTarget(const char* target) {
    struct stat info;
    char resolved[PATH_MAX];
    if (lstat(target, &info) == 0 && S_ISLNK(info.st_mode) && realpath(target, resolved)) return resolved;
    return target;
}

std::string directoryOf(const std::string& path) {
    std::string copy = path;
    return dirname(&copy[0]);
}

// The old file's mode, or the mode a new file gets.
mode_t modeFor(const std::string& path, int newFileMode) {
    struct stat info;
    if (stat(path.c_str(), &info) == 0) return info.st_mode & 07777;
    if (newFileMode >= 0) return mode_t(newFileMode);
    mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

// Makes the rename itself durable.
void syncDirectory(const std::string& directory) {
    int fd = open(directory.c_str(), O_RDONLY | O_DIRECTORY);
    if (fd < 0) return;
    fsync(fd);
    close(fd);
}

// The name mkstemp makes the temporary from: the target's name, hidden, with
// the six characters that mkstemp replaces by a unique suffix.
std::string temporaryTemplate(const std::string& path) {
    const std::string uniqueSuffix(6, 'X');  // mkstemp's template: six X's at the end
    std::string base = path.substr(path.find_last_of('/') + 1);
    return directoryOf(path) + "/." + base + "." + uniqueSuffix;
}

// True for an existing target that is not a regular file: a device or a pipe
// cannot be replaced, only written.
bool isSpecial(const std::string& path) {
    struct stat info;
    return stat(path.c_str(), &info) == 0 && !S_ISREG(info.st_mode);
}

}  // namespace

SafeFile::SafeFile(const char* target, int newFileMode)
    : targetName(target), inPlace(false), finished(false) {
    std::string path = resolvedTarget(target);
    if (isSpecial(path)) {
        inPlace = true;
        temporaryName = path.c_str();
        out.open(path, std::ios::out | std::ios::binary);
        if (!out) fail(errno);
        return;
    }
    std::string pattern = temporaryTemplate(path);
    int fd = mkstemp(&pattern[0]);
    if (fd < 0 || fchmod(fd, modeFor(path, newFileMode)) != 0) {
        int cause = errno;
        if (fd >= 0) {
            close(fd);
            unlink(pattern.c_str());
        }
        errno = cause;
        setError(GENERICERR, SEV_ERROR, "CANNOT_OPEN", "cannot open file ", target,
                 formatText(" for writing: %s", strerror(cause)));
    }
    close(fd);
    temporaryName = pattern.c_str();
    out.open(pattern, std::ios::out | std::ios::binary | std::ios::trunc);
    if (!out) fail(errno);
}

SafeFile::~SafeFile() {
    if (finished) return;
    out.close();
    removeTemporary();
}

void SafeFile::removeTemporary() {
    if (!inPlace) unlink(temporaryName.asCharPointer());
}

void SafeFile::fail(int cause) {
    if (cause == 0) cause = EIO;
    String text = formatText(": %s", strerror(cause));
    out.close();
    removeTemporary();
    finished = true;
    errno = cause;
    setError(GENERICERR, SEV_ERROR, "CANNOT_WRITE", "cannot write file ", targetName.asCharPointer(),
             text.asCharPointer());
}

void SafeFile::commit() {
    if (finished) return;
    // A write that failed earlier left its cause in errno.
    out.flush();
    bool written = bool(out);
    out.close();
    if (!written || out.fail()) fail(errno);
    if (inPlace) {
        finished = true;
        return;
    }
    int fd = open(temporaryName.asCharPointer(), O_RDONLY);
    bool synced = fd >= 0 && fsync(fd) == 0;
    int syncError = errno;
    if (fd >= 0) close(fd);
    if (!synced) fail(syncError);
    std::string path = resolvedTarget(targetName.asCharPointer());
    if (rename(temporaryName.asCharPointer(), path.c_str()) != 0) fail(errno);
    finished = true;
    syncDirectory(directoryOf(path));
}

String SafeFile::commitOrMessage() {
    return errorTextOf([this] { commit(); });
}

String writeSafely(const char* target, const std::function<void(std::ostream&)>& writer) {
    return errorTextOf([&] {
        SafeFile file(target);
        writer(file.stream());
        file.commit();
    });
}
