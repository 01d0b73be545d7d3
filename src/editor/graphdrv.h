// The program mode of a single graph editor on one file.
#ifndef EDITOR_GRAPHDRV_H
#define EDITOR_GRAPHDRV_H

// Edits the file given as the only argument (argv[1], or a new drawing)
// with the kind of drawing semanticClass, until the window closes.
int runGraphEditor(const char* semanticClass, const char* title, int argc, char** argv);

#endif
