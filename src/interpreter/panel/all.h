// The debugger's windows: the interpreter panel and the resident interpreter window.
#ifndef INTERPRETER_PANEL_ALL_H
#define INTERPRETER_PANEL_ALL_H

#include "interpreter/panel/intpanel.h"
#include "interpreter/panel/mainlib.h"
#include "interpreter/panel/varlist.h"
#include "interpreter/panel/varpane.h"

#endif
