// A block diagram reduced to numbers: the systems of its blocks, its sums and terminals, the links
// between them, and the one state-space system they make together.
#ifndef MODEL_NETWORK_H
#define MODEL_NETWORK_H

#include <vector>

#include "control/dynop.h"

// One end of a link: a node of a kind, by its index in the network's list of that kind.
struct NetEnd {
    enum Kind { Input, Block, Sum, Output };
    Kind kind;
    int index;
};

// A link carries count rows of its source's signal, from sourceFirst on, into the destination's
// rows from destFirst on (0-based); a count of 0 carries the whole signal. The sign counts only at
// a sum.
struct NetLink {
    NetEnd from, to;
    int sourceFirst = 0, destFirst = 0, count = 0;
    double sign = 1.0;
};

struct Network {
    std::vector<int> inputDims;  // the width of each input terminal
    std::vector<DynOp> blocks;   // their states make the system's, in this order
    std::vector<int> sumDims;
    std::vector<int> outputDims;  // the width of each output terminal
    std::vector<NetLink> links;
};

// The system from the input terminals, stacked in their order, to the output terminals, stacked
// likewise. Several links into one destination add up. Loops through blocks without direct
// gain close through the states; a loop of direct gains (an algebraic loop) is solved, and one
// that cannot be solved raises SINGMTRX. Rows that a link would carry past either end's width
// are left out.
DynOp composeNetwork(const Network& net);

#endif
