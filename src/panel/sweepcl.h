// The sweep of an uncertain plant's parameters from the command line.
#ifndef PANEL_SWEEPCL_H
#define PANEL_SWEEPCL_H

class String;

// tarn -sweep model.dyn control.dyn params.txt [-grid n] [-samples n]: the closed loop of the
// compensator with the plant at each sample of its parameters, and the worst case. Answers 0, or
// 1 when a file cannot be read or a closed loop is unstable.
int runSweep(const String& modelFile);

#endif
