// Helpers of the model tests: small systems, and the comparison of two systems by their transfer matrices.
#ifndef TESTS_MODEL_DIAGRAM_H
#define TESTS_MODEL_DIAGRAM_H

#include "model/diagmake.h"

using Diagram = DiagramMaker;

// The transfer matrices of two systems agree at several frequencies.
void expectSameTransfer(const DynOp& a, const DynOp& b);
DynOp firstOrder(double pole, double gain, double direct = 0.0);

#endif
