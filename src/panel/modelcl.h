// The model of a block diagram built from the command line, and the block-diagram editor's mode.
#ifndef PANEL_MODELCL_H
#define PANEL_MODELCL_H

class String;

// Consumes -dyn, -matlab, -discretize and -poles, checks the diagram's consistency and builds
// its model on the console. Answers 0, or 1 when the file cannot be read or the check reports
// an error.
int runModel(const String& diagramFile);

#endif
