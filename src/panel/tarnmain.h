// The program's main with windows: the shared start, then the mode the flags select.
#ifndef PANEL_TARNMAIN_H
#define PANEL_TARNMAIN_H

#include "panel/start.h"

// Runs on the argument store that quillStart has set: environment, language,
// then the mode the flags select. Answers the process's exit code.
int tarnMain();

#endif
