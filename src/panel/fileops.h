// The panel's file operations: move, copy and remove, each with its checks and its confirmation.
#ifndef PANEL_FILEOPS_H
#define PANEL_FILEOPS_H

// A null name is asked for in a file dialogue. Each answers true when the file was handled; a
// refused file is reported in a box and leaves everything as it was.
bool moveFile(const char* from = 0, const char* to = 0);
bool copyFile(const char* from = 0, const char* to = 0);
bool removeFile(const char* name = 0);

#endif
