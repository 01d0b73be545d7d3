// The plot window's public headers.
#ifndef GUI_ALL_H
#define GUI_ALL_H

#include "gui/plot.h"
#include "gui/plotview.h"
#include "gui/plotwin.h"

#endif
