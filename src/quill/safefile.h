// SafeFile: a file written whole or not at all, through a temporary file
// beside it that replaces it only once everything is on the disk.
#ifndef QUILL_SAFEFILE_H
#define QUILL_SAFEFILE_H

#include <fstream>
#include <functional>

#include "quill/quillstr.h"

// The text goes to a temporary file in the target's directory; commit flushes
// and syncs it and renames it over the target, so that a full disk, a killed
// process or a power cut leaves the old file as it was. A symbolic link is
// followed: the file it names is replaced. The new file keeps the mode of the
// old one; a new one gets newFileMode, or by default the usual mode under the umask.
// A target that is not a regular file (a device, a pipe) is written in place.
class SafeFile {
public:
    // "[CANNOT_OPEN] cannot open file <target> for writing: <reason>" when no
    // temporary can be made beside the target. Every failure leaves its cause
    // in errno, for callers that show the system's text.
    explicit SafeFile(const char* target, int newFileMode = -1);
    SafeFile(const SafeFile&) = delete;
    SafeFile& operator=(const SafeFile&) = delete;
    // An uncommitted temporary is removed.
    ~SafeFile();

    std::ostream& stream() { return out; }
    const String& target() const { return targetName; }
    // Puts the text in place of the target. On any failure the temporary is
    // removed, the target stays as it was and
    // "[CANNOT_WRITE] cannot write file <target>: <reason>" is raised.
    void commit();
    // The same, answering the error's text instead of raising it; empty on success.
    String commitOrMessage();

private:
    // Removes the temporary and raises CANNOT_WRITE, errno left at cause
    // (EIO when the system gave none).
    [[noreturn]] void fail(int cause);
    void removeTemporary();

    String targetName;
    String temporaryName;  // the target itself when written in place
    std::ofstream out;
    bool inPlace;   // a device or a pipe, which cannot be replaced
    bool finished;  // committed, or failed and removed
};

// Writes a whole file through SafeFile with writer; answers the message of a
// failure, of the writer's own errors too, empty on success.
String writeSafely(const char* target, const std::function<void(std::ostream&)>& writer);

#endif
