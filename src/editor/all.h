// The editors in one include: the text editors and the graph editor framework.
#ifndef EDITOR_ALL_H
#define EDITOR_ALL_H

#include "editor/chessbrd.h"
#include "editor/editor.h"
#include "editor/edthist.h"
#include "editor/fileedt.h"
#include "editor/fragment.h"
#include "editor/graphedt.h"
#include "editor/graphgui.h"
#include "editor/iconarc.h"
#include "editor/iconcat.h"
#include "editor/iconfld.h"
#include "editor/iconmeta.h"
#include "editor/iconnode.h"
#include "editor/paramedt.h"
#include "editor/resizdlg.h"
#include "editor/semantic.h"
#include "editor/textedt.h"
#include "editor/textshow.h"

#endif
