// The editors in one include: the text editors and the graph editor framework.
#ifndef EDITOR_ALL_H
#define EDITOR_ALL_H

#include "editor/editor.h"
#include "editor/fileedt.h"
#include "editor/textedt.h"
#include "editor/textshow.h"

#endif
