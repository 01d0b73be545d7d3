// The robust design run from the command line: the phases of a design on a model file, with the
// panel's parameters given as options and every dialogue answered by its default.
#ifndef PANEL_DESIGNCL_H
#define PANEL_DESIGNCL_H

class String;

// Consumes the design options of the argument store and runs the phase they name ("all": Step 1,
// Step 2 and Final Results in turn). Answers 0 when every phase reached a norm, 1 otherwise.
int runDesign(const String& modelFile);

#endif
