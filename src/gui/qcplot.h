// QCustomPlot's header for a library built without Qt's keywords: its "signals:" sections and
// "foreach" loops read as Qt's macros for the time of the include.
#ifndef GUI_QCPLOT_H
#define GUI_QCPLOT_H

#ifdef QT_NO_KEYWORDS
#define signals Q_SIGNALS
#define foreach Q_FOREACH
#include <qcustomplot.h>
#undef foreach
#undef signals
#else
#include <qcustomplot.h>
#endif

#endif
