// The dynamic graphics and the plot window's public headers.
#ifndef GUI_ALL_H
#define GUI_ALL_H

#include "gui/dynctrl.h"
#include "gui/dynicon.h"
#include "gui/dynpanel.h"
#include "gui/dynwin.h"
#include "gui/plot.h"
#include "gui/plotview.h"
#include "gui/plotwin.h"

#endif
