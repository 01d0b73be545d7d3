// File-name helpers: absolute path, directory, base name and extension of a name, and fileCopy.
#ifndef QUILL_FILENAME_H
#define QUILL_FILENAME_H

#include "quill/quillstr.h"

// Names use "/" between directories.

// The name joined to the current directory when it is relative, with ".",
// ".." and repeated separators resolved in the text (links are not followed).
// An empty name gives the current directory.
String absolutePath(const char* name);
// Everything before the last separator, without it: "/" for a name in the
// root, "." for a name without a directory.
String directoryPart(const char* name);
// The name without its directory and its extension: "model" of "/x/model.dyn".
String baseName(const char* name);
// The name without its directory: "model.dyn" of "/x/model.dyn".
String fileNamePart(const char* name);
// The extension with its dot, ".dyn" of "/x/model.dyn", or empty. A dot that
// starts the name (".profile") opens no extension.
String extensionPart(const char* name);

// Copies the file from into the file to, byte for byte. Raises GENERICERR
// "CANNOT_OPEN" when one of them cannot be opened, and "FILECOPY_ERROR" when
// reading or writing fails.
void fileCopy(const char* from, const char* to);

#endif
