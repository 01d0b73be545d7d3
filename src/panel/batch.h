// The batch processing of the panel: the documents of the drawings named in a ".bdc" build list.
#ifndef PANEL_BATCH_H
#define PANEL_BATCH_H

#include <string>

// Writes the document of kind ("html", "latex", "rtf" or "ascii") of each drawing that the list
// names, one a line, beside the drawing. A relative name is taken from the list's folder. The log
// gets a line per file, and a refused file's reason. Answers the number of documents written.
int buildDocuments(const char* listFile, const char* kind, std::string& log);

#endif
