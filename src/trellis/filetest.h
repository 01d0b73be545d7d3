// The file tests of the file menus and the readers of objects from files and strings, with their messages.
#ifndef TRELLIS_FILETEST_H
#define TRELLIS_FILETEST_H

#include "quill/quillstr.h"

// The tests answer whether the file passes, and append their message to
// the String given; given this shared String, they show it in a box, behind
// the name.
extern String showInBox;

bool isExistingFile(const char* name, String& message = showInBox);
bool isReadableFile(const char* name, String& message = showInBox);
// An existing file must be writable; with backup, name + ".tmp" and
// name + ".bak" must be free or writable; the file's directory must be
// usable.
bool isWritableFile(const char* name, bool backup, String& message = showInBox);
// The directory must exist and let the program search, read and write it.
bool isDirectoryUsable(const char* name, String& message = showInBox);
// Asks whether an existing file may be overwritten; true for a new name.
bool askOverwrite(const char* name);

// An object of the class expected (any class for null) read from the
// file, or null with the reason appended to message.
Object* readObject(const char* name, const Class* expected, String& message = showInBox);
// The text form of an object, refused beyond limit bytes.
bool writeObjectToString(const Object& ob, String& text, unsigned limit, String& message = showInBox);
Object* readObjectFromString(const char* text, const Class* expected, String& message = showInBox);

#endif
