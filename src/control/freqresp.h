// The frequency plot of a system: singular values of its frequency response in dB over a
// logarithmic grid.
#ifndef CONTROL_FREQRESP_H
#define CONTROL_FREQRESP_H

#include <string>

#include "control/dynop.h"
#include "control/response.h"

// The warning line of a discrete system whose frequency range ends past its half sampling frequency
// pi / T, where the unit circle is travelled again; empty when w1 stays within it.
std::string halfSamplingWarning(const DynOp& s, double w1);

// points frequencies (rad/s) from w0 to w1, evenly spaced on a logarithmic scale, and at each the
// largest singular value in dB, or with all every one of the min(outputs, inputs), largest first;
// infinite at a pole. A discrete system is evaluated on the unit circle, and a w1 past its half
// sampling frequency writes halfSamplingWarning on the console. A system without inputs or
// outputs raises INDEXRANGE; a grid without 0 < w0 <= w1 and points > 0 raises ASSERTFLD.
Response singularValuePlot(const DynOp& s, double w0, double w1, unsigned points, bool all = false);

#endif
