// File tests by mode, and objects read from files and strings, each failure with its message.
#include "trellis/filetest.h"

#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <sstream>

#include "quill/filename.h"
#include "quill/objio.h"
#include "quill/quillerr.h"
#include "trellis/ask.h"

String showInBox;

namespace {

// Permission by the mode bits, so that a read-only file is refused to the
// superuser as well.
bool permitted(const char* name, int bits, int mode) {
    struct stat info;
    if (stat(name, &info) != 0) return false;
    if (geteuid() == 0) return (info.st_mode & bits) != 0;
    return access(name, mode) == 0;
}

bool exists(const char* name) {
    struct stat info;
    return stat(name, &info) == 0;
}

bool refuse(const char* name, const char* text, String& message) {
    if (&message == &showInBox) {
        String box(name);
        box += text;
        showMessage(box.asCharPointer(), "Error", MESSAGE_ERROR);
    } else {
        message += text;
    }
    return false;
}

// A name with a class: the stored class must be it or derive from it.
Object* checkedClass(Object* ob, const Class* expected, const char* name, String& message) {
    if (!expected || ob->isKindOf(*expected)) return ob;
    String text("Read bad class\n\nexpected class ");
    text += expected->name();
    text += "\n\nread class ";
    text += ob->className();
    deepDelete(ob);
    refuse(name, text.asCharPointer(), message);
    return 0;
}

// The reader's failure as the menus tell it.
Object* readFailed(const String& error, const char* name, String& message) {
    if (error.index("[RDUNKCLASS]") >= 0) {
        refuse(name, "\n\n Unknown class name", message);
        return 0;
    }
    String text("\n\n Read error on the file\n\n");
    text += name;
    text += "\n\n Bad file";
    refuse(name, text.asCharPointer(), message);
    return 0;
}

}  // namespace

bool isExistingFile(const char* name, String& message) {
    return exists(name) || refuse(name, "\n\n The file does not exist", message);
}

bool isReadableFile(const char* name, String& message) {
    return permitted(name, 0444, R_OK) || refuse(name, "\n\n The file cannot be read", message);
}

bool isDirectoryUsable(const char* name, String& message) {
    struct stat info;
    if (stat(name, &info) != 0 || !S_ISDIR(info.st_mode))
        return refuse(name, "\n\n The directory does not exist", message);
    if (!permitted(name, 0111, X_OK))
        return refuse(name, "\n\n The exec bit of the directory is not set", message);
    if (!permitted(name, 0444, R_OK)) return refuse(name, "\n\n Cannot read from the directory", message);
    if (!permitted(name, 0222, W_OK)) return refuse(name, "\n\n Cannot write in the directory", message);
    return true;
}

bool isWritableFile(const char* name, bool backup, String& message) {
    if (exists(name) && !permitted(name, 0222, W_OK))
        return refuse(name, "\n\n The file cannot be written", message);
    if (backup)
        for (const char* suffix : {".tmp", ".bak"}) {
            String other(name);
            other += suffix;
            const char* path = other.asCharPointer();
            if (exists(path) && !permitted(path, 0222, W_OK))
                return refuse(path, "\n\n The file cannot be written", message);
        }
    String directory = directoryPart(name);
    return isDirectoryUsable(directory.asCharPointer(), message);
}

bool askOverwrite(const char* name) {
    if (!exists(name)) return true;
    String text(name);
    text += " already exists";
    text += "\n\nOverwrite it ?";
    return askQuestion(text.asCharPointer(), "Question", false);
}

Object* readObject(const char* name, const Class* expected, String& message) {
    if (!isExistingFile(name, message) || !isReadableFile(name, message)) return 0;
    std::ifstream in(name);
    String error;
    Object* ob = readFromChecked(error, in);
    if (!ob || ob == nil) return readFailed(error, name, message);
    return checkedClass(ob, expected, name, message);
}

bool writeObjectToString(const Object& ob, String& text, unsigned limit, String& message) {
    std::ostringstream out;
    if (!storeObject(out, ob)) return refuse("", "Error writing on string\n", message);
    if (out.str().size() > limit) return refuse("", "Object too big to write on string", message);
    text = out.str().c_str();
    return true;
}

Object* readObjectFromString(const char* text, const Class* expected, String& message) {
    String error;
    Object* ob = text ? readFromString(error, text) : 0;
    if (!ob || ob == nil) {
        refuse("", "Bad string to read", message);
        return 0;
    }
    return checkedClass(ob, expected, "", message);
}
