// The help lookup: a keyword's topic in the help file, and showing it.
#ifndef TRELLIS_HELP_H
#define TRELLIS_HELP_H

#include "quill/quillstr.h"

// The help file: the name given (else "helpfile.tarn") when it can be read,
// else the same name in TARN_HELP_PATH, else in TARN_PATH's "help"; empty
// when there is none.
String helpFilePath(const char* helpFile = 0);
// The topic of a line that starts with the keyword followed by blanks;
// "contents" stands for an empty keyword. False with the message when the
// file is missing or the keyword absent.
bool helpTopic(const char* keyword, const char* helpFile, String& topic, String& message);
// Shows the topic: a file beside the help file opens in its viewer,
// anything else in a box.
void showHelp(const char* keyword, const char* helpFile = 0);

#endif
